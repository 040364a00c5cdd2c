// Loads the rows of a CSV text into a table.
#include "loading/table_loading.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "dbase/system/counted.h"
#include "dbase/system/quoted.h"
#include "loading/load_complaints.h"
#include "loading/municipality_order.h"
#include "loading/row_conversion.h"
#include "loading/utf8.h"

namespace loading {

namespace {

/// Hints at the separator that a header with a single unknown name may need.
std::string separatorHint(const CsvReader& csv) {
    if (csv.fields().size() > 1) {
        return {};
    }
    for (const char sign : {';', '\t', ',', '|'}) {
        if (sign != csv.separator() && csv.fields().front().text.find(sign) != std::string_view::npos) {
            const std::string shown = sign == '\t' ? "tabuladores" : "«" + std::string(1, sign) + "»";
            const std::string given = sign == '\t' ? "tab" : "'" + std::string(1, sign) + "'";
            return "; si las columnas se separan con " + shown + ", use «--separador " + given + "»";
        }
    }
    return {};
}

/// The table's columns named by the header, in its order; some are missing if there are complaints.
std::vector<dbase::Column> readHeader(CsvReader& csv, const dbase::Schema& schema,
                                      LoadComplaints& complaints) {
    if (!csv.next()) {
        complaints.add(1, ": falta la fila con los nombres de las columnas");
        return {};
    }
    std::vector<dbase::Column> columns;
    for (std::size_t i = 0; i < csv.fields().size(); ++i) {
        const CsvField& field = csv.fields()[i];
        const std::string place = ", columna " + std::to_string(i + 1) + ": ";
        const std::string name = dbase::inQuotes(field.text);
        const std::optional<std::size_t> position = schema.find(field.text);
        if (!position) {
            complaints.add(field.line,
                           place + "la tabla no tiene ninguna columna " + name + separatorHint(csv));
            continue;
        }
        const dbase::Column& column = schema.columns[*position];
        if (std::ranges::any_of(columns,
                                [&](const dbase::Column& other) { return other.name == column.name; })) {
            complaints.add(field.line, place + "la columna " + name + " está repetida");
        }
        columns.push_back(column);
    }
    return columns;
}

void encodeRow(const CsvReader& csv, const std::vector<dbase::Column>& columns, const CellEncoder& encoder,
               std::span<char> record, LoadComplaints& complaints) {
    const std::span<const CsvField> fields = csv.fields();
    if (fields.size() != columns.size()) {
        complaints.add(csv.line(), ": la cabecera tiene " +
                                       dbase::counted(columns.size(), "columna", "columnas") +
                                       " y esta fila " + std::to_string(fields.size()));
        return;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const dbase::Column& column = columns[i];
        const auto problem =
            encoder.encode(fields[i].text, column, record.subspan(column.offset, column.width));
        if (problem) {
            complaints.add(fields[i].line, ", columna " + column.name + ": " + *problem);
            if (!isUtf8(fields[i].text)) {
                complaints.addHint("Si el texto está en Windows-1252, use «--codificacion windows-1252».");
            }
        }
    }
}

/// Loads without making the rows visible. `ordered`: keeps them until they can be put in order. After the
/// first complaint the rows are only checked.
std::uint64_t loadRows(CsvReader& csv, dbase::BulkLoader& loader, const std::string& tableFile,
                       std::optional<MunicipalityRows> ordered, const LoadProgress& progress,
                       LoadComplaints& complaints) {
    constexpr std::uint64_t rowsBetweenReports = 16384;
    const std::vector<dbase::Column> columns = readHeader(csv, loader.schema(), complaints);
    if (!complaints.empty()) {
        return 0;
    }
    const CellEncoder encoder(loader.schema(), tableFile);
    std::vector<char> record(loader.schema().recordLength,
                             ' '); // columns not named by the header stay blank
    std::uint64_t rows = 0;
    while (csv.next()) {
        encodeRow(csv, columns, encoder, record, complaints);
        if (complaints.empty() && ordered) {
            ordered->add(record);
        } else if (complaints.empty()) {
            loader.add(record);
        }
        if (++rows % rowsBetweenReports == 0 && progress) {
            progress(rows, -1);
        }
    }
    if (complaints.empty() && ordered) {
        ordered->storeIn(loader);
    }
    return rows;
}

} // namespace

std::uint64_t loadCsv(CsvReader& csv, const std::string& tableFile, dbase::BulkLoader::Mode mode,
                      const LoadProgress& progress) {
    dbase::BulkLoader loader(tableFile, mode);
    LoadComplaints complaints(csv.name());
    std::uint64_t rows = 0;
    try {
        auto ordered = mode == dbase::BulkLoader::Mode::Replace
                           ? MunicipalityRows::of(tableFile, loader.schema())
                           : std::nullopt;
        rows = loadRows(csv, loader, tableFile, std::move(ordered), progress, complaints);
    } catch (const Failure& error) {
        complaints.addEnd(error.what());
    }
    if (!complaints.empty()) {
        throw Failure(complaints.text());
    }
    loader.finish([&](std::uint64_t done, std::uint64_t total) {
        if (progress && total > 0) {
            progress(rows, static_cast<double>(done) / static_cast<double>(total));
        }
    });
    return rows;
}

} // namespace loading
