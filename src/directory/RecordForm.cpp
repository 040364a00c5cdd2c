// Reads and writes the columns of records.
#include "directory/RecordForm.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "dbase/dbf/codec.h"
#include "dbase/system/trim.h"
#include "directory/FixedLine.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

/// A word at a time: most of a wide column is padding.
std::string_view withoutPadding(std::string_view raw) {
    constexpr std::string_view word = "        ";
    while (raw.ends_with(word)) {
        raw.remove_suffix(word.size());
    }
    return dbase::trimmedRight(raw, dbase::isBlank);
}

/// Columns of digits are mostly full.
inline std::string_view withoutBlanks(std::string_view raw) {
    const bool isPadded = raw.empty() || raw.back() == ' ';
    const std::string_view text = isPadded ? withoutPadding(raw) : raw;
    return dbase::trimmedLeft(text, dbase::isBlank);
}

// FNV-1a.

constexpr Fingerprint emptyFingerprint = 0xCBF29CE484222325;
constexpr char columnEnd = '\t';

Fingerprint with(Fingerprint sum, char sign) {
    constexpr Fingerprint prime = 0x100000001B3;
    return (sum ^ static_cast<unsigned char>(sign)) * prime;
}

Fingerprint with(Fingerprint sum, std::string_view text) {
    for (const char sign : text) {
        sum = with(sum, sign);
    }
    return sum;
}

/// The beginnings of several texts, which are `size` long. The sums have names of their own, as an array of
/// them would stay in memory.
SideBySide<Fingerprint> with(const SideBySide<Fingerprint>& sums, const SideBySide<std::string_view>& texts,
                             std::size_t size) {
    auto [first, second, third, fourth] = sums;
    for (std::size_t i = 0; i < size; ++i) {
        first = with(first, texts[0][i]);
        second = with(second, texts[1][i]);
        third = with(third, texts[2][i]);
        fourth = with(fourth, texts[3][i]);
    }
    return {first, second, third, fourth};
}

} // namespace

RecordForm::RecordForm(const dbase::Schema& schema, std::initializer_list<const char*> columns,
                       std::initializer_list<const char*> optional)
    : record_(schema.recordLength, ' ') {
    for (const char* const name : columns) {
        const auto position = schema.find(name);
        if (!position) {
            throw loading::Failure(std::string("la tabla no tiene la columna ") + name);
        }
        columns_.push_back(schema.columns[*position]);
    }
    for (const char* const name : optional) {
        const auto position = schema.find(name);
        columns_.push_back(position ? schema.columns[*position] : dbase::Column{.name = name, .width = 0});
    }
    findRuns();
}

void RecordForm::findRuns() {
    std::vector<dbase::Column> inOrder = columns_;
    std::ranges::sort(inOrder, {}, &dbase::Column::offset);
    for (const dbase::Column& column : inOrder) {
        if (runs_.empty() || runs_.back().offset + runs_.back().size != column.offset) {
            runs_.push_back({column.offset, 0});
        }
        runs_.back().size += column.width;
    }
}

std::string_view RecordForm::text(std::size_t column, std::span<const char> record) const {
    return dbase::decodeText(raw(column, record));
}

std::optional<std::uint32_t> RecordForm::number(std::size_t column, std::span<const char> record) const {
    constexpr std::size_t most = 9;
    const std::string_view text = withoutBlanks(raw(column, record));
    return text.empty() || text.size() > most ? std::nullopt : FixedLine(text).number(1, text.size());
}

bool RecordForm::logical(std::size_t column, std::span<const char> record) const {
    return dbase::decodeLogical(raw(column, record)).value_or(false);
}

Fingerprint RecordForm::fingerprint(std::span<const char> record) const {
    Fingerprint sum = emptyFingerprint;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        sum = with(with(sum, withoutBlanks(raw(column, record))), columnEnd);
    }
    return sum;
}

SideBySide<Fingerprint> RecordForm::fingerprints(const SideBySide<std::span<const char>>& records) const {
    SideBySide<Fingerprint> sums;
    sums.fill(emptyFingerprint);
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        SideBySide<std::string_view> texts;
        std::size_t shared = columns_[column].width;
        for (std::size_t i = 0; i < records.size(); ++i) {
            texts[i] = withoutBlanks(raw(column, records[i]));
            shared = std::min(shared, texts[i].size());
        }
        sums = with(sums, texts, shared);
        for (std::size_t i = 0; i < sums.size(); ++i) {
            sums[i] = with(with(sums[i], texts[i].substr(shared)), columnEnd);
        }
    }
    return sums;
}

void RecordForm::begin(std::span<const char> record) {
    if (record.empty()) {
        std::ranges::fill(record_, ' ');
    } else {
        std::ranges::copy(record, record_.begin());
    }
}

void RecordForm::setText(std::size_t column, std::string_view value) {
    dbase::encodeText(room(column), value);
}

void RecordForm::setDigits(std::size_t column, std::uint32_t value, std::size_t width) {
    std::array<char, 10> digits;
    for (std::size_t i = width; i > 0; value /= 10) {
        digits[--i] = static_cast<char>('0' + value % 10);
    }
    dbase::encodeText(room(column), {digits.data(), width});
}

void RecordForm::setNumber(std::size_t column, std::int64_t value) {
    if (!dbase::encodeInteger(room(column), value)) {
        dbase::encodeBlank(room(column));
    }
}

void RecordForm::setLogical(std::size_t column, bool value) { dbase::encodeLogical(room(column), value); }

bool RecordForm::isSaidBy(std::span<const char> record) const {
    return std::ranges::all_of(runs_, [&](const Run& run) {
        return std::memcmp(record.data() + run.offset, record_.data() + run.offset, run.size) == 0;
    });
}

} // namespace ambrel::directory
