// Tables from rows written inline.
#pragma once

#include <string>
#include <vector>

#include "dbase/table/table_definition.h"

namespace ambrel::test {

/// A table's layout in short form: columns such as "NOMBRE C53", "GRUPO N6", "PRECIO N8.2", "ENT_MENOR L",
/// "ALTA D"; tags such as "CODIGO" (a column) or "VIA=PROVINCIA+VIA" (name and key expression).
[[nodiscard]] dbase::TableDefinition defineTable(std::string name, const std::vector<std::string>& columns,
                                                 const std::vector<std::string>& tags = {});

/// Values in the order of the named columns, in UTF-8; numbers in decimal, logicals T or F, dates YYYYMMDD,
/// "" for blank.
using Row = std::vector<std::string>;

/// Creates the table in a folder with these rows; columns that are not named stay blank. Returns the path of
/// the .DBF.
std::string createTable(const std::string& folder, const dbase::TableDefinition& definition,
                        const std::vector<std::string>& columns, const std::vector<Row>& rows);

/// The same with all columns in the order of the definition.
std::string createTable(const std::string& folder, const dbase::TableDefinition& definition,
                        const std::vector<Row>& rows);

/// A UTF-8 text in Windows-1252, the encoding of the tables.
[[nodiscard]] std::string ansi(const std::string& utf8);

} // namespace ambrel::test
