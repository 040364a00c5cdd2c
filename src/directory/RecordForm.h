// One record of a table, column by column, whose places are found once.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"

namespace ambrel::directory {

/// A hash of a row's values as text.
using Fingerprint = std::uint64_t;

/// As many as a processor works on at once.
template<typename Value>
using SideBySide = std::array<Value, 4>;

/// Columns are known by their place in the list of the constructor.
class RecordForm {
public:
    /// `optional`: columns that the table may lack; they follow the others, read as blank, and take nothing.
    /// Errors: loading::Failure for one of the others that it lacks.
    RecordForm(const dbase::Schema& schema, std::initializer_list<const char*> columns,
               std::initializer_list<const char*> optional = {});

    // --- The columns of any record of the table
    [[nodiscard]] std::string_view text(std::size_t column, std::span<const char> record) const;
    /// Of digits alone, at most nine; null for anything else.
    [[nodiscard]] std::optional<std::uint32_t> number(std::size_t column, std::span<const char> record) const;
    [[nodiscard]] bool logical(std::size_t column, std::span<const char> record) const;
    /// FNV-1a of the listed columns in their order, each without blanks around it and followed by a tab.
    [[nodiscard]] Fingerprint fingerprint(std::span<const char> record) const;
    /// The same of several records, in less time than one after another: each step waits for the step before.
    [[nodiscard]] SideBySide<Fingerprint>
    fingerprints(const SideBySide<std::span<const char>>& records) const;

    // --- The record that is being written
    /// Begins with blank columns, or with those of another record.
    void begin(std::span<const char> record = {});
    void setText(std::size_t column, std::string_view value);
    /// With leading zeros.
    void setDigits(std::size_t column, std::uint32_t value, std::size_t width);
    /// Blank where it is too long.
    void setNumber(std::size_t column, std::int64_t value);
    void setLogical(std::size_t column, bool value);
    [[nodiscard]] std::span<const char> record() const { return record_; }
    /// Whether the listed columns of another record are the same, byte by byte.
    [[nodiscard]] bool isSaidBy(std::span<const char> record) const;

private:
    [[nodiscard]] std::string_view raw(std::size_t column, std::span<const char> record) const {
        return {record.data() + columns_[column].offset, columns_[column].width};
    }
    [[nodiscard]] std::span<char> room(std::size_t column) {
        return std::span(record_).subspan(columns_[column].offset, columns_[column].width);
    }

    /// Columns that stand side by side.
    struct Run {
        std::size_t offset, size;
    };
    void findRuns();

    std::vector<char> record_;
    std::vector<dbase::Column> columns_;
    std::vector<Run> runs_; // of all of them
};

} // namespace ambrel::directory
