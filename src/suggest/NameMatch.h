// Comparing what was typed with many names.
#pragma once

#include <cstdint>
#include <vector>

#include "suggest/Folding.h"
#include "suggest/NameView.h"

namespace ambrel::suggest {

/// A name that what was typed may mean.
struct NameMatch {
    NameNumber name = 0;
    double points = 0;         // 0 to 1; above 0.9 only the writing differs
    std::uint16_t reading = 0; // which reading of the text it is
    bool isBeginning = false;  // the text is the beginning of the name
    std::uint32_t farness = 0; // of the writing: articles and letters, to order equal points
};

/// A text to compare names with: its words, and the readings of them.
struct TypedName {
    const std::vector<NameWord>& words;
    const std::vector<TypedStreet::Reading>& readings;
};

/// The names with at least `least` points, in no order.
[[nodiscard]] std::vector<NameMatch> matchNames(const NameView& view, const TypedName& typed, double least);

} // namespace ambrel::suggest
