// Claims a table by the lock of a file beside it. The file needs to be created and locked, nothing else:
// renames that refuse to replace, and links, are missing on some network file systems, and work on one name
// at a time, where a table has two.
#include "dbase/table/table_claim.h"

#include <algorithm>

#include "dbase/lock/locks.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/companion_file.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/table/exchange_completion.h"

namespace dbase {

namespace {

constexpr std::string_view temporary = ".nuevo";
constexpr LockRange claimLock{0, 1};

// The same for tables whose names differ in letter case only: one would be found in place of the other.
std::string claimFileOf(const std::string& table) {
    return table.substr(0, table.rfind('/') + 1) + upperName(baseName(table)) + ".AMC";
}

// Earlier versions added the number of their process.
bool isTemporary(std::string_view name, std::string_view file) {
    const std::string beginning = std::string(file) + std::string(temporary);
    return name.size() >= beginning.size() && sameName(name.substr(0, beginning.size()), beginning) &&
           std::ranges::all_of(name.substr(beginning.size()), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

std::string temporaryName(const std::string& file) { return file + std::string(temporary); }

TableClaim::TableClaim(const std::string& tableFile) : TableClaim(tableFile, diskFolders()) {}

TableClaim::TableClaim(const std::string& tableFile, Folders& folders, Remains remains)
    : folders_(folders), table_(folders.realPath(tableFile)) {
    ReadScope::letGo(); // the present holder must not wait for us
    hold();
    try {
        findName();
        if (remains == Remains::Remove) {
            holdConcluded();
            removeLeftOvers();
        }
    } catch (...) {
        release();
        throw;
    }
}

// A program that concludes an exchange needs the claims of its tables.
void TableClaim::holdConcluded() {
    while (isInExchange(table_, folders_)) {
        release();
        concludeExchangeOf(table_, folders_);
        hold();
        findName();
    }
}

// Also of what was created while we waited.
void TableClaim::findName() {
    if (!folders_.isFile(table_)) {
        table_ = findTableFile(folders_, folderOf(table_), baseName(table_)).value_or(table_);
    }
}

void TableClaim::hold() {
    const auto lock = [](File& file) {
        if (!file.isWritable()) {
            throw Error(ErrorCode::AccessDenied, file.path(),
                        "es de otro usuario; si nadie está creando ni sustituyendo la tabla, bórrelo");
        }
        holdLock(file, claimLock, LockKind::Exclusive);
    };
    try {
        file_ = holdCompanion(folders_, claimFileOf(table_), folderOf(table_), lock);
    } catch (const Error& error) {
        if (error.code() == ErrorCode::LockTimeout) {
            throw Error(ErrorCode::LockTimeout, table_,
                        "otro programa la está creando o sustituyendo; espere y repita la operación");
        }
        if (error.code() == ErrorCode::AccessDenied) {
            throw Error(ErrorCode::AccessDenied, table_,
                        std::string("no se puede crear ni sustituir: ") + error.what());
        }
        throw;
    }
}

void TableClaim::removeLeftOvers() const {
    const std::string index = findIndexFile(folders_, table_).value_or(withExtension(table_, ".MDX"));
    for (const std::string& file : {table_, folders_.realPath(index)}) {
        const std::string folder = folderOf(file), name = file.substr(file.rfind('/') + 1);
        for (const std::string& candidate : folders_.namesIn(folder)) {
            if (isTemporary(candidate, name)) {
                folders_.remove(folder + '/' + candidate);
            }
        }
    }
}

TableClaim::~TableClaim() { release(); }

void TableClaim::release() noexcept {
    if (!file_) {
        return;
    }
    try {
        folders_.remove(file_->path()); // still locked, and so still ours
    } catch (...) {
        // It stays, and claims nothing.
    }
    file_.reset();
}

} // namespace dbase
