// Judges the addresses of a host's table and, if wanted, fills columns of it with what was found out.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "address/AddressFill.h"
#include "address/AddressTable.h"
#include "loading/batch_changes.h"

namespace ambrel {

/// A row that was to be changed and was left as it is. Texts in UTF-8.
struct UnfilledRow {
    dbase::RecordNumber record = 0;
    FillProblem problem = {};
};

struct TableTotals {
    AddressFileTotals addresses = {};
    std::uint64_t changed = 0, leftAlone = 0; // rows of the table
};

/// One validation of a table. Deleted records are skipped.
class TableValidation {
public:
    /// `options`: those that concern the form of a file do not count. Errors: dbase::Error;
    /// AddressColumnsError if its columns are not recognised.
    TableValidation(const std::string& tableFile, AddressFileOptions options);
    TableValidation(const TableValidation&) = delete;
    TableValidation& operator=(const TableValidation&) = delete;

    [[nodiscard]] const dbase::Table& table() const { return *table_; }
    [[nodiscard]] dbase::RecordNumber recordCount() const;

    /// Makes run() change the table. Errors, before anything is changed: dbase::Error if the table can only
    /// be read; those of AddressFill; for a column of the key that the table lacks.
    void fill(const FillNames& names, loading::UndoWriter& undo, const std::vector<std::string>& key,
              std::function<void(const UnfilledRow&)> observer);

    /// Judges every record, and writes it as CSV if `handlers` say where; reported rows have the record's
    /// number and no line. Rows that others hold or change
    /// meanwhile are judged once more at the end. Errors: those of validateAddressFile() and BatchChanges;
    /// what was changed by then stays.
    TableTotals run(const AddressFileHandlers& handlers);

private:
    void runOver(AddressTable& records, AddressFileHandlers handlers);
    void take(const AddressTable::Record& record, const ValidatedRow& row);
    void decided(dbase::RecordNumber record, loading::ChangeOutcome outcome);
    void leave(dbase::RecordNumber record, FillProblem problem);
    [[nodiscard]] const std::string& provinceOf(const std::string& code);

    std::shared_ptr<dbase::Table> table_;
    AddressFileOptions options_;
    FillSources sources_{};
    std::optional<AddressFill> fill_;
    std::unique_ptr<loading::BatchChanges> changes_;
    std::function<void(const UnfilledRow&)> observer_;
    std::map<std::string, std::string> provinces_;
    std::vector<dbase::RecordNumber> again_; // rows for a second try
    bool isSecondTry_ = false;
    TableTotals totals_;
};

} // namespace ambrel
