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
    std::array<char, 10> text{};
    for (std::size_t i = width; i > 0; value /= 10) {
        text.at(--i) = static_cast<char>('0' + value % 10);
    }
    dbase::encodeText(room(column), {text.data(), width});
}

void RecordForm::setNumber(std::size_t column, std::int64_t value) {
    static_cast<void>(dbase::encodeInteger(room(column), value));
}

void RecordForm::setLogical(std::size_t column, bool value) { dbase::encodeLogical(room(column), value); }

} // namespace ambrel::directory
