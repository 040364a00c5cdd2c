// The one converter between the texts of the tables (Windows-1252 bytes) and those of the windows (QString).
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"

namespace ambrel {

/// Converts text of a table for a window. Every byte gives one character.
[[nodiscard]] AMBREL_EXPORT QString fromWindows1252(std::string_view bytes);

/// Converts text of a window for a search; null if Windows-1252 lacks one of its characters. Every character
/// gives one byte, so positions in both texts are the same.
[[nodiscard]] AMBREL_EXPORT std::optional<std::string> toWindows1252(const QString& text);

/// Converts text of a window for a column: letters that Windows-1252 lacks become the same letter without its
/// mark, everything else that it lacks becomes "?".
[[nodiscard]] AMBREL_EXPORT std::string toNearestWindows1252(const QString& text);

/// Whether that conversion turns something into "?".
[[nodiscard]] AMBREL_EXPORT bool losesCharacters(const QString& text);

} // namespace ambrel
