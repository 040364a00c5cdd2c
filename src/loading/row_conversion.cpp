// Converts between texts and column bytes.
#include "loading/row_conversion.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/quoted.h"
#include "dbase/system/trim.h"
#include "loading/utf8.h"

namespace loading {

namespace {

using dbase::Column;
using dbase::ColumnType;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view withoutBlanks(std::string_view text) {
    return dbase::decodeText(dbase::withoutLeadingBlanks(text));
}

bool isAscii(std::string_view text) {
    unsigned char bits = 0;
    for (const char c : text) {
        bits = static_cast<unsigned char>(bits | static_cast<unsigned char>(c));
    }
    return bits < 0x80;
}

std::string tooLong(std::string_view text, std::size_t size, std::size_t width) {
    return dbase::inQuotes(text) + " ocupa " + std::to_string(size) + " caracteres y en la columna " +
           (width == 1 ? "cabe " : "caben ") + std::to_string(width);
}

/// A decimal number split into its digits; its views refer to the text.
struct Decimal {
    bool isNegative = false;
    std::string_view whole, fraction; // without leading and trailing zeros
};

std::optional<Decimal> parseDecimal(std::string_view text) {
    Decimal number;
    if (text.front() == '-' || text.front() == '+') {
        number.isNegative = text.front() == '-';
        text.remove_prefix(1);
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    number.whole = text.substr(0, point);
    number.fraction = text.substr(std::min(point + 1, text.size()));
    if ((number.whole.empty() && number.fraction.empty()) || !std::ranges::all_of(number.whole, isDigit) ||
        !std::ranges::all_of(number.fraction, isDigit)) {
        return std::nullopt;
    }
    number.whole.remove_prefix(std::min(number.whole.find_first_not_of('0'), number.whole.size()));
    number.fraction = number.fraction.substr(0, number.fraction.find_last_not_of('0') + 1);
    number.isNegative = number.isNegative && !(number.whole.empty() && number.fraction.empty());
    return number;
}

bool isSixteenBits(const Decimal& number) {
    if (number.whole.size() > 5) {
        return false;
    }
    int value = 0;
    for (const char digit : number.whole) {
        value = value * 10 + (digit - '0');
    }
    return value <= (number.isNegative ? -INT16_MIN : INT16_MAX);
}

std::optional<std::string> encodeLogical(std::string_view text, std::span<char> raw) {
    std::array<char, 9> small{};
    if (text.size() <= small.size()) {
        std::ranges::transform(text, small.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        const std::string_view word(small.data(), text.size());
        const bool isTrue =
            word == "true" || word == "verdadero" || word == "t" || word == "s" || word == "1";
        if (isTrue || word == "false" || word == "falso" || word == "f" || word == "n" || word == "0") {
            dbase::encodeLogical(raw, isTrue);
            return std::nullopt;
        }
    }
    return dbase::inQuotes(text) + " no es un valor lógico (True o False)";
}

std::optional<std::string> encodeDate(std::string_view text, std::span<char> raw) {
    std::array<char, 8> digits{};
    const bool hasHyphens = text.size() == 10 && text[4] == '-' && text[7] == '-';
    if (hasHyphens || text.size() == digits.size()) {
        std::ranges::copy_if(text, digits.begin(), [&](char c) { return !hasHyphens || c != '-'; });
        const std::string_view date(digits.data(), digits.size());
        if (dbase::decodeDate(date)) {
            dbase::encodeText(raw, date);
            return std::nullopt;
        }
    }
    return dbase::inQuotes(text) + " no es una fecha (AAAA-MM-DD)";
}

} // namespace

CellEncoder::CellEncoder(const dbase::Schema& schema, const std::string& tableFile)
    : page_(dbase::CodePage::ofDriver(schema.languageDriver)),
      integers_(ambrel::tableDefinition(std::string_view(tableFile).substr(tableFile.rfind('/') + 1))
                    ? Integers::SixteenBits
                    : Integers::AnyThatFits) {}

std::optional<std::string> CellEncoder::encode(std::string_view text, const Column& column,
                                               std::span<char> raw) const {
    if (text.find('\0') != std::string_view::npos) {
        return dbase::inQuotes(text) + " lleva un carácter nulo";
    }
    if (column.type == ColumnType::Character) {
        return encodeCharacters(text, raw);
    }
    text = withoutBlanks(text);
    if (text.empty()) {
        dbase::encodeBlank(raw);
        return std::nullopt;
    }
    switch (column.type) {
    case ColumnType::Numeric:
    case ColumnType::Float:
        return encodeNumber(text, column, raw);
    case ColumnType::Logical:
        return encodeLogical(text, raw);
    case ColumnType::Date:
        return encodeDate(text, raw);
    case ColumnType::Character:
    case ColumnType::Memo:
        break;
    }
    return "los campos memo no se escriben";
}

/// Trailing blanks are ignored: the table cannot distinguish them from its padding.
std::optional<std::string> CellEncoder::encodeCharacters(std::string_view text, std::span<char> raw) const {
    text = dbase::decodeText(text);
    if (isAscii(text)) {
        if (text.size() > raw.size()) {
            return tooLong(text, text.size(), raw.size());
        }
        dbase::encodeText(raw, text);
        return std::nullopt;
    }
    const std::optional<std::string> bytes = page_.fromUtf8(text);
    if (!bytes) {
        return whyNotInPage(text);
    }
    if (bytes->size() > raw.size()) {
        return tooLong(text, bytes->size(), raw.size());
    }
    dbase::encodeText(raw, *bytes);
    return std::nullopt;
}

std::string CellEncoder::whyNotInPage(std::string_view text) const {
    std::string_view left = text;
    while (!left.empty()) {
        const std::string_view character = dbase::firstCharacter(left);
        if (character.empty()) {
            return dbase::inQuotes(text) + " no está en UTF-8";
        }
        if (!page_.fromUtf8(character)) {
            break;
        }
        left.remove_prefix(character.size());
    }
    return dbase::inQuotes(text) + " lleva el carácter " + dbase::inQuotes(dbase::firstCharacter(left)) +
           ", que no existe en " +
           (&page_ == &dbase::CodePage::windows1252() ? "Windows-1252" : "la página de códigos de la tabla");
}

/// Works digit by digit, because a floating-point number would lose digits of a wide column.
std::optional<std::string> CellEncoder::encodeNumber(std::string_view text, const Column& column,
                                                     std::span<char> raw) const {
    const std::optional<Decimal> number = parseDecimal(text);
    if (!number) {
        return dbase::inQuotes(text) + " no es un número";
    }
    if (number->fraction.size() > column.decimals) {
        return dbase::inQuotes(text) +
               (column.decimals == 0 ? std::string(" no es un número entero")
                                     : " tiene más de " + std::to_string(column.decimals) + " decimales");
    }
    if (integers_ == Integers::SixteenBits && column.decimals == 0 && !isSixteenBits(*number)) {
        return dbase::inQuotes(text) + " no está entre -32768 y 32767";
    }
    const std::string_view whole = number->whole.empty() ? "0" : number->whole;
    const std::size_t tail = column.decimals > 0 ? column.decimals + 1U : 0U;
    const std::size_t size = (number->isNegative ? 1U : 0U) + whole.size() + tail;
    if (size > raw.size()) {
        return tooLong(text, size, raw.size());
    }
    auto to = std::fill_n(raw.begin(), raw.size() - size, ' ');
    if (number->isNegative) {
        *to++ = '-';
    }
    to = std::copy(whole.begin(), whole.end(), to);
    if (tail > 0) {
        *to++ = '.';
        to = std::copy(number->fraction.begin(), number->fraction.end(), to);
        std::fill(to, raw.end(), '0');
    }
    return std::nullopt;
}

void writeValue(CsvWriter& csv, const dbase::Field& field, const dbase::CodePage& page) {
    switch (field.kind()) {
    case dbase::FieldKind::Character:
    case dbase::FieldKind::Calculated:
        if (const std::string_view bytes = field.view(); isAscii(bytes)) {
            csv.field(bytes);
        } else {
            csv.field(page.toUtf8(bytes));
        }
        break;
    case dbase::FieldKind::Date: {
        std::string date = field.text();
        if (!date.empty()) {
            date.insert(6, 1, '-').insert(4, 1, '-');
        }
        csv.field(date);
        break;
    }
    case dbase::FieldKind::Integer:
    case dbase::FieldKind::Number:
    case dbase::FieldKind::Logical:
        csv.field(field.text());
        break;
    }
}

} // namespace loading
