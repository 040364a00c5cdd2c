// An address cut at commas, brackets, line ends, and around its postal code.
#pragma once

#include <vector>

#include "address/StreetWords.h"
#include "address/WrittenWords.h"

namespace ambrel {

/// Some words of an address between separators.
struct AddressPiece {
    enum class Kind {
        Code,     // the postal code, with "C.P."
        Street,   // begins with "Calle" and the like
        Numbered, // a name with a number
        Estate,   // begins with "Urbanización" and the like
        Other,    // begins with a word that is a type of street or part of a place's name
        Type,     // the word for a type and nothing else, after a name: "(CALLE DE)"
        Text,     // a name
        Inside,   // a number, a floor or a door
        Building, // begins with "Edificio" and the like
        Aside     // a country, a post-office box, a remark
    };
    WordRange words;
    Kind kind = Kind::Text;
    bool isNumbered = false; // it holds what may be a house number

    /// Whether it may name a place.
    [[nodiscard]] bool isName() const { return kind == Kind::Text || (kind == Kind::Other && !isNumbered); }
};

/// The words of an address's postal code, with marks such as "C.P." and "E-".
struct PostalCodeWords {
    WordRange words; // empty if there is none
    std::size_t code = 0;
};
[[nodiscard]] PostalCodeWords findPostalCode(const WrittenWords& words);

/// `hasTown`: whether the address may name its town; otherwise brackets after a street's name belong to it.
[[nodiscard]] std::vector<AddressPiece> cutIntoPieces(const WrittenWords& words, const PostalCodeWords& code,
                                                      bool hasTown);

} // namespace ambrel
