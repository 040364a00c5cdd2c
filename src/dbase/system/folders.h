// Folders as the engine needs them: names of files that are looked for, made, renamed and removed, and put on
// the disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/system/file.h"

namespace dbase {

/// Everything that happens to names. Paths are those of files, save where a folder is asked for.
class Folders {
public:
    virtual ~Folders() = default;
    Folders() = default;
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    /// Whether there is anything of that name.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;
    [[nodiscard]] virtual bool isFile(const std::string& path) const = 0;
    /// The names in a folder, in any order. Errors: Error(NotFound, AccessDenied) that names the folder.
    [[nodiscard]] virtual std::vector<std::string> namesIn(const std::string& folder) const = 0;

    /// As openFile().
    [[nodiscard]] virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
    /// Gives a file another name, taking it from the file that has it. Errors: Error(Io).
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Removes a name; nothing where there is none. Errors: Error(Io).
    virtual void remove(const std::string& path) = 0;
    /// Lets those read and write a file who may do so with another one, as far as the system permits.
    virtual void shareAs(const std::string& path, const std::string& model) noexcept = 0;
    /// Puts the names of the folder in which a file lies on the disk, as far as its file system can.
    virtual void syncFolderOf(const std::string& path) = 0;
};

/// Those of the disk.
[[nodiscard]] Folders& diskFolders();

/// As the functions without folders (databases.h).
[[nodiscard]] std::optional<std::string> findTableFile(const Folders& folders, const std::string& folder,
                                                       std::string_view table);
[[nodiscard]] std::optional<std::string> findIndexFile(const Folders& folders, const std::string& tableFile);

} // namespace dbase
