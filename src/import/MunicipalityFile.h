// Files of municipalities with several postal codes: one street per line, in Windows-1252.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

/// Sets the number ranges that a line, in upper case, gives in brackets; values not given are unchanged.
void ExtraeNumeracion(const std::string& text, int& oddFirst, int& oddLast, int& evenFirst, int& evenLast);

/// Returns the code of a street type's name.
using StreetTypeCode = std::function<std::string(const std::string& name)>;

/// Reads a line as a street. No text is refused: missing values are empty or 0.
[[nodiscard]] ImportedStreet readMunicipalityLine(std::string_view line, const StreetTypeCode& typeCode);

/// Thrown for a file that is not a municipality's, is too large or has too many lines. The text is Spanish,
/// UTF-8.
class MunicipalityFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Largest size in bytes and number of lines that are read: ten times the largest municipality of all.
inline constexpr std::size_t largestMunicipalityFile = std::size_t{8} << 20;
inline constexpr std::size_t mostMunicipalityLines = 200'000;

/// A street for each line of a file's text, including blank lines. Errors: MunicipalityFileError.
[[nodiscard]] std::vector<ImportedStreet> readMunicipalityText(std::string_view text,
                                                               const StreetTypeCode& typeCode);

} // namespace ambrel
