// A table of a host's whose records are addresses, read like a file of them.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "address/AddressFile.h"
#include "dbase/table/table.h"

namespace ambrel {

/// Gives the records that are not deleted to validateAddressFile(), as CSV in UTF-8: first the record's
/// number, then the table's columns, without memos and without those that a validation adds. Other stations
/// may change the table meanwhile: each row is as it was when it was read.
class AddressTable {
public:
    static constexpr std::string_view numberColumn = "_REG";

    struct Record {
        dbase::RecordNumber number = 0;
        std::vector<char> bytes = {};
    };

    /// `only`: the records to be read, in this order; all of them if not given.
    explicit AddressTable(std::shared_ptr<dbase::Table> table,
                          std::optional<std::vector<dbase::RecordNumber>> only = {});
    AddressTable(const AddressTable&) = delete;
    AddressTable& operator=(const AddressTable&) = delete;

    /// To be read once, and only as long as this object exists.
    [[nodiscard]] AddressFileInput input();
    /// The record of the next row that validateAddressFile() reports.
    [[nodiscard]] Record takeRecord();

    /// Position in the table's schema of a column of the CSV; null for the number's.
    [[nodiscard]] std::optional<std::size_t> columnAt(std::size_t place) const;

private:
    [[nodiscard]] std::size_t read(std::span<char> bytes);
    void readSlice();
    void addHeading();
    void addRow(std::span<const char> record);
    void addValue(std::string_view utf8);
    [[nodiscard]] std::string value(const dbase::Column& column, std::span<const char> record) const;

    std::shared_ptr<dbase::Table> table_;
    std::optional<std::vector<dbase::RecordNumber>> only_;
    std::vector<std::size_t> columns_; // those of the CSV, after the number
    std::uint64_t next_ = 0;           // record, or place in `only_`, counted from 0
    bool isAtEnd_ = false;
    std::string text_; // so far unread
    std::size_t at_ = 0;
    std::deque<Record> records_;
};

} // namespace ambrel
