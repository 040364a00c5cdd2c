// Renames the files of a replacement, and marks its indexes.
#include "dbase/table/replaced_files.h"

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/system/notify.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table_claim.h"

namespace dbase {

namespace {

[[noreturn]] void refuseInUse(const std::string& table) {
    throw Error(ErrorCode::LockTimeout, table,
                "la tabla está abierta en otro programa; ciérrelo para poder sustituirla");
}

/// On the disk; nothing for what is not an index.
template<typename Change>
void changeStamp(File& index, const Change& change) {
    if (index.size() < mdx::headBytes) {
        return;
    }
    StampBytes bytes;
    index.read(mdx::stamp, bytes);
    UpdateStamp stamp = decodeStamp(bytes);
    stamp.present = true;
    change(stamp);
    index.write(mdx::stamp, encodeStamp(stamp));
    index.sync();
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
    changeStamp(index, [&](UpdateStamp& stamp) {
        stamp.inUpdate = isInUpdate;
        stamp.isHalfChanged = false;
        stamp.session = session.value_or(stamp.session);
    });
}

void markHalfChanged(File& index, std::uint64_t session) {
    changeStamp(index, [&](UpdateStamp& stamp) {
        stamp.inUpdate = stamp.isHalfChanged = true;
        stamp.session = session;
    });
}

void warnIfHalfChanged(const std::string& table, const File& index) {
    if (stampOf(&index).isHalfChanged) {
        warnOfHalfChanges(table);
    }
}

void warnOfHalfChanges(const std::string& tables) {
    notify(tables + ": un programa terminó mientras la cambiaba, y los cambios que faltaban se han perdido o "
                    "alguien la ha cambiado después; puede tener filas de antes y de después: restaure una "
                    "copia de seguridad");
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
