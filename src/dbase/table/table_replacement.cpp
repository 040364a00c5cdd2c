// New files in the place of old ones: made beside them, then renamed.
#include "dbase/table/table_replacement.h"

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/system/system_reason.h"

namespace dbase {

namespace {

bool exists(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0;
}

void renameOver(const std::string& from, const std::string& to) {
    if (std::rename(from.c_str(), to.c_str()) != 0) {
        throw Error(ErrorCode::Io, to,
                    std::string("no se puede sustituir el fichero: ") + systemReason(errno));
    }
}

[[noreturn]] void refuseInUse(const std::string& table) {
    throw Error(ErrorCode::LockTimeout, table,
                "la tabla está abierta en otro programa; ciérrelo para poder sustituirla");
}

} // namespace

TableReplacement::TableReplacement(std::string tableFile) : table_(std::move(tableFile)) {
    const std::string suffix = ".nuevo" + std::to_string(getpid());
    if (exists(table_)) {
        old_ = openFile(table_, OpenMode::ReadWrite);
        // The second lock is for programs that do not know our presence lock.
        if (!old_->tryLock(presenceLock, LockKind::Exclusive) ||
            !old_->tryLock(wholeTableLock, LockKind::Exclusive)) {
            refuseInUse(table_);
        }
    }
    // Also one that lost its table: the new table would take it for its own.
    oldIndex_ = findIndexFile(table_);
    index_ = oldIndex_.value_or(withExtension(table_, ".MDX"));
    newTable_ = table_ + suffix;
    newIndex_ = index_ + suffix;
}

TableReplacement::~TableReplacement() {
    if (!committed_) {
        std::remove(newTable_.c_str());
        std::remove(newIndex_.c_str());
    }
}

void TableReplacement::commit(bool hasIndex) {
    if (oldIndex_) { // should the machine stop between the two names, the new records get tags of their own
        const std::unique_ptr<File> old = openFile(*oldIndex_, OpenMode::ReadWrite);
        if (old->size() >= mdx::headBytes) {
            StampBytes bytes;
            old->read(mdx::stamp, bytes);
            UpdateStamp stamp = decodeStamp(bytes);
            stamp.present = stamp.inUpdate = true;
            old->write(mdx::stamp, encodeStamp(stamp));
        }
    }
    renameOver(newTable_, table_);
    if (hasIndex) {
        renameOver(newIndex_, index_);
    } else if (oldIndex_) {
        std::remove(oldIndex_->c_str());
    }
    committed_ = true;
    journalBeside(table_)->remove(); // it speaks of records that are gone
    syncFolderOf(table_);
}

} // namespace dbase
