// Any bytes as CSV, and its values as those of a table's columns.
#include "Trial.h"
#include "dbase/dbf/table_header.h"
#include "loading/csv.h"
#include "loading/row_conversion.h"

namespace {

using Records = std::vector<std::vector<std::string>>;

/// The records read, and the error that follows them.
struct Reading {
    Records records;
    std::string error;

    bool operator==(const Reading&) const = default;
};

Reading readAll(std::string_view text, std::size_t bufferSize) {
    Reading reading;
    loading::CsvReader csv(loading::textSource(text), "T", ',', bufferSize);
    try {
        while (csv.next()) {
            auto& record = reading.records.emplace_back();
            for (const loading::CsvField& field : csv.fields()) {
                record.emplace_back(field.text);
            }
        }
    } catch (const loading::CsvError& error) {
        reading.error = error.what();
    }
    return reading;
}

dbase::Schema makeSchema() {
    using dbase::ColumnType;
    dbase::Schema schema;
    schema.columns = {{"C", ColumnType::Character, 5, 0, 0}, {"D", ColumnType::Date, 8, 0, 0},
                      {"L", ColumnType::Logical, 1, 0, 0},   {"N", ColumnType::Numeric, 8, 2, 0},
                      {"F", ColumnType::Float, 20, 5, 0},    {"I", ColumnType::Numeric, 6, 0, 0}};
    schema.languageDriver = 0x57;
    dbase::completeLayout(schema, {});
    return schema;
}

void encodeInEachColumn(const std::string& text) {
    static const dbase::Schema schema = makeSchema();
    static const loading::CellEncoder encoder(schema, "T.DBF"), postal(schema, "POSTAL.DBF");
    std::string record(schema.recordLength, '?');
    for (const dbase::Column& column : schema.columns) {
        for (const loading::CellEncoder* const one : {&encoder, &postal}) {
            const auto problem =
                one->encode(text, column, std::span(record).subspan(column.offset, column.width));
            trial::require(!problem || !problem->empty());
            if (!problem) {
                trial::require(record.find('\0') == std::string::npos);
            }
        }
    }
}

} // namespace

/// The first byte is the size of the buffer, on which the result must not depend.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Reading reading = readAll(text, std::size_t{data[0]} + 1);
    trial::require(reading == readAll(text, 4096));
    for (const auto& record : reading.records) {
        for (const std::string& value : record) {
            encodeInEachColumn(value);
        }
    }
    return 0;
}
