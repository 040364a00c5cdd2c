// Whether a written street type is that of a row.
#pragma once

#include <string>
#include <string_view>

#include "suggest/StreetTypes.h"

namespace ambrel {

/// Remembers what codes and words stand for.
class StreetTypeMatch {
public:
    explicit StreetTypeMatch(const std::string& database) : types_(database) {}

    /// Whether a code of the tables may be what was written: the same code, or a kind that both name.
    [[nodiscard]] bool fits(std::string_view code, std::string_view written);
    /// Whether a text names any kind of street.
    [[nodiscard]] bool isKnown(std::string_view written) { return ofText(written) != 0; }

private:
    [[nodiscard]] suggest::TypeSet ofText(std::string_view written);

    suggest::StreetTypes types_;
    suggest::TextMap<suggest::TypeSet> byText_;
};

} // namespace ambrel
