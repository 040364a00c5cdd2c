// The rows that a table has.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/table_file.h"
#include "dbase/table/table.h"
#include "directory/LoadingProgress.h"

namespace ambrel::directory {

/// Reads them all in one pass, and single ones afterwards.
class StoredRows {
public:
    /// Whether other programs may be changing the table meanwhile, or are kept out.
    enum class Others { Change, AreKeptOut };

    /// Errors: dbase::Error.
    StoredRows(const std::string& tableFile, Others others);

    [[nodiscard]] const std::string& tableFile() const;
    [[nodiscard]] const dbase::Schema& schema() const { return records().schema(); }
    [[nodiscard]] dbase::RecordNumber recordCount() const { return records().recordCount(); }
    using Visit = std::function<void(dbase::RecordNumber, std::span<const char>)>;
    /// Visits the rows that are not deleted, in the order of their records; the others by `visitDeleted`, if
    /// there is one. Their bytes stay until the next call of `release`.
    void forEach(const Visit& visit, const Visit& visitDeleted = {},
                 const std::function<void()>& release = {}) const;
    /// Reads rows that follow each other, deleted ones included, as many as there are and `bytes` can hold;
    /// returns how many.
    dbase::RecordNumber readFrom(dbase::RecordNumber first, std::span<char> bytes) const;
    /// One of them, a copy; empty if it has been deleted meanwhile.
    [[nodiscard]] std::vector<char> row(dbase::RecordNumber number) const;

private:
    [[nodiscard]] const dbase::TableFile& records() const { return file_ ? *file_ : table_->records(); }
    template<typename Operation>
    auto read(const Operation& operation) const;

    std::shared_ptr<dbase::Table> table_; // or else, beside nobody:
    std::unique_ptr<dbase::TableFile> file_;
};

/// The tables as they are.
struct StoredTables {
    const StoredRows* streets = nullptr;
    const StoredRows* places = nullptr;
    const StoredRows* provenance = nullptr; // null before the first edition
};

/// Reports now and then that a row of a table is being read.
inline void reportStep(const LoadingProgress& progress, std::string_view task, dbase::RecordNumber row,
                       dbase::RecordNumber count) {
    constexpr dbase::RecordNumber interval = 16384;
    if (progress && row % interval == 0) {
        progress({task, row, static_cast<double>(row) / static_cast<double>(count)});
    }
}

} // namespace ambrel::directory
