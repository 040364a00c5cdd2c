// Rows by a hash of their values.
#include "loading/row_index.h"

#include <algorithm>
#include <string_view>

#include "dbase/system/mapped_view.h"

namespace loading {

namespace {

constexpr dbase::RecordNumber slice = 4096;
constexpr unsigned slicesBetweenReleases = 16; // of pages, lest the whole table stays in memory

} // namespace

RowIndex::RowIndex(dbase::Table& table, std::vector<std::size_t> columns)
    : schema_(table.schema()), columns_(std::move(columns)) {
    using Found = std::vector<std::pair<std::uint64_t, dbase::RecordNumber>>;
    unsigned slices = 0;
    for (dbase::RecordNumber first = 1; first != 0;) {
        const auto [found, next] = table.read([&] {
            const dbase::TableFile& records = table.records();
            const dbase::RecordNumber count = records.recordCount();
            const dbase::RecordNumber last = std::min(count, first + slice - 1);
            Found rows;
            for (dbase::RecordNumber number = first; number <= last; ++number) {
                if (const dbase::RecordView record = records.record(number); !record.isDeleted()) {
                    rows.emplace_back(hash(record.bytes), number);
                }
            }
            return std::pair(std::move(rows), last < count ? last + 1 : 0);
        });
        rows_.insert(found.begin(), found.end());
        first = next;
        if (++slices % slicesBetweenReleases == 0 || next == 0) {
            dbase::releaseViewedPages();
        }
    }
}

std::uint64_t RowIndex::hash(std::span<const char> row) const {
    const std::hash<std::string_view> hashOf;
    const std::string_view bytes(row.data(), row.size());
    if (columns_.empty()) {
        return hashOf(bytes.substr(1));
    }
    std::uint64_t sum = 0;
    for (const std::size_t position : columns_) {
        const dbase::Column& column = schema_.columns[position];
        sum = sum * 0x100000001B3 + hashOf(bytes.substr(column.offset, column.width));
    }
    return sum;
}

std::vector<dbase::RecordNumber> RowIndex::find(std::span<const char> row) const {
    const auto [begin, end] = rows_.equal_range(hash(row));
    std::vector<dbase::RecordNumber> numbers;
    std::transform(begin, end, std::back_inserter(numbers), [](const auto& entry) { return entry.second; });
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

void RowIndex::put(dbase::RecordNumber number, std::span<const char> row) {
    rows_.emplace(hash(row), number);
}

} // namespace loading
