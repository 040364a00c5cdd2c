// What validating a file and validating a table have in common on the command line.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "address/AddressFile.h"
#include "tools/commands.h"

namespace ambcp {

/// How to say what the columns are, for errors.
inline constexpr const char* columnHint =
    "diga cuál es cada una con --columnas, por ejemplo: --columnas via=COLUMNA,municipio=COLUMNA "
    "(linea, tipo, via, numero, resto, codpostal, municipio, provincia)";

/// Reads "via=DIRECCION,municipio=POBLACION". Errors: Failure.
[[nodiscard]] ambrel::NamedColumns readColumns(std::string_view text);

/// Nothing is written over what is read, nor twice to one file. Errors: Failure.
void requireOtherFiles(const ValidateOptions& options);

/// Writes the rows by verdict to standard error.
void tellTotals(const std::string& name, const ambrel::AddressFileTotals& totals,
                std::chrono::duration<double> elapsed);

} // namespace ambcp
