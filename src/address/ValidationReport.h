// The report on a validation of many addresses: one HTML page.
#pragma once

#include <ctime>
#include <functional>
#include <memory>
#include <string>

#include "AmbrelExport.h"

namespace ambrel {

struct ValidatedRow;

/// What was validated, and against what. Texts in UTF-8, unless it says otherwise.
struct ValidationRun {
    std::string input;  // such as "clientes.csv"
    std::string tables; // the folder
    double threshold = 0.90;
    /// The name of a province of two digits, both in Windows-1252; empty if there is none. Called by write().
    std::function<std::string(const std::string&)> provinceName;
    std::time_t begun = std::time(nullptr);
};

/// Collects in bounded memory, however many rows there are: the first hundred failures of each kind are kept.
class AMBREL_EXPORT ValidationReport {
public:
    /// A report without rows.
    explicit ValidationReport(ValidationRun run);
    ~ValidationReport();
    ValidationReport(const ValidationReport&) = delete;
    ValidationReport& operator=(const ValidationReport&) = delete;

    /// Whether write() could write there now; worth asking before a long run. Errors: dbase::Error, which
    /// says why not.
    static void requireWritable(const std::string& file);

    /// Takes the rows in their order.
    void add(const ValidatedRow& row);
    /// For a run that ended early: the report then says that it is partial.
    void setInterrupted();
    /// Writes the report, or leaves a file that has the name as it was. May be called again later. Errors:
    /// dbase::Error.
    void write(const std::string& file) const;

private:
    struct Findings;
    std::unique_ptr<Findings> findings_;
};

} // namespace ambrel
