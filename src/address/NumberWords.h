// House numbers, floors and doors among the words of an address.
#pragma once

#include <string>

#include "address/WrittenWords.h"

namespace ambrel {

/// A house number, its letter and the end of its range, as AddressParts has them.
struct WrittenNumber {
    WordRange words; // empty if there is none
    std::string number, suffix, end;

    [[nodiscard]] bool isThere() const { return !words.isEmpty(); }
};

/// The number that begins at a word, perhaps after "nº"; none if none does. `last`: one past the last word.
[[nodiscard]] WrittenNumber readNumber(const WrittenWords& words, std::size_t at, std::size_t last);

/// One past the words that say that there is no number, from `at` on; `at` if none do: "S/N", "sin número".
[[nodiscard]] std::size_t noNumberEnd(const WrittenWords& words, std::size_t at, std::size_t last);

/// One past the words from `at` on that say where inside a building something is; `at` if none does.
[[nodiscard]] std::size_t floorEnd(const WrittenWords& words, std::size_t at, std::size_t last);

/// Whether a number is that of a date: "2 de Mayo".
[[nodiscard]] bool isDate(const WrittenWords& words, std::size_t at, std::size_t last);

} // namespace ambrel
