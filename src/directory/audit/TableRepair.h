// Mends rows of MUNICIPI and POSTAL, while other stations use them.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "directory/audit/Finding.h"

namespace loading {
class UndoWriter;
}

namespace ambrel::directory {

enum class RepairOutcome {
    Planned, // in a dry run
    Done,
    Locked,   // another user holds the row
    Changed,  // another user has changed it meanwhile
    CopyLeft, // the name of a municipality, of which a copy in another row could not be changed
};

/// Texts in UTF-8.
struct RepairedRow {
    AuditedTable table = {};
    dbase::RecordNumber record = 0;
    std::string key = {};
    std::set<FindingClass> kinds = {};
    std::string change = {}; // "VIA=PEÑA, CAPITAL=9"
};

struct RepairOptions {
    std::string database = "DB";
    std::set<FindingClass> kinds = {};     // those that isRepairable() admits
    std::optional<AuditedTable> only = {}; // null: both. MUNICIPI's names include their copies in POSTAL
};

using RepairObserver = std::function<void(const RepairedRow&, RepairOutcome)>;

/// Mends each row that has one right repair, under its lock, keeping it in the undo file first. `undo`: null
/// for a dry run, which changes nothing. Errors: dbase::Error; what was mended by then stays.
void repairTables(const RepairOptions& options, loading::UndoWriter* undo, const RepairObserver& observer);

} // namespace ambrel::directory
