// Typed texts, tidied to the form used in the tables.
#pragma once

#include <QString>
#include <optional>
#include <string>

namespace ambrel {

/// Null for text that Windows-1252 cannot hold; such text matches nothing.
[[nodiscard]] std::optional<std::string> normalized(const QString& text);

/// The same, but empty for text that cannot be held.
[[nodiscard]] std::string bytesOf(const QString& text);

} // namespace ambrel
