// Values between UTF-8 text, as CSV and the command line have them, and the columns of a record.
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

/// What a numeric column without decimals may hold.
enum class Integers {
    AnyThatFits,
    SixteenBits, // those of the postal tables are bound as 16-bit fields
};

/// Writes the values of one table's columns.
class CellEncoder {
public:
    CellEncoder(const dbase::CodePage& page, Integers integers) : page_(page), integers_(integers) {}
    /// With the code page of a table, and 16 bits where it is one of the postal ones.
    CellEncoder(const dbase::Schema& schema, const std::string& tableFile);

    /// Writes a text as the bytes of a column (raw: its whole width); a blank one as a blank column. Null
    /// when that worked, else why not, in Spanish and quoting the text. Logicals: True/False,
    /// VERDADERO/FALSO, T/F, S/N, 1/0, letter case ignored; dates: YYYY-MM-DD, YYYYMMDD.
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

/// Writes the value of a field: text without trailing blanks, numbers in decimal, True or False, dates as
/// YYYY-MM-DD, null as nothing.
void writeValue(CsvWriter& csv, const dbase::Field& field, const dbase::CodePage& page);

} // namespace loading
