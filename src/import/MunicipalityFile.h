// Files of municipalities with several postal codes: a street a line, in Windows-1252.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "import/ImportedStreet.h"

namespace ambrel {

/// Writes the number ranges that a line, in upper case, names in brackets; what it does not name stays as it
/// was.
void ExtraeNumeracion(const std::string& text, int& oddFirst, int& oddLast, int& evenFirst, int& evenLast);

/// Gives the code of a type's name.
using StreetTypeCode = std::function<std::string(const std::string& name)>;

/// A line as a street. No text is refused: what it does not say is empty or 0.
[[nodiscard]] ImportedStreet readMunicipalityLine(std::string_view line, const StreetTypeCode& typeCode);

/// A file that is no municipality's, too large or of too many lines. The text is Spanish, UTF-8.
class MunicipalityFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Largest file that is read, in bytes, and most lines: ten times the largest municipality of all.
inline constexpr std::size_t largestMunicipalityFile = std::size_t{8} << 20;
inline constexpr std::size_t mostMunicipalityLines = 200'000;

/// A street for each line of a file's text, of blank lines too. Errors: MunicipalityFileError.
[[nodiscard]] std::vector<ImportedStreet> readMunicipalityText(std::string_view text,
                                                               const StreetTypeCode& typeCode);

} // namespace ambrel
