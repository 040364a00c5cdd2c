// Removes the files of a table that nobody uses.
#include "dbase/journal/journal_place.h"
#include "dbase/lock/locks.h"
#include "dbase/system/error.h"
#include "dbase/table/table_creation.h"

namespace dbase {

// The records go first: an index without records is taken over by the next creation.
void removeTable(const TableClaim& claim) {
    Folders& folders = claim.folders();
    const std::string& table = claim.tableFile();
    if (!folders.exists(table)) {
        return;
    }
    const std::unique_ptr<File> file = folders.open(table, OpenMode::ReadWrite);
    holdLock(*file, openingLock, LockKind::Exclusive);
    if (!file->tryLock(presenceLock, LockKind::Exclusive)) {
        throw Error(ErrorCode::LockTimeout, table, "la tabla está abierta en otro programa");
    }
    const std::optional<std::string> index = findIndexFile(folders, table);
    journalBeside(table, folders)->remove();
    folders.remove(table);
    if (index) {
        folders.remove(*index);
    }
    folders.syncFolderOf(table);
}

} // namespace dbase
