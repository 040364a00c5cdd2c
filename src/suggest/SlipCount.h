// How many slips lie between two folded words: bit-parallel edit distance with transpositions (Hyyrö 2003).
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "suggest/Letters.h"

namespace ambrel::suggest {

/// A word to compare others with; letters after the 64th do not count.
class SlipCount {
public:
    struct Found {
        unsigned whole;        // slips between the two words
        unsigned beginning;    // the fewest between the pattern and any beginning of the other word
        unsigned beginsLength; // length of that beginning
    };

    explicit SlipCount(std::string_view pattern)
        : length_(static_cast<unsigned>(std::min<std::size_t>(pattern.size(), 64))) {
        for (unsigned i = 0; i < length_; ++i) {
            places_[letterNumber(pattern[i])] |= std::uint64_t{1} << i;
        }
    }

    [[nodiscard]] Found to(std::string_view word) const {
        if (length_ == 0) {
            return {static_cast<unsigned>(word.size()), 0, 0};
        }
        std::uint64_t up = ~std::uint64_t{0}, down = 0, diagonal = 0, before = 0;
        const std::uint64_t last = std::uint64_t{1} << (length_ - 1);
        Found found{length_, length_, 0};
        for (unsigned i = 0; i < word.size(); ++i) {
            const std::uint64_t here = places_[letterNumber(word[i])];
            const std::uint64_t swapped = ((~diagonal & here) << 1) & before;
            diagonal = (((here & up) + up) ^ up) | here | down | swapped;
            std::uint64_t right = down | ~(diagonal | up);
            std::uint64_t left = diagonal & up;
            found.whole += (right & last) != 0 ? 1U : 0U;
            found.whole -= (left & last) != 0 ? 1U : 0U;
            right = (right << 1) | 1;
            left <<= 1;
            up = left | ~(diagonal | right);
            down = right & diagonal;
            before = here;
            if (found.whole < found.beginning) {
                found.beginning = found.whole;
                found.beginsLength = i + 1;
            }
        }
        return found;
    }

    [[nodiscard]] unsigned length() const { return length_; }

private:
    std::array<std::uint64_t, 37> places_{};
    unsigned length_;
};

} // namespace ambrel::suggest
