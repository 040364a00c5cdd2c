// Creates new files beside the old ones, then renames them.
#include "dbase/table/table_replacement.h"

#include <algorithm>

#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

[[noreturn]] void refuseInUse(const std::string& table) {
    throw Error(ErrorCode::LockTimeout, table,
                "la tabla está abierta en otro programa; ciérrelo para poder sustituirla");
}

/// A name without a file is a link that leads nowhere, on a disk that may come back.
void refuseLostLink(const Folders& folders, const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    if (!folders.exists(path) &&
        std::ranges::any_of(folders.namesIn(folderOf(path)),
                            [&](const std::string& other) { return sameName(other, name); })) {
        throw Error(ErrorCode::Exists, path, "es un enlace que no lleva a ningún fichero");
    }
}

/// The in-update mark of an index, on the disk. A table found with it has its tags rebuilt from its records,
/// whether they are those of its index or those of another table.
void mark(File& index, bool isInUpdate) {
    if (index.size() < mdx::headBytes) {
        return; // not an index
    }
    StampBytes bytes;
    index.read(mdx::stamp, bytes);
    UpdateStamp stamp = decodeStamp(bytes);
    stamp.present = true;
    stamp.inUpdate = isInUpdate;
    index.write(mdx::stamp, encodeStamp(stamp));
    index.sync();
}

} // namespace

TableReplacement::TableReplacement(const std::string& tableFile)
    : TableReplacement(tableFile, diskFolders()) {}

TableReplacement::TableReplacement(const std::string& tableFile, Folders& folders)
    : TableReplacement(std::make_unique<TableClaim>(tableFile, folders)) {}

TableReplacement::TableReplacement(std::unique_ptr<TableClaim> own) : TableReplacement(*own) {
    own_ = std::move(own);
}

TableReplacement::TableReplacement(const TableClaim& claim)
    : folders_(claim.folders()), table_(claim.tableFile()) {
    const LockWaits waits;
    refuseLostLink(folders_, table_);
    if (folders_.exists(table_)) {
        holdOld();
    }
    // Also an index whose table is gone: the new table would take it for its own.
    const std::optional<std::string> existing = findIndexFile(folders_, table_);
    index_ = folders_.realPath(existing.value_or(withExtension(table_, ".MDX")));
    refuseLostLink(folders_, index_);
    if (existing) {
        folders_.requireReplaceable(index_);
        oldIndex_ = folders_.open(index_, OpenMode::ReadWrite);
    }
    newTable_ = temporaryName(table_);
    newIndex_ = temporaryName(index_);
}

// Programs that open the table wait for the opening lock, until they find the new one under its name.
void TableReplacement::holdOld() {
    folders_.requireReplaceable(table_);
    old_ = folders_.open(table_, OpenMode::ReadWrite);
    holdLock(*old_, openingLock, LockKind::Exclusive);
    if (!old_->tryLock(presenceLock, LockKind::Exclusive)) {
        refuseInUse(table_);
    }
    old_->unlock(presenceLock);
    recoverOld();
    // The last lock is for programs that do not know our presence lock.
    if (!old_->tryLock(presenceLock, LockKind::Exclusive) ||
        !old_->tryLock(wholeTableLock, LockKind::Exclusive)) {
        refuseInUse(table_);
    }
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

std::unique_ptr<File> TableReplacement::make(const std::string& path, const std::string& old) {
    const std::string& model = folders_.exists(old) ? old : table_;
    if (folders_.exists(model)) {
        return folders_.createTwin(path, model);
    }
    std::unique_ptr<File> file = folders_.createCompanion(path, {});
    if (!file) {
        throw Error(ErrorCode::Exists, table_, "otro programa ha puesto ahí " + path);
    }
    return file;
}

TableReplacement::~TableReplacement() {
    if (isCommitted_) {
        return;
    }
    for (const std::string* made : {&newTable_, &newIndex_, isIndexFirst_ ? &index_ : &newIndex_}) {
        try {
            folders_.remove(*made);
        } catch (...) {
            // The file stays, until the next claim of the table.
        }
    }
}

// Each name is on the disk before the next one changes. From the first change to the last, both indexes bear
// the mark, so that tags are rebuilt that do not belong to the records; and the new table's opening lock
// keeps others out.
void TableReplacement::commit() {
    const std::unique_ptr<File> table = folders_.open(newTable_, OpenMode::ReadWrite);
    const bool hasIndex = folders_.exists(newIndex_);
    const std::unique_ptr<File> index = hasIndex ? folders_.open(newIndex_, OpenMode::ReadWrite) : nullptr;
    holdLock(*table, openingLock, LockKind::Exclusive);
    table->sync();
    if (index) {
        mark(*index, true);
    }
    if (oldIndex_) {
        mark(*oldIndex_, true);
    }
    journalBeside(table_, folders_)->remove(); // it describes the records to be replaced
    changeNames(hasIndex);
    if (index) {
        mark(*index, false);
    }
    isCommitted_ = true;
}

// An index that comes where there was none comes first: without it neither table could be changed.
void TableReplacement::changeNames(bool hasIndex) {
    if (hasIndex && !oldIndex_) {
        isIndexFirst_ = true;
        rename(newIndex_, index_);
    }
    rename(newTable_, table_);
    isIndexFirst_ = false;
    if (hasIndex && oldIndex_) {
        rename(newIndex_, index_);
    } else if (oldIndex_) {
        folders_.remove(index_);
        folders_.syncFolderOf(index_);
    }
}

void TableReplacement::raiseUnderOwnName(const Error& error) const {
    const bool isTable = error.file() == newTable_;
    if (!isTable && error.file() != newIndex_) {
        throw; // the error at hand
    }
    const std::string text = error.what();
    throw Error(error.code(), isTable ? table_ : index_,
                text.substr(error.file().size() + 2)); // without "FILE: "
}

void TableReplacement::rename(const std::string& from, const std::string& to) {
    folders_.rename(from, to);
    folders_.syncFolderOf(to);
}

} // namespace dbase
