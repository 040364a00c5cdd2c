// The tables open in this process: one Table per file, shared by all its cursors.

#include <map>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

// Sets the reason, if it is the first, why a file can only be read.
std::unique_ptr<File> openForUse(const std::string& path, std::string& readOnlyReason) {
    try {
        return openFile(path, OpenMode::ReadWrite);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
        }
        if (readOnlyReason.empty()) {
            readOnlyReason = error.what();
        }
    }
    return openFile(path, OpenMode::ReadOnly);
}

std::map<std::string, std::weak_ptr<Table>>& openTables() {
    static std::map<std::string, std::weak_ptr<Table>> tables;
    return tables;
}

} // namespace

std::shared_ptr<Table> Table::open(const std::string& path) {
    std::string identity = fileIdentity(path);
    if (const auto found = openTables().find(identity); found != openTables().end()) {
        if (std::shared_ptr<Table> table = found->second.lock()) {
            return table;
        }
        openTables().erase(found);
    }
    const LockWaits waits;
    while (true) {
        std::string readOnlyReason;
        std::unique_ptr<File> records = openForUse(path, readOnlyReason);
        File& file = *records;
        // Programs open one at a time, so that the first is alone and checks what the last ones left.
        holdLock(file, openingLock, file.isWritable() ? LockKind::Exclusive : LockKind::Shared);
        // Shows that the table is in use as long as the file is open, so that no program replaces its files.
        holdLock(file, presenceLock, LockKind::Shared);
        if (std::string now = fileIdentity(path); now != identity) { // replaced while we were opening it
            identity = std::move(now);
            continue;
        }
        std::unique_ptr<File> index;
        if (const std::optional<std::string> indexPath = findIndexFile(path)) {
            index = openForUse(*indexPath, readOnlyReason);
        }
        auto table = std::make_shared<Table>(std::move(records), std::move(index), readOnlyReason,
                                             journalBeside(path));
        file.unlock(openingLock);
        openTables()[identity] = table;
        return table;
    }
}

} // namespace dbase
