// The tables open in a thread: one Table per file, shared by all its cursors. Threads have tables of their
// own, which exclude each other like those of two programs: a Table has no locks against threads.

#include <map>
#include <tuple>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/replaced_files.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

// Sets the reason, if it is the first, why a file can only be read.
std::unique_ptr<File> openForUse(Folders& folders, const std::string& path, std::string& readOnlyReason) {
    try {
        return folders.open(path, OpenMode::ReadWrite);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::AccessDenied) {
            throw;
        }
        if (readOnlyReason.empty()) {
            readOnlyReason = error.what();
        }
    }
    return folders.open(path, OpenMode::ReadOnly);
}

using Identity = std::tuple<const Folders*, std::uint64_t, std::uint64_t>;

Identity identityOf(const Folders& folders, const FileStatus& file) {
    return {&folders, file.device, file.inode};
}

std::map<Identity, std::weak_ptr<Table>>& openTables() {
    static thread_local std::map<Identity, std::weak_ptr<Table>> tables;
    return tables;
}

} // namespace

std::shared_ptr<Table> Table::open(const std::string& path, Folders& folders) {
    // The names of a table whose index was replaced lead elsewhere: it is of no use to anybody.
    for (const auto& [identity, open] : openTables()) {
        const std::shared_ptr<Table> table = open.lock();
        if (table && table->path() == path && std::get<0>(identity) == &folders &&
            table->names_->leadHere()) {
            return table; // without looking the name up: that it leads here says the same
        }
    }
    const std::optional<FileStatus> status = folders.statusOf(path);
    if (status) {
        const auto found = openTables().find(identityOf(folders, *status));
        const std::shared_ptr<Table> table = found == openTables().end() ? nullptr : found->second.lock();
        if (table && table->names_->leadHere()) {
            return table;
        }
    }
    const std::string real = folders.realPath(path);
    if (!status && isInExchange(real, folders)) { // it would have come with other tables
        concludeExchangeOf(real, folders);
    }
    const LockWaits waits;
    while (true) {
        if (std::shared_ptr<Table> table = tryOpen(real, folders)) {
            return table;
        }
    }
}

// Null if the files were replaced meanwhile, or this program has gone on with their exchange. A program that
// replaces them holds the opening lock of the old table, and that of the new one from before its name to
// after that of its index.
std::shared_ptr<Table> Table::tryOpen(const std::string& path, Folders& folders) {
    std::string readOnlyReason;
    std::unique_ptr<File> records = openForUse(folders, path, readOnlyReason);
    File& file = *records;
    // Programs open one at a time, so that the first is alone and checks what the last ones left.
    holdLock(file, openingLock, file.isWritable() ? LockKind::Exclusive : LockKind::Shared);
    // Shows that the table is in use as long as the file is open, so that no program replaces its files.
    holdLock(file, presenceLock, LockKind::Shared);
    const Identity identity = identityOf(folders, file.status());
    if (!TableNames(folders, file, nullptr).leadHere()) {
        return nullptr;
    }
    std::unique_ptr<File> index;
    if (const std::optional<std::string> indexPath = findIndexFile(folders, path)) {
        index = openForUse(folders, folders.realPath(*indexPath), readOnlyReason);
    }
    if (!TableNames(folders, file, index.get()).leadHere()) { // by a program that knows no such lock
        return nullptr;
    }
    if ((!index || stampOf(index.get()).inUpdate) && isInExchange(path, folders, file.isRemote())) {
        index.reset();
        records.reset(); // with its locks, which the completion needs
        concludeExchangeOf(path, folders);
        return nullptr;
    }
    if (index) {
        warnIfHalfChanged(path, *index);
    }
    auto table = std::make_shared<Table>(std::move(records), std::move(index), readOnlyReason,
                                         journalBeside(path, folders));
    table->names_.emplace(folders, file, table->index_ ? &table->index_->file() : nullptr);
    file.unlock(openingLock);
    std::erase_if(openTables(), [](const auto& entry) { return entry.second.expired(); });
    openTables()[identity] = table;
    return table;
}

} // namespace dbase
