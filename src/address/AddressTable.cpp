// Writes records as CSV while it is being read.
#include "address/AddressTable.h"

#include <algorithm>

#include "address/ValidatedColumns.h"
#include "dbase/dbf/codec.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/trim.h"

namespace ambrel {

namespace {

constexpr std::uint64_t slice = 512; // records read under one lock

bool isShown(const dbase::Column& column) {
    return column.type != dbase::ColumnType::Memo &&
           std::ranges::find(validatedColumnNames, column.name) == validatedColumnNames.end();
}

} // namespace

AddressTable::AddressTable(std::shared_ptr<dbase::Table> table,
                           std::optional<std::vector<dbase::RecordNumber>> only)
    : table_(std::move(table)), only_(std::move(only)) {
    const std::vector<dbase::Column>& columns = table_->schema().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (isShown(columns[i])) {
            columns_.push_back(i);
        }
    }
    addHeading();
}

AddressFileInput AddressTable::input() {
    return {[this](std::span<char> bytes) { return read(bytes); }, table_->path(), std::nullopt};
}

AddressTable::Record AddressTable::takeRecord() {
    Record record = std::move(records_.front());
    records_.pop_front();
    return record;
}

std::optional<std::size_t> AddressTable::columnAt(std::size_t place) const {
    return place == 0 || place > columns_.size() ? std::nullopt : std::optional(columns_[place - 1]);
}

std::size_t AddressTable::read(std::span<char> bytes) {
    while (at_ == text_.size() && !isAtEnd_) {
        text_.clear();
        at_ = 0;
        readSlice();
    }
    const std::size_t size = std::min(bytes.size(), text_.size() - at_);
    std::copy_n(text_.begin() + static_cast<std::ptrdiff_t>(at_), size, bytes.begin());
    at_ += size;
    return size;
}

void AddressTable::readSlice() {
    struct Slice {
        std::vector<Record> records;
        std::uint64_t next;
        bool isLast;
    };
    auto [records, next, isLast] = table_->read([&] {
        const dbase::TableFile& file = table_->records();
        const std::uint64_t count = file.recordCount();
        const std::uint64_t end = only_ ? only_->size() : count;
        Slice found{.records = {}, .next = std::min(next_ + slice, end), .isLast = false};
        for (std::uint64_t i = next_; i < found.next; ++i) {
            const std::uint64_t number = only_ ? (*only_)[i] : i + 1;
            if (number == 0 || number > count) {
                continue;
            }
            const dbase::RecordView record = file.record(static_cast<dbase::RecordNumber>(number));
            if (!record.isDeleted()) {
                found.records.push_back({record.number, {record.bytes.begin(), record.bytes.end()}});
            }
        }
        found.isLast = found.next == end;
        return found;
    });
    next_ = next;
    isAtEnd_ = isLast;
    for (Record& record : records) {
        text_ += std::to_string(record.number);
        addRow(record.bytes);
        records_.push_back(std::move(record));
    }
}

void AddressTable::addHeading() {
    const dbase::CodePage& page = dbase::CodePage::ofDriver(table_->schema().languageDriver);
    text_ = numberColumn;
    for (const std::size_t column : columns_) {
        addValue(page.toUtf8(table_->schema().columns[column].name));
    }
    text_ += '\n';
}

void AddressTable::addRow(std::span<const char> record) {
    for (const std::size_t column : columns_) {
        addValue(value(table_->schema().columns[column], record));
    }
    text_ += '\n';
}

std::string AddressTable::value(const dbase::Column& column, std::span<const char> record) const {
    const std::string_view raw(record.data() + column.offset, column.width);
    if (column.type == dbase::ColumnType::Character) {
        return dbase::CodePage::ofDriver(table_->schema().languageDriver).toUtf8(dbase::decodeText(raw));
    }
    std::string text(dbase::trimmedLine(raw));
    if (column.type == dbase::ColumnType::Date && text.size() == 8) {
        text.insert(6, 1, '-').insert(4, 1, '-');
    }
    return text;
}

void AddressTable::addValue(std::string_view utf8) {
    const bool isQuoted = utf8.find_first_of(",\"\r\n") != std::string_view::npos;
    text_ += isQuoted ? ",\"" : ",";
    for (const char c : utf8) {
        text_.append(c == '"' ? 2 : 1, c);
    }
    text_.append(isQuoted ? 1 : 0, '"');
}

} // namespace ambrel
