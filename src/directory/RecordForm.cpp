// Reads and writes the columns of records.
#include "directory/RecordForm.h"

#include <algorithm>
#include <array>

#include "dbase/dbf/codec.h"
#include "dbase/system/trim.h"
#include "directory/FixedLine.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

/// A word at a time: most of a wide column is padding.
std::string_view withoutBlanks(std::string_view raw) {
    constexpr std::string_view word = "        ";
    while (raw.ends_with(word)) {
        raw.remove_suffix(word.size());
    }
    return dbase::trimmedLeft(dbase::trimmedRight(raw, dbase::isBlank), dbase::isBlank);
}

/// Many at a time, as for withoutBlanks().
bool isBlank(std::string_view raw) {
    constexpr std::string_view word = "                ";
    while (raw.size() > word.size() && raw.starts_with(word)) {
        raw.remove_prefix(word.size());
    }
    return word.starts_with(raw);
}

/// The last digits of a number, with leading zeros.
struct Digits {
    Digits(std::uint32_t value, std::size_t size) : width(size) {
        for (std::size_t i = width; i > 0; value /= 10) {
            signs.at(--i) = static_cast<char>('0' + value % 10);
        }
    }
    [[nodiscard]] std::string_view text() const { return {signs.data(), width}; }

    std::array<char, 10> signs{};
    std::size_t width;
};

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
    constexpr Fingerprint begin = 0xCBF29CE484222325, prime = 0x100000001B3;
    Fingerprint sum = begin;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        for (const char sign : withoutBlanks(raw(column, record))) {
            sum = (sum ^ static_cast<unsigned char>(sign)) * prime;
        }
        sum = (sum ^ static_cast<unsigned char>('\t')) * prime;
    }
    return sum;
}

bool RecordForm::hasText(std::size_t column, std::span<const char> record, std::string_view value) const {
    const std::string_view text = raw(column, record);
    return text.starts_with(value) && isBlank(text.substr(value.size()));
}

bool RecordForm::hasDigits(std::size_t column, std::span<const char> record, std::uint32_t value,
                           std::size_t width) const {
    return hasText(column, record, Digits(value, width).text());
}

bool RecordForm::hasNumber(std::size_t column, std::span<const char> record, std::uint32_t value) const {
    std::string_view text = raw(column, record);
    do {
        if (!text.ends_with(static_cast<char>('0' + value % 10))) {
            return false;
        }
        text.remove_suffix(1);
        value /= 10;
    } while (value > 0);
    return isBlank(text);
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
    dbase::encodeText(room(column), Digits(value, width).text());
}

void RecordForm::setNumber(std::size_t column, std::int64_t value) {
    static_cast<void>(dbase::encodeInteger(room(column), value));
}

void RecordForm::setLogical(std::size_t column, bool value) { dbase::encodeLogical(room(column), value); }

} // namespace ambrel::directory
