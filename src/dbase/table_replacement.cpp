#include "dbase/table_replacement.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include "dbase/bytes.h"
#include "dbase/databases.h"
#include "dbase/error.h"
#include "dbase/index_layout.h"
#include "dbase/journal_place.h"
#include "dbase/locks.h"
#include "dbase/system_reason.h"

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

std::string withoutExtension(const std::string& path) { return path.substr(0, path.rfind('.')); }

} // namespace

TableReplacement::TableReplacement(std::string tableFile) : table_(std::move(tableFile)) {
    const std::string suffix = ".nuevo" + std::to_string(getpid());
    index_ = withoutExtension(table_) + ".MDX";
    if (exists(table_)) {
        old_ = openFile(table_, OpenMode::ReadWrite);
        if (!old_->tryLock(presenceLock, LockKind::Exclusive)) {
            refuseInUse(table_);
        }
        if (!old_->tryLock(wholeTableLock,
                           LockKind::Exclusive)) { // programs that do not know our presence lock
            refuseInUse(table_);
        }
    }
    oldIndex_ =
        findIndexFile(table_); // also one that lost its table, or the new one would take it for its own
    if (oldIndex_) {
        index_ = *oldIndex_;
    }
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
    if (oldIndex_) { // should the machine stop between the two names, the tags are rebuilt from the new
                     // records
        const std::unique_ptr<File> old = openFile(*oldIndex_, OpenMode::ReadWrite);
        if (old->size() >= mdx::headBytes) {
            char mark[4];
            store32(mark, 1);
            old->write(mdx::stamp, std::span<const char>(mdx::stampMagic, 8));
            old->write(mdx::stamp + 8, mark);
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
