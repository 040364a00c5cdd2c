// Files of municipalities with several postal codes: a street a line, in Windows-1252.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "import/ImportedStreet.h"

namespace ambrel {

/// Writes the number ranges that a line, in upper case, names in brackets; what it does not name stays as it
/// was.
void ExtraeNumeracion(const std::string& text, int& oddFirst, int& oddLast, int& evenFirst, int& evenLast);

/// Code of a street type by its name, in upper case and trimmed: TIPO_VIA's type of that name, else the first
/// whose name contains it, else that of a fixed list; empty when unknown. Errors: dbase::Error.
[[nodiscard]] std::string ExtraeTipoVia(const std::string& database, const std::string& name);

/// Gives the code of a type's name.
using StreetTypeCode = std::function<std::string(const std::string& name)>;

/// A line as a street. No text is refused: what it does not say is empty or 0.
[[nodiscard]] ImportedStreet readMunicipalityLine(std::string_view line, const StreetTypeCode& typeCode);

} // namespace ambrel
