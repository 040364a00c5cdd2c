// Normalises typed texts to the form used in the tables.
#include "form/TypedText.h"

#include "address/TidyText.h"
#include "services/Text.h"

namespace ambrel {

std::optional<std::string> normalized(const QString& text) {
    const auto bytes = toWindows1252(text);
    return bytes ? std::optional(tidied(*bytes)) : std::nullopt;
}

std::string bytesOf(const QString& text) { return normalized(text).value_or(std::string()); }

} // namespace ambrel
