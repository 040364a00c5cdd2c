// Renames the files of a replacement, and marks its indexes.
#include "dbase/table/replaced_files.h"

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/table/table_claim.h"

namespace dbase {

namespace {

[[noreturn]] void refuseInUse(const std::string& table) {
    throw Error(ErrorCode::LockTimeout, table,
                "la tabla está abierta en otro programa; ciérrelo para poder sustituirla");
}

} // namespace

ReplacedFiles replacedFiles(std::string table, std::string index) {
    ReplacedFiles files{std::move(table), std::move(index), {}, {}};
    files.newTable = temporaryName(files.table);
    files.newIndex = temporaryName(files.index);
    return files;
}

// An index that comes where there was none comes first: without it neither table could be changed.
void takeNames(Folders& folders, const ReplacedFiles& files, bool hasIndex) {
    const auto take = [&](const std::string& from, const std::string& to) {
        if (folders.exists(from)) {
            folders.rename(from, to);
            folders.syncFolderOf(to);
        }
    };
    if (hasIndex && !folders.exists(files.index)) {
        take(files.newIndex, files.index);
    }
    take(files.newTable, files.table);
    if (hasIndex) {
        take(files.newIndex, files.index);
    } else if (folders.exists(files.index)) {
        folders.remove(files.index);
        folders.syncFolderOf(files.index);
    }
}

void setMark(File& index, bool isInUpdate, std::optional<std::uint64_t> session) {
    if (index.size() < mdx::headBytes) {
        return; // not an index
    }
    StampBytes bytes;
    index.read(mdx::stamp, bytes);
    UpdateStamp stamp = decodeStamp(bytes);
    stamp.present = true;
    stamp.inUpdate = isInUpdate;
    stamp.session = session.value_or(stamp.session);
    index.write(mdx::stamp, encodeStamp(stamp));
    index.sync();
}

std::unique_ptr<File> openAlone(Folders& folders, const std::string& table) {
    std::unique_ptr<File> file = folders.open(table, OpenMode::ReadWrite);
    holdLock(*file, openingLock, LockKind::Exclusive);
    if (!file->tryLock(presenceLock, LockKind::Exclusive)) {
        refuseInUse(table);
    }
    return file;
}

void requireUnused(File& table) {
    if (!table.tryLock(presenceLock, LockKind::Exclusive) ||
        !table.tryLock(wholeTableLock, LockKind::Exclusive)) {
        refuseInUse(table.path());
    }
}

} // namespace dbase
