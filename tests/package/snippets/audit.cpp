#include <string>
#include <vector>

#include "directory/audit/AuditReport.h"
#include "directory/audit/TableRepair.h"

using namespace ambrel::directory;

// What makes a search go wrong, and a report on all that is to be said of the tables. What `goesOn` throws
// ends the audit.
std::vector<Finding> graveFindings(const std::string& htmlFile, const AuditProgress& goesOn) {
    AuditReport::requireWritable(htmlFile);
    AuditReport report({.tables = "DB"});
    std::vector<Finding> grave;
    const auto take = [&](const Finding& finding) {
        report.add(finding);
        if (finding.severity == Severity::Grave) {
            grave.push_back(finding);
        }
    };
    const AuditTotals totals = auditTables("DB", take, goesOn);
    report.write(htmlFile, totals);
    return grave;
}

// Takes needless blanks out of names. The undo file, which "ambcp deshacer" understands; empty if nothing
// was to be done.
std::string mendBlanks(const RepairObserver& observer) {
    std::string undoFile;
    repairTables({.database = "DB", .kinds = {FindingClass::NeedlessBlanks}},
                 {.file = "", .order = "limpieza de los nombres"}, observer, undoFile);
    return undoFile;
}
