// Rows of a street table that verify themselves.
#include "StreetRows.h"

#include <array>
#include <cstdio>

#include "dbase/dataset/dataset.h"
#include "dbase/support/StoredTable.h"

namespace resistance {

namespace {

constexpr std::array columns{"CODIGO1",   "PROVINCIA", "CAPITAL", "TIPO_VIA",  "VIA",      "IMPAR_INI",
                             "IMPAR_FIN", "PAR_INI",   "PAR_FIN", "CODPOSTAL", "MUNICIPI", "COD_INE"};

/// Spreads neighbouring numbers over the whole range.
constexpr std::uint32_t scatter(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352DU;
    value ^= value >> 15;
    value *= 0x846CA68BU;
    return value ^ value >> 16;
}

std::string digits(std::uint32_t value, int width) {
    std::array<char, 16> text{};
    const int length = std::snprintf(text.data(), text.size(), "%0*u", width, value);
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace

std::string codeOf(std::uint32_t serial) { return digits(serial, 8); }

std::vector<std::string> streetValues(const StreetVersion& row) {
    const std::uint32_t place = scatter(row.serial * 64 + row.version / 2);
    const std::uint32_t rest = scatter(row.serial + row.version * 7919);
    return {codeOf(row.serial),
            place % 3 == 0 ? "08" : "28",
            digits(place % 2, 1),
            place % 5 == 0 ? "AV" : "CL",
            "CALLE " + digits(place, 10) + " DE " + codeOf(row.serial),
            std::to_string(row.version % 32000),
            std::to_string(rest % 9999),
            std::to_string(row.version / 32000),
            std::to_string(rest / 7 % 9998),
            digits(rest % 99999, 5),
            "MUNICIPIO " + digits(rest, 10) + " " + std::string(rest % 30, 'X'),
            digits(rest / 3 % 99999, 5)};
}

Bytes streetRecord(const dbase::Schema& schema, const StreetVersion& row) {
    Bytes record = dbase::test::makeRecord(schema, streetValues(row));
    if (row.erased) {
        record.front() = '*';
    }
    return record;
}

StreetVersion rowOf(const dbase::Schema& schema, std::span<const char> record) {
    const auto number = [&](const char* column) {
        return static_cast<std::uint32_t>(
            std::strtoul(dbase::test::valueOf(schema, record, column).c_str(), nullptr, 10));
    };
    return {.serial = number("CODIGO1"),
            .version = number("IMPAR_INI") + number("PAR_INI") * 32000,
            .erased = record.front() == '*'};
}

void setFields(dbase::Dataset& streets, const StreetVersion& row) {
    const std::vector<std::string> values = streetValues(row);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        streets.field(columns.at(i)).setText(values.at(i));
    }
}

StreetVersion currentRow(dbase::Dataset& streets) {
    const auto number = [&](const char* column) {
        return static_cast<std::uint32_t>(std::strtoul(streets.field(column).text().c_str(), nullptr, 10));
    };
    return {.serial = number("CODIGO1"), .version = number("IMPAR_INI") + number("PAR_INI") * 32000};
}

bool isWhole(dbase::Dataset& streets) {
    const std::vector<std::string> values = streetValues(currentRow(streets));
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string text = streets.field(columns.at(i)).text();
        if (values.at(i).substr(0, values.at(i).find_last_not_of(' ') + 1) != text) {
            return false;
        }
    }
    return true;
}

} // namespace resistance
