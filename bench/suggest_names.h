// A directory with names of the statistics of real ones: towns of all sizes, words common and rare.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct SuggestStreet {
    std::string type, name, postalCode;
};

/// A municipality with its streets, in the order of its code.
struct SuggestTown {
    std::string ineCode, name;
    std::vector<std::string> postalCodes;
    std::vector<SuggestStreet> streets; // by name
};

/// The code of the largest town. Its streets are the real ones of Madrid where AMBREL_REAL_DATA has them.
inline constexpr const char* largestTown = "28079";

/// Towns with about as many streets together; always the same.
[[nodiscard]] std::vector<SuggestTown> suggestTowns(std::uint32_t streetCount, std::uint32_t townCount);

/// A name with one slip, or its beginning, as somebody types it. `number`: of the question.
[[nodiscard]] std::string mistyped(const std::string& name, std::uint32_t number);

} // namespace bench
