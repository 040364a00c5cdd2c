// Folders in memory that log everything done to names and to the files under them, and the contents of the
// disk when the machine stops somewhere in that log.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dbase/support/StoredTable.h"
#include "dbase/system/folders.h"

namespace dbase::test {

/// Identifies a file whatever its name, which may change.
using FileNumber = std::size_t;

struct FolderEvent {
    enum class Kind { Make, Write, Resize, Sync, Rename, Remove, SyncFolder };

    Kind kind;
    FileNumber file = 0;      // of the file made, written, resized or synced
    std::string name = {};    // path made, renamed or removed; for a folder's sync, of one of its files
    std::string newName = {}; // of a renamed file
    std::uint64_t offset = 0; // of a write; the size of a resize
    Bytes bytes = {};
    bool reachedDisk = false; // of a change of names: whether a sync of the folder followed
};

using FolderLog = std::vector<FolderEvent>;

/// The contents of the disk.
struct FolderImage {
    std::map<std::string, FileNumber> names;
    std::map<FileNumber, Bytes> contents;

    void apply(const FolderEvent& event);
    /// Creates the files in a folder of the disk, each under the last part of its path.
    void writeInto(const std::string& folder) const;
};

/// One folder; the log begins at its construction, or with startLog().
class RecordingFolders final : public Folders {
public:
    RecordingFolders() = default;
    /// With the contents of a disk.
    explicit RecordingFolders(const FolderImage& image);

    [[nodiscard]] bool exists(const std::string& path) const override { return names_.contains(path); }
    [[nodiscard]] bool isFile(const std::string& path) const override { return exists(path); }
    [[nodiscard]] std::string realPath(const std::string& path) const override { return path; }
    [[nodiscard]] std::vector<std::string> namesIn(const std::string& folder) const override;
    [[nodiscard]] std::unique_ptr<File> open(const std::string& path, OpenMode mode) override;
    void rename(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    [[nodiscard]] std::string objectionToNamesAt(const std::string&) const override { return {}; }
    void syncFolderOf(const std::string& path) override;
    [[nodiscard]] bool leadsTo(const std::string& path, const FileStatus& file, bool isRemote) const override;
    void requireReplaceable(const std::string&) const override {}
    [[nodiscard]] std::unique_ptr<File> createTwin(const std::string& path,
                                                   const std::string& model) override;
    [[nodiscard]] std::optional<FileStatus> statusOf(const std::string& path) const override;
    [[nodiscard]] std::unique_ptr<File> openCompanion(const std::string& path) override;
    [[nodiscard]] std::unique_ptr<File> createCompanion(const std::string& path,
                                                        const std::string& model) override;
    [[nodiscard]] bool isStillThere(const File& file) const override;

    /// Is called before a file is opened, and may throw.
    std::function<void(const std::string& path)> onOpening = [](const std::string&) {};

    /// From now on the folder is on another machine, and this one remembers that a name does not exist, until
    /// it tries to create it.
    void rememberAsMissing(const std::string& path) { log_->missing = path; }

    /// Is called before anything is written, synced or named, and may throw.
    void beforeEvents(std::function<void()> function) { log_->before = std::move(function); }

    /// Forgets all events so far: everything is on the disk.
    void startLog() { log_->events.clear(); }
    [[nodiscard]] const FolderLog& log() const { return log_->events; }
    [[nodiscard]] FolderImage image() const;

    /// The log, shared by all open files.
    struct Recorder {
        FolderLog events;
        std::function<void()> before = [] {};
        std::optional<std::string> missing; // none: the folder is on this machine
    };

private:
    struct Entry {
        FileNumber number;
        std::shared_ptr<MemoryContent> content;
    };

    [[nodiscard]] static std::uint64_t newDevice();
    void changed(FolderEvent event) { log_->events.push_back(std::move(event)); }

    std::map<std::string, Entry> names_;
    std::uint64_t device_ = newDevice();
    FileNumber next_ = 1;
    std::shared_ptr<Recorder> log_ = std::make_shared<Recorder>();
};

} // namespace dbase::test
