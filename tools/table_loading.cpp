#include "tools/table_loading.h"

#include <algorithm>
#include <vector>

#include "tools/row_conversion.h"

namespace ambcp {

namespace {

constexpr const char* nothingLoaded = ". No se ha cargado nada.";

[[noreturn]] void refuse(const CsvReader& csv, std::uint64_t line, const std::string& what) {
    throw Failure(csv.name() + ": línea " + std::to_string(line) + what + nothingLoaded);
}

/// The columns of the table that the header names, in its order.
std::vector<dbase::Column> readHeader(CsvReader& csv, const dbase::Schema& schema) {
    if (!csv.next()) {
        refuse(csv, 1, ": falta la fila con los nombres de las columnas");
    }
    std::vector<dbase::Column> columns;
    for (const CsvField& field : csv.fields()) {
        const auto refuseName = [&](const std::string& text) {
            const std::string place = ", columna " + std::to_string(columns.size() + 1) + ": ";
            refuse(csv, field.line, place + text);
        };
        const std::string name = "«" + std::string(field.text) + "»";
        const std::optional<std::size_t> position = schema.find(field.text);
        if (!position) {
            const bool isOneField = csv.fields().size() == 1;
            const bool hasOtherSeparator =
                isOneField && field.text.find_first_of(";\t") != std::string_view::npos;
            refuseName("la tabla no tiene ninguna columna " + name +
                       (hasOtherSeparator ? "; las columnas se separan con comas" : ""));
        }
        const dbase::Column& column = schema.columns[*position];
        if (std::ranges::any_of(columns,
                                [&](const dbase::Column& other) { return other.name == column.name; })) {
            refuseName("la columna " + name + " está repetida");
        }
        columns.push_back(column);
    }
    return columns;
}

void encodeRow(const CsvReader& csv, const std::vector<dbase::Column>& columns, const CellEncoder& encoder,
               std::span<char> record) {
    const std::span<const CsvField> fields = csv.fields();
    if (fields.size() != columns.size()) {
        refuse(csv, csv.line(),
               ": la cabecera tiene " + std::to_string(columns.size()) + " columnas y esta fila " +
                   std::to_string(fields.size()));
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const dbase::Column& column = columns[i];
        const auto problem =
            encoder.encode(fields[i].text, column, record.subspan(column.offset, column.width));
        if (problem) {
            refuse(csv, fields[i].line, ", columna " + column.name + ": " + *problem);
        }
    }
}

/// Everything but making the rows visible.
std::uint64_t loadRows(CsvReader& csv, dbase::BulkLoader& loader, const std::string& tableFile,
                       const LoadProgress& progress) {
    constexpr std::uint64_t rowsBetweenReports = 16384;
    const std::vector<dbase::Column> columns = readHeader(csv, loader.schema());
    const CellEncoder encoder(loader.schema(), tableFile);
    std::vector<char> record(loader.schema().recordLength,
                             ' '); // columns that the header does not name stay blank
    std::uint64_t rows = 0;
    while (csv.next()) {
        encodeRow(csv, columns, encoder, record);
        loader.add(record);
        if (++rows % rowsBetweenReports == 0 && progress) {
            progress(rows, -1);
        }
    }
    return rows;
}

} // namespace

std::uint64_t loadCsv(CsvReader& csv, const std::string& tableFile, dbase::BulkLoader::Mode mode,
                      const LoadProgress& progress) {
    dbase::BulkLoader loader(tableFile, mode);
    std::uint64_t rows = 0;
    try {
        rows = loadRows(csv, loader, tableFile, progress);
    } catch (const CsvError& error) {
        throw Failure(error.what() + std::string(nothingLoaded));
    }
    loader.finish([&](std::uint64_t done, std::uint64_t total) {
        if (progress && total > 0) {
            progress(rows, static_cast<double>(done) / static_cast<double>(total));
        }
    });
    return rows;
}

} // namespace ambcp
