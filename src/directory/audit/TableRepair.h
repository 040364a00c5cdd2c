// Mends rows of MUNICIPI and POSTAL, while other stations use them.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "AmbrelExport.h"
#include "directory/audit/Audit.h"

namespace ambrel::directory {

/// What became of a row that has one right repair.
enum class RepairOutcome {
    Planned, // in a dry run
    Done,
    Locked,   // another user holds the row
    Changed,  // another user has changed it meanwhile
    CopyLeft, // the name of a municipality, of which a copy in another row could not be changed
};

/// The repair of one row. Texts in UTF-8.
struct RepairedRow {
    AuditedTable table = {};
    dbase::RecordNumber record = 0;
    std::string key = {};
    std::set<FindingClass> kinds = {};
    std::string change = {}; // "VIA=PEÑA, CAPITAL=9"
};

/// What is to be repaired.
struct RepairOptions {
    std::string database = "DB";
    std::set<FindingClass> kinds = {};     // those that isRepairable() admits
    std::optional<AuditedTable> only = {}; // null: both. MUNICIPI's names include their copies in POSTAL
    AuditProgress progress = {};           // may throw, which ends the repair between two batches of rows
};

/// Gets each row as it is planned, done or left.
using RepairObserver = std::function<void(const RepairedRow&, RepairOutcome)>;

/// Where a repair keeps what was in the rows.
struct RepairUndo {
    std::string file = {};  // that is created; empty: "revisar.deshacer" beside POSTAL, or the next free name
    std::string order = {}; // what repairs, as the file says
};

/// Shows each row that has one right repair, and changes nothing. Errors: dbase::Error.
AMBREL_EXPORT void planRepairs(const RepairOptions& options, const RepairObserver& observer);

/// Mends each of those rows under its lock, keeping it in the undo file first. `undoFile` becomes that file's
/// name, once it has something to undo. Errors: dbase::Error; what was mended by then stays.
AMBREL_EXPORT void repairTables(const RepairOptions& options, const RepairUndo& undo,
                                const RepairObserver& observer, std::string& undoFile);

} // namespace ambrel::directory
