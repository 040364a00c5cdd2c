// Creates new files beside the old ones, then renames them.
#include "dbase/table/table_replacement.h"

#include <algorithm>
#include <utility>

#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

/// A name without a file is a link that leads nowhere, on a disk that may come back.
void refuseLostLink(const Folders& folders, const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    if (!folders.exists(path) &&
        std::ranges::any_of(folders.namesIn(folderOf(path)),
                            [&](const std::string& other) { return sameName(other, name); })) {
        throw Error(ErrorCode::Exists, path, "es un enlace que no lleva a ningún fichero");
    }
}

} // namespace

TableReplacement::TableReplacement(const std::string& tableFile)
    : TableReplacement(tableFile, diskFolders()) {}

TableReplacement::TableReplacement(const std::string& tableFile, Folders& folders)
    : TableReplacement(std::make_unique<TableClaim>(tableFile, folders)) {}

TableReplacement::TableReplacement(std::unique_ptr<TableClaim> own) : TableReplacement(*own) {
    own_ = std::move(own);
}

TableReplacement::TableReplacement(const TableClaim& claim) : folders_(claim.folders()) {
    const LockWaits waits;
    const std::string& table = claim.tableFile();
    refuseLostLink(folders_, table);
    if (folders_.exists(table)) {
        files_.table = table;
        holdOld();
    }
    // Also an index whose table is gone: the new table would take it for its own.
    const std::optional<std::string> existing = findIndexFile(folders_, table);
    const std::string index = folders_.realPath(existing.value_or(withExtension(table, ".MDX")));
    refuseLostLink(folders_, index);
    if (existing) {
        folders_.requireReplaceable(index);
        oldIndex_ = folders_.open(index, OpenMode::ReadWrite);
        warnIfHalfChanged(table, *oldIndex_);
    }
    files_ = replacedFiles(table, index);
}

void TableReplacement::holdOld() {
    folders_.requireReplaceable(files_.table);
    old_ = openAlone(folders_, files_.table);
    old_->unlock(presenceLock);
    recoverOld();
    requireUnused(*old_);
}

// The journal must be gone before its records are; until then the old table must not lose its changes.
void TableReplacement::recoverOld() const {
    const std::string& table = files_.table;
    if (!journalBeside(table, folders_)->openExisting()) {
        return;
    }
    try {
        const std::optional<std::string> index = findIndexFile(folders_, table);
        const Table old(folders_.open(table, OpenMode::ReadWrite),
                        index ? folders_.open(*index, OpenMode::ReadWrite) : nullptr, {},
                        journalBeside(table, folders_));
    } catch (const Error&) {
        // What cannot be recovered can still be replaced.
    }
}

std::unique_ptr<File> TableReplacement::make(const std::string& path, const std::string& old) {
    const std::string& model = folders_.exists(old) ? old : files_.table;
    if (folders_.exists(model)) {
        return folders_.createTwin(path, model);
    }
    std::unique_ptr<File> file = folders_.createCompanion(path, {});
    if (!file) {
        throw Error(ErrorCode::Exists, files_.table, "otro programa ha puesto ahí " + path);
    }
    return file;
}

TableReplacement::~TableReplacement() {
    if (!isCommitted_) {
        discard();
    }
}

void TableReplacement::discard() noexcept {
    const auto remove = [&](const std::string& made) {
        try {
            folders_.remove(made);
        } catch (...) {
            // The file stays, until the next claim of the table.
        }
    };
    if (isIndexFirst_ && hasNewTable()) {
        remove(files_.index);
    }
    remove(files_.newTable);
    remove(files_.newIndex);
}

// Each name is on the disk before the next one changes. From the first change to the last, both indexes bear
// the mark, so that tags are rebuilt that do not belong to the records; and the new table's opening lock
// keeps others out.
void TableReplacement::commit() {
    holdNew();
    flushNew();
    for (File* const index : {newIndex_.get(), oldIndex_.get()}) {
        if (index != nullptr) {
            setMark(*index, true);
        }
    }
    takeNames();
    if (newIndex_) {
        setMark(*newIndex_, false);
    }
    isCommitted_ = true;
}

void TableReplacement::holdNew() {
    if (new_) {
        return;
    }
    new_ = folders_.open(files_.newTable, OpenMode::ReadWrite);
    newIndex_ =
        folders_.exists(files_.newIndex) ? folders_.open(files_.newIndex, OpenMode::ReadWrite) : nullptr;
    holdLock(*new_, openingLock, LockKind::Exclusive);
}

void TableReplacement::flushNew() {
    new_->sync();
    if (newIndex_) {
        newIndex_->sync();
    }
}

// Beside the present files, where only the table's own people can read or change it.
void TableReplacement::changeInPlace(const OverlayFile& records, const OverlayFile& index) {
    TablePatch::write(*makeTable(), records, index);
    holdNew();
    patch_ = TablePatch::in(*new_).value();
}

// The journal describes the records to be replaced.
void TableReplacement::takeNames() {
    journalBeside(files_.table, folders_)->remove();
    isIndexFirst_ = newIndex_ && !oldIndex_;
    dbase::takeNames(folders_, files_, newIndex_ != nullptr);
}

// --- The steps of an exchange

// The records must be on the disk as they are recognised after a stop. Nobody else writes them meanwhile.
void TableReplacement::sumOld() {
    if (old_ && !oldSum_) {
        old_->sync();
        oldSum_ = fingerprintOf(*old_);
    }
}

void TableReplacement::settle() {
    sumOld();
    if (hasNewTable() && !newSum_) {
        underOwnNames([&] {
            holdNew();
            if (patch_) {
                patch_->reserve(*old_, *oldIndex_);
                restSum_ = patch_->restOf(oldSum_.value());
            } else {
                dropOld();
            }
            for (File* const file : {newIndex_.get(), new_.get()}) {
                if (file != nullptr) {
                    file->beginSync(); // the disk writes while the sum is taken
                }
            }
            const Fingerprint sum = fingerprintOf(*new_);
            flushNew();
            newSum_ = sum;
        });
    }
}

// From here on the patch alone completes the table: the session says so.
void TableReplacement::beginChanges() {
    journalBeside(files_.table, folders_)->remove();
    markHalfChanged(*oldIndex_, newSession_);
}

// Nobody will read the old files; without the memory that they take up by now they go faster.
void TableReplacement::dropOld() {
    for (File* const file : {old_.get(), oldIndex_.get()}) {
        if (file != nullptr) {
            file->dropCache();
        }
    }
}

IntendedTable TableReplacement::intended() {
    const auto nameOf = [](const std::string& path) { return path.substr(path.rfind('/') + 1); };
    settle();
    IntendedTable table{nameOf(files_.table),
                        nameOf(files_.index),
                        oldSum_,
                        newSum_.value(),
                        oldIndex_ != nullptr,
                        {},
                        restSum_};
    if (newIndex_) {
        table.indexAfter = newIndex_->size();
    }
    return table;
}

void TableReplacement::markFor(const Intention& intention) {
    newSession_ = intention.newSession();
    if (newIndex_) {
        setMark(*newIndex_, true, intention.newSession());
    }
    if (oldIndex_) {
        if (oldIndex_->size() < mdx::headBytes) { // it cannot bear the mark
            throw Error(ErrorCode::BadIndex, files_.index, "no es un índice; ejecute \"ambcp reindexar\"");
        }
        oldIndex_->read(mdx::stamp, oldStamp_.emplace());
        setMark(*oldIndex_, true, intention.oldSession());
    }
}

void TableReplacement::unmark() noexcept {
    try {
        if (oldStamp_) {
            oldIndex_->write(mdx::stamp, *std::exchange(oldStamp_, std::nullopt));
            oldIndex_->sync();
        }
    } catch (...) {
        // The mark stays, and the next program to open the table rebuilds its tags.
    }
}

void TableReplacement::endMark() {
    if (File* const index = patch_ ? oldIndex_.get() : newIndex_.get()) {
        setMark(*index, false, 0);
    }
    if (patch_) {
        folders_.remove(files_.newTable);
    }
}

void TableReplacement::raiseUnderOwnName(const Error& error) const {
    const bool isTable = error.file() == files_.newTable;
    if (!isTable && error.file() != files_.newIndex) {
        throw; // the error at hand
    }
    const std::string text = error.what();
    throw Error(error.code(), isTable ? files_.table : files_.index,
                text.substr(error.file().size() + 2)); // without "FILE: "
}

} // namespace dbase
