// The tables that are open in this process: one Table a file, however many cursors stand on it.

#include <map>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

std::unique_ptr<File> openForUse(const std::string& path) {
    try {
        return openFile(path, OpenMode::ReadWrite);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
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
    while (true) {
        std::unique_ptr<File> records = openForUse(path);
        File& file = *records;
        // One opens at a time, so that one of them is alone and looks at what the last ones left behind.
        holdLock(file, openingLock, file.isWritable() ? LockKind::Exclusive : LockKind::Shared);
        // Says that the table is in use, for as long as the file is open; whoever replaces its files waits
        // for that.
        holdLock(file, presenceLock, LockKind::Shared);
        if (std::string now = fileIdentity(path); now != identity) { // replaced while we opened it
            identity = std::move(now);
            continue;
        }
        std::unique_ptr<File> index;
        if (const std::optional<std::string> indexPath = findIndexFile(path)) {
            index = openForUse(*indexPath);
        }
        auto table =
            std::make_shared<Table>(std::move(records), std::move(index), std::string(), journalBeside(path));
        file.unlock(openingLock);
        openTables()[identity] = table;
        return table;
    }
}

} // namespace dbase
