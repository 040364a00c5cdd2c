// Finds folders by database name, and the files in them, letter case ignored.
#include "dbase/system/databases.h"

#include <map>

#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/system/quoted.h"

namespace dbase {

namespace {

std::map<std::string, std::string>& folders() {
    static std::map<std::string, std::string> known;
    return known;
}

// The entry of a folder with this name, letter case ignored; of several, the first in byte order.
std::optional<std::string> findIgnoringCase(const Folders& folders, const std::string& folder,
                                            const std::string& name) {
    if (folders.isFile(folder + '/' + name)) {
        return folder + '/' + name;
    }
    std::optional<std::string> best;
    for (const std::string& candidate : folders.namesIn(folder)) {
        if (sameName(candidate, name) && (!best || candidate < *best) &&
            folders.isFile(folder + '/' + candidate)) {
            best = candidate;
        }
    }
    return best ? std::optional(folder + '/' + *best) : std::nullopt;
}

} // namespace

void setDatabaseFolder(std::string_view name, std::string folder) {
    while (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    if (folder.empty()) {
        folders().erase(upperName(name));
    } else {
        folders()[upperName(name)] = std::move(folder);
    }
}

std::string databaseFolder(std::string_view name) {
    const auto found = folders().find(upperName(name));
    if (found == folders().end()) {
        throw Error(ErrorCode::NotFound, {}, "no se conoce la base de datos " + inQuotes(name));
    }
    return found->second;
}

std::optional<std::string> findTableFile(const std::string& folder, std::string_view table) {
    return findTableFile(diskFolders(), folder, table);
}

std::optional<std::string> findTableFile(const Folders& folders, const std::string& folder,
                                         std::string_view table) {
    std::string name(table);
    if (name.empty()) {
        return std::nullopt;
    }
    if (name.size() < 4 || !sameName(std::string_view(name).substr(name.size() - 4), ".DBF")) {
        name += ".DBF";
    }
    if (name.find('/') != std::string::npos || name.find('\0') != std::string::npos) {
        return std::nullopt; // a table name never leads out of its folder
    }
    return findIgnoringCase(folders, folder, name);
}

std::optional<std::string> findIndexFile(const std::string& tableFile) {
    return findIndexFile(diskFolders(), tableFile);
}

std::optional<std::string> findIndexFile(const Folders& folders, const std::string& tableFile) {
    return findIgnoringCase(folders, folderOf(tableFile), baseName(tableFile) + ".MDX");
}

} // namespace dbase
