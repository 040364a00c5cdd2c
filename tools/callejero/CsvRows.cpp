// Reads rows by column.
#include "tools/callejero/CsvRows.h"

#include <utility>

namespace callejero {

std::vector<CsvRow> csvRows(loading::TextSource source, const std::string& name) {
    loading::CsvReader csv(std::move(source), name);
    std::vector<std::string> columns;
    std::vector<CsvRow> rows;
    while (csv.next()) {
        if (columns.empty()) {
            for (const loading::CsvField& field : csv.fields()) {
                columns.emplace_back(field.text);
            }
            continue;
        }
        if (csv.fields().size() > columns.size()) {
            throw loading::CsvError(name, csv.line(), 1,
                                    "la fila tiene más valores que columnas la cabecera");
        }
        CsvRow& row = rows.emplace_back();
        for (std::size_t i = 0; i < csv.fields().size(); ++i) {
            row[columns[i]] = csv.fields()[i].text;
        }
    }
    return rows;
}

} // namespace callejero
