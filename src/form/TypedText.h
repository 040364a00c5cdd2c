// What is typed into a box, tidied as the tables write their texts.
#pragma once

#include <QString>
#include <optional>
#include <string>

namespace ambrel {

/// Null for what Windows-1252 cannot hold, which matches nothing.
[[nodiscard]] std::optional<std::string> normalized(const QString& text);

/// The same, empty for what cannot be held.
[[nodiscard]] std::string bytesOf(const QString& text);

} // namespace ambrel
