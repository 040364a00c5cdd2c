// Creates new files beside the old ones, then renames them.
#include "dbase/table/table_replacement.h"

#include <unistd.h>

#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/lock/read_scope.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

[[noreturn]] void refuseInUse(const std::string& table) {
    throw Error(ErrorCode::LockTimeout, table,
                "la tabla está abierta en otro programa; ciérrelo para poder sustituirla");
}

} // namespace

TableReplacement::TableReplacement(std::string tableFile)
    : TableReplacement(std::move(tableFile), diskFolders()) {}

TableReplacement::TableReplacement(std::string tableFile, Folders& folders)
    : folders_(folders), table_(std::move(tableFile)) {
    ReadScope::letGo(); // releases the locks of the table to be replaced
    recoverOld();
    const std::string suffix = ".nuevo" + std::to_string(getpid());
    if (folders_.exists(table_)) {
        old_ = folders_.open(table_, OpenMode::ReadWrite);
        // The second lock is for programs that do not know our presence lock.
        if (!old_->tryLock(presenceLock, LockKind::Exclusive) ||
            !old_->tryLock(wholeTableLock, LockKind::Exclusive)) {
            refuseInUse(table_);
        }
    }
    // Also an index whose table is gone: the new table would take it for its own.
    oldIndex_ = findIndexFile(folders_, table_);
    index_ = oldIndex_.value_or(withExtension(table_, ".MDX"));
    newTable_ = table_ + suffix;
    newIndex_ = index_ + suffix;
}

// The journal must be gone before its records are; until then the old table must not lose its changes.
void TableReplacement::recoverOld() const {
    if (!journalBeside(table_, folders_)->openExisting()) {
        return;
    }
    try {
        const std::optional<std::string> index = findIndexFile(folders_, table_);
        const Table old(folders_.open(table_, OpenMode::ReadWrite),
                        index ? folders_.open(*index, OpenMode::ReadWrite) : nullptr, {},
                        journalBeside(table_, folders_));
    } catch (const Error&) {
        // What cannot be recovered can still be replaced.
    }
}

TableReplacement::~TableReplacement() {
    if (committed_) {
        return;
    }
    for (const std::string* made : {&newTable_, &newIndex_}) { // no copies: memory may have run out
        try {
            folders_.remove(*made);
        } catch (...) {
            // The file stays, under a name that belongs to no table.
        }
    }
}

void TableReplacement::commit(bool hasIndex) {
    if (oldIndex_) { // so that a crash between the two renames makes the new records' tags be rebuilt
        const std::unique_ptr<File> old = folders_.open(*oldIndex_, OpenMode::ReadWrite);
        if (old->size() >= mdx::headBytes) {
            StampBytes bytes;
            old->read(mdx::stamp, bytes);
            UpdateStamp stamp = decodeStamp(bytes);
            stamp.present = stamp.inUpdate = true;
            old->write(mdx::stamp, encodeStamp(stamp));
        }
    }
    journalBeside(table_, folders_)->remove(); // it describes the records to be replaced
    folders_.rename(newTable_, table_);
    if (hasIndex) {
        folders_.rename(newIndex_, index_);
    } else if (oldIndex_) {
        folders_.remove(*oldIndex_);
    }
    committed_ = true;
    folders_.syncFolderOf(table_);
}

} // namespace dbase
