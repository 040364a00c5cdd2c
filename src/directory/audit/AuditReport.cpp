// Collects findings and writes their page.
#include "directory/audit/AuditReport.h"

#include <numeric>

#include "directory/audit/AuditPage.h"
#include "report/WholeFile.h"

namespace ambrel::directory {

void AuditReport::requireWritable(const std::string& file) { report::requireWritable(file); }

void AuditReport::add(const Finding& finding) {
    const auto kind = static_cast<std::size_t>(finding.kind);
    ++counts_.at(static_cast<std::size_t>(finding.severity)).at(kind);
    if (finding.severity != Severity::Note) {
        ++inProvinces_[finding.province];
    }
    if (first_.at(kind).size() < mostShown) {
        first_.at(kind).push_back(finding);
    }
}

std::uint64_t AuditReport::count(FindingClass kind) const {
    return count(Severity::Grave, kind) + count(Severity::Warning, kind) + count(Severity::Note, kind);
}

std::uint64_t AuditReport::count(Severity severity) const {
    const auto& counts = counts_.at(static_cast<std::size_t>(severity));
    return std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
}

void AuditReport::write(const std::string& file, const AuditTotals& totals) const {
    report::writeWholeFile(file, auditPage(*this, totals));
}

} // namespace ambrel::directory
