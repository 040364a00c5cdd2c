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
    /// Of a file or folder, at the end of its links; nothing if the name does not exist.
    [[nodiscard]] virtual std::optional<FileStatus> statusOf(const std::string& path) const = 0;
    /// The path without links; of a name that does not exist, that of its folder and the name.
    [[nodiscard]] virtual std::string realPath(const std::string& path) const = 0;
    /// Whether a path leads to this file. `isRemote`: as File::isRemote(), then its server is asked. Errors:
    /// Error(Io) if the system does not answer.
    [[nodiscard]] virtual bool leadsTo(const std::string& path, const FileStatus& file,
                                       bool isRemote) const = 0;
    /// When a name in a folder was last made, changed or removed: as long as this stays the same, all of them
    /// lead where they led. Nothing if that was a moment ago, so that a change of the same time could follow,
    /// or if the system cannot say. Only for folders of this machine.
    [[nodiscard]] virtual std::optional<NamesState> namesState(const std::string& /*folder*/) const {
        return std::nullopt;
    }
    /// The names in a folder, in any order. Errors: Error(NotFound, AccessDenied), which names the folder.
    [[nodiscard]] virtual std::vector<std::string> namesIn(const std::string& folder) const = 0;

    /// Like openFile().
    [[nodiscard]] virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
    /// Renames a file, replacing any file that has the new name. Errors: Error(Io).
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Removes a name, if it exists. Errors: Error(Io).
    virtual void remove(const std::string& path) = 0;
    /// Why no file can be created or removed in the folder of a file, in Spanish; empty if the system permits
    /// it.
    [[nodiscard]] virtual std::string objectionToNamesAt(const std::string& path) const = 0;
    /// Flushes the folder of a file, and so the names in it, to the disk if its file system can. Errors:
    /// Error(Io, DiskFull).
    virtual void syncFolderOf(const std::string& path) = 0;

    // --- Replacing a file by another one
    /// Errors: Error(AccessDenied) if the system does not let this user rename a file over this one.
    virtual void requireReplaceable(const std::string& path) const = 0;
    /// Creates a file with the group, permissions and access list of the `model`, and its owner if this user
    /// is root. Errors: Error(AccessDenied), which names the model, if the system does not permit that.
    [[nodiscard]] virtual std::unique_ptr<File> createTwin(const std::string& path,
                                                           const std::string& model) = 0;

    // --- Companions: files of ours beside a table, in folders where others may plant theirs
    /// Opens one for reading and writing, or for reading if the system permits no more. Null if the name does
    /// not exist. Follows no link. Errors: Error(AccessDenied) if the file may not be read, is a link or not
    /// a regular file, or has a second name.
    [[nodiscard]] virtual std::unique_ptr<File> openCompanion(const std::string& path) = 0;
    /// Creates one; null if the name exists. Gives it the owner, group, permissions and access list of the
    /// `model`, a table or folder, as far as the system permits, and never access that the model does not
    /// give; without a model the system decides, as for any new file. Errors: Error(AccessDenied, Io).
    [[nodiscard]] virtual std::unique_ptr<File> createCompanion(const std::string& path,
                                                                const std::string& model) = 0;
    /// Whether the name of an open companion still stands for it, and is its only one.
    [[nodiscard]] virtual bool isStillThere(const File& file) const = 0;
};

/// The folders of the disk.
[[nodiscard]] Folders& diskFolders();

/// Like the functions without `folders` in databases.h.
[[nodiscard]] std::optional<std::string> findTableFile(const Folders& folders, const std::string& folder,
                                                       std::string_view table);
[[nodiscard]] std::optional<std::string> findIndexFile(const Folders& folders, const std::string& tableFile);

} // namespace dbase
