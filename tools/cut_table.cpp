// Recognizes tables shorter than their header announces.
#include "tools/cut_table.h"

#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "dbase/system/folders.h"
#include "loading/failure.h"

namespace ambcp {

namespace {

/// Any writer that adds a record holds this byte, whatever else it locks, and may change the count.
constexpr dbase::LockRange appending{dbase::lock_offset::append, 1};

std::optional<Shortfall> lookAt(const dbase::TableFile& records) {
    const Shortfall found{.announced = records.announcedCount(), .held = records.recordCount()};
    return found.announced > found.held ? std::optional(found) : std::nullopt;
}

/// Index and journal of a link lie beside the table to which it leads.
std::string realPath(const std::string& tableFile) { return dbase::diskFolders().realPath(tableFile); }

/// Whether a journal shows that our programs were adding records that did not all reach the disk.
bool isExplainedByJournal(const std::string& tableFile) {
    const dbase::TableFile records(dbase::openFile(tableFile, dbase::OpenMode::ReadOnly));
    dbase::Journal journal(dbase::journalBeside(tableFile), records.schema());
    return journal.exists() && journal.recordsAtBegin().value_or(0) <= records.recordCount();
}

} // namespace

std::optional<Shortfall> shortfallOf(const std::string& tableFile) {
    dbase::TableFile records(dbase::openFile(tableFile, dbase::OpenMode::ReadOnly));
    if (!lookAt(records)) {
        return std::nullopt;
    }
    // Looks again while none of our programs writes, under the lock of the index where there is one.
    const auto locked = dbase::openFile(dbase::findIndexFile(realPath(tableFile)).value_or(tableFile),
                                        dbase::OpenMode::ReadOnly);
    dbase::StructureLock::Holders holders;
    if (records.file().isRemote()) {
        holders.exchanged = &records.file();
    }
    const dbase::StructureLock lock(*locked, holders, dbase::LockKind::Shared);
    records.forgetSize();
    return records.file().isLockedByOthers(appending) ? std::nullopt : lookAt(records);
}

std::uint32_t recordsIn(const std::string& tableFile) {
    return dbase::TableFile(dbase::openFile(tableFile, dbase::OpenMode::ReadOnly)).recordCount();
}

std::string describe(const Shortfall& shortfall) {
    return "la tabla está cortada: dice tener " +
           dbase::counted(shortfall.announced, "registro", "registros") + " y hay " +
           dbase::counted(shortfall.held, "completo", "completos") +
           "; recupere la copia de seguridad; \"ambcp reindexar\" se queda con los completos";
}

void requireWhole(const std::string& tableFile) {
    const std::optional<Shortfall> shortfall = shortfallOf(tableFile);
    if (shortfall && !isExplainedByJournal(realPath(tableFile))) {
        throw DamagedTable(tableFile + ": " + describe(*shortfall));
    }
}

} // namespace ambcp
