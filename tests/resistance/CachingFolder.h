// A folder on a disk with a cache: what a power cut leaves of its names and of the files under them. Changes
// of names since the last sync of the folder may have arrived or not, in any order; each of them wholly.
#pragma once

#include "CachedFile.h"
#include "RecordingFolders.h"

namespace dbase::test {

class CachingFolder {
public:
    /// Everything in the image is on the disk.
    explicit CachingFolder(const FolderImage& image);

    void apply(const FolderEvent& event);
    /// The contents left if the power fails now.
    [[nodiscard]] FolderImage survivor(std::mt19937& random) const;

private:
    using Names = std::map<std::string, FileNumber>;
    struct NameChange {
        std::string removed, given; // either may be empty
        FileNumber file = 0;        // under the name given
    };
    static void apply(Names& names, const NameChange& change);
    void change(const NameChange& change);

    std::map<FileNumber, CachedFile> files_;
    Names onDisk_, now_;
    std::vector<NameChange> pending_;
};

} // namespace dbase::test
