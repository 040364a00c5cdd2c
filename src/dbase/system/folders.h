// Folders as the engine needs them: finds, creates, renames and removes names of files, and flushes them to
// the disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/system/file.h"

namespace dbase {

/// All operations on names. Paths are those of files, unless the parameter is a folder.
class Folders {
public:
    virtual ~Folders() = default;
    Folders() = default;
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    /// Whether anything has that name.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    [[nodiscard]] virtual bool isFile(const std::string& path) const = 0;
    /// The names in a folder, in any order. Errors: Error(NotFound, AccessDenied), which names the folder.
    [[nodiscard]] virtual std::vector<std::string> namesIn(const std::string& folder) const = 0;

    /// Like openFile().
    [[nodiscard]] virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
    /// Renames a file, replacing any file that has the new name. Errors: Error(Io).
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Removes a name, if it exists. Errors: Error(Io).
    virtual void remove(const std::string& path) = 0;
    /// Gives a file the read and write permissions of another one, if the system permits.
    virtual void shareAs(const std::string& path, const std::string& model) noexcept = 0;
    /// Flushes the folder of a file, and so the names in it, to the disk if its file system can.
    virtual void syncFolderOf(const std::string& path) = 0;
};

/// The folders of the disk.
[[nodiscard]] Folders& diskFolders();

/// Like the functions without `folders` in databases.h.
[[nodiscard]] std::optional<std::string> findTableFile(const Folders& folders, const std::string& folder,
                                                       std::string_view table);
[[nodiscard]] std::optional<std::string> findIndexFile(const Folders& folders, const std::string& tableFile);

} // namespace dbase
