// Conversion between UTF-8 text, as in CSV and on the command line, and the columns of a record.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dbase/dataset/field.h"
#include "dbase/dbf/codepage.h"
#include "dbase/dbf/schema.h"
#include "loading/csv.h"

namespace loading {

/// Range of a numeric column without decimals.
enum class Integers {
    AnyThatFits,
    SixteenBits, // for the postal tables, whose columns are bound as 16-bit fields
};

/// Encodes values for the columns of one table.
class CellEncoder {
public:
    CellEncoder(const dbase::CodePage& page, Integers integers) : page_(page), integers_(integers) {}
    /// Uses the table's code page, and 16 bits if it is a postal table.
    CellEncoder(const dbase::Schema& schema, const std::string& tableFile);

    /// Encodes a text as the bytes of a column (raw: its whole width); a blank text as a blank column. Null
    /// on success, otherwise the reason in Spanish, quoting the text. Logicals: True/False, VERDADERO/FALSO,
    /// T/F, S/N, 1/0, letter case ignored; dates: YYYY-MM-DD, YYYYMMDD.
    [[nodiscard]] std::optional<std::string> encode(std::string_view text, const dbase::Column& column,
                                                    std::span<char> raw) const;

private:
    [[nodiscard]] std::optional<std::string> encodeCharacters(std::string_view text,
                                                              std::span<char> raw) const;
    [[nodiscard]] std::optional<std::string> encodeNumber(std::string_view text, const dbase::Column& column,
                                                          std::span<char> raw) const;
    [[nodiscard]] std::string whyNotInPage(std::string_view text) const;

    const dbase::CodePage& page_;
    Integers integers_;
};

/// Writes a field's value: text without trailing blanks, numbers in decimal, True or False, dates as
/// YYYY-MM-DD, null as nothing.
void writeValue(CsvWriter& csv, const dbase::Field& field, const dbase::CodePage& page);

} // namespace loading
