// The report on an audit: one HTML page.
#pragma once

#include <array>
#include <ctime>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "directory/audit/Audit.h"

namespace ambrel::directory {

/// What was audited. Texts in UTF-8, unless it says otherwise.
struct AuditRun {
    std::string tables = {}; // the folder
    std::string only = {};   // the table whose findings are wanted; empty: both
    /// The name of a province of two digits, both in Windows-1252; empty if there is none.
    std::function<std::string(const std::string&)> provinceName = {};
    std::time_t begun = std::time(nullptr);
};

/// Collects findings in bounded memory: the first hundred of each class are kept.
class AMBREL_EXPORT AuditReport {
public:
    /// Findings of each class that the page lists.
    static constexpr std::size_t mostShown = 100;

    /// A report without findings.
    explicit AuditReport(AuditRun run) : run_(std::move(run)) {}

    /// Whether write() could write there now. Errors: dbase::Error, which says why not.
    static void requireWritable(const std::string& file);

    /// Takes a finding.
    void add(const Finding& finding);
    /// Writes the page, or leaves a file that has the name as it was. Errors: dbase::Error.
    void write(const std::string& file, const AuditTotals& totals) const;

    /// What was audited.
    [[nodiscard]] const AuditRun& run() const { return run_; }
    /// Findings so far: of a severity and a class, or of either.
    [[nodiscard]] std::uint64_t count(Severity severity, FindingClass kind) const {
        return counts_.at(static_cast<std::size_t>(severity)).at(static_cast<std::size_t>(kind));
    }
    [[nodiscard]] std::uint64_t count(FindingClass kind) const;
    [[nodiscard]] std::uint64_t count(Severity severity) const;
    /// Findings so far without notes, by province of two digits; "" where it is not known.
    [[nodiscard]] const std::map<std::string, std::uint64_t>& countByProvince() const { return inProvinces_; }
    /// The first findings of a class.
    [[nodiscard]] const std::vector<Finding>& first(FindingClass kind) const {
        return first_.at(static_cast<std::size_t>(kind));
    }

private:
    AuditRun run_;
    std::array<std::array<std::uint64_t, findingClassCount>, 3> counts_{}; // by severity
    std::map<std::string, std::uint64_t> inProvinces_;
    std::array<std::vector<Finding>, findingClassCount> first_;
};

} // namespace ambrel::directory
