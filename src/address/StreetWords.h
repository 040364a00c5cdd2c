// The words of a street: its type, its name, the number and what follows.
#pragma once

#include <vector>

#include "address/NumberWords.h"
#include "address/WrittenWords.h"

namespace ambrel {

/// What a word for a type of street says about the words after it.
enum class StreetKind {
    None,   // it is not one
    Street, // they are a street's name: "Calle"
    Estate, // a neighbourhood's, which may contain streets: "Urbanización"
    Other   // a street's or a place's: "Puente"
};

/// A word or two that name a type of street.
struct WrittenType {
    StreetKind kind = StreetKind::None;
    std::size_t end = 0; // one past them
    suggest::TypeSet types = 0;
};

/// The type that is named at a word; kind None if none is.
[[nodiscard]] WrittenType readWrittenType(const WrittenWords& words, std::size_t at, std::size_t last);

/// The words of a street by their use.
struct StreetWords {
    WordRange type, name;
    WrittenNumber number;
    WordRange floor;
    WordRange tail; // what follows that is none of these
};

/// The readings of a piece of an address as a street, the likeliest first; at least one, at most four.
[[nodiscard]] std::vector<StreetWords> readStreetWords(const WrittenWords& words, WordRange piece);

} // namespace ambrel
