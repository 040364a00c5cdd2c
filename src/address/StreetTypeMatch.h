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

    /// How well a code of the tables goes with what was written: 0 not at all, 1 as one of several kinds that
    /// TIPO_VIA names for the code, 2 as what the code usually stands for, 3 as the same code.
    [[nodiscard]] unsigned fit(std::string_view code, std::string_view written);
    /// Whether a word is a code of a kind of street.
    [[nodiscard]] bool isCode(std::string_view word);
    /// Whether two written types are known, and different.
    [[nodiscard]] bool contradict(std::string_view one, std::string_view other);

private:
    [[nodiscard]] suggest::TypeSet ofText(std::string_view written);

    suggest::StreetTypes types_;
    suggest::TextMap<suggest::TypeSet> byText_;
};

} // namespace ambrel
