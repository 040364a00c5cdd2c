// Resolves an address without boxes, to what typing municipality, street and number and leaving the boxes
// would lead to.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// The address as a user would type it; letter case and superfluous blanks are ignored.
template<class Text>
struct TypedAddressOf {
    Text municipality = {};
    Text streetType = {}; // code, may be empty
    Text street = {};
    Text number = {};
    /// These choose among municipalities of the same name; either may be empty.
    Text province = {}; // its two digits, or its name
    Text ineCode = {};

    /// Converts the address to another text type.
    template<class Other, class Convert>
    [[nodiscard]] TypedAddressOf<Other> as(Convert convert) const {
        return {convert(municipality), convert(streetType), convert(street),
                convert(number),       convert(province),   convert(ineCode)};
    }
};

/// The parts, in the order of typing.
enum class AddressPart { Municipality, StreetType, Street, Number };

/// Why a known street has no unambiguous postal code.
enum class NumberProblem {
    None,
    NoStretch,    // no stretch of the street has the number
    NoNumber,     // the street has several postal codes, and no number selects one
    NotANumber,   // the text for the number is not a number
    SeveralCodes, // stretches with different postal codes have the number
    NoCode        // the street has no postal code
};

/// One of several municipalities to which a name may refer.
template<class Text>
struct NamedMunicipalityOf {
    Text name;
    Text ineCode;
    Text province; // two digits
};

/// The result of the typing. Texts are empty where nothing is known.
template<class Text>
struct ResolvedAddressOf {
    Text municipality;
    Text ineCode;
    Text street;
    Text streetType;
    /// The address's; if the number is not resolved, that of the street's beginning; if the street is not,
    /// that of a municipality with a single one.
    Text postalCode;
    /// The parts that could not be resolved, in the order of typing. Parts that depend on them were not
    /// tried.
    std::vector<AddressPart> unsettled;
    /// The parts that differ from what was typed: a beginning became a whole name, a missing or different
    /// type became the street's.
    std::vector<AddressPart> completed;
    /// The municipalities of that name, if the address does not determine exactly one.
    std::vector<NamedMunicipalityOf<Text>> candidates;
    NumberProblem numberProblem = NumberProblem::None;

    /// Whether everything typed is known and consistent: the street belongs to the municipality, and the
    /// postal code to the number.
    [[nodiscard]] bool isSettled() const { return unsettled.empty(); }
    /// Whether it is settled under exactly the names that were typed. Programs that resolve many addresses
    /// unattended should accept no others.
    [[nodiscard]] bool isExact() const {
        return isSettled() && std::ranges::count(completed, AddressPart::Municipality) == 0 &&
               std::ranges::count(completed, AddressPart::Street) == 0;
    }

    /// Converts the result to another text type.
    template<class Other, class Convert>
    [[nodiscard]] ResolvedAddressOf<Other> as(Convert convert) const {
        ResolvedAddressOf<Other> other{
            convert(municipality), convert(ineCode), convert(street), convert(streetType),
            convert(postalCode),   unsettled,        completed,       {},
            numberProblem};
        for (const NamedMunicipalityOf<Text>& one : candidates) {
            other.candidates.push_back({convert(one.name), convert(one.ineCode), convert(one.province)});
        }
        return other;
    }
};

/// In texts with one byte per letter, or in UTF-8.
using TypedAddress = TypedAddressOf<std::string>;
using NamedMunicipality = NamedMunicipalityOf<std::string>;
using ResolvedAddress = ResolvedAddressOf<std::string>;

/// Takes and returns texts in Windows-1252, as in the tables. form/AddressText.h has the same for QString.
/// `database`: the name under which the folder of the tables is registered.
/// Errors: anything that prevents MUNICIPI and POSTAL, and PROVIN if a province's name is given, from being
/// opened or read (dbase::Error).
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddress(const std::string& database,
                                                           const TypedAddress& typed);

/// Takes and returns UTF-8. A text that the tables cannot hold matches nothing and is returned as typed.
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddressUtf8(const std::string& database,
                                                               const TypedAddress& typed);

} // namespace ambrel
