// An address settled without boxes: what typing municipality, street and number, and leaving the boxes, comes
// to.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// What somebody would type; letter case and superfluous blanks do not count.
template<class Text>
struct TypedAddressOf {
    Text municipality = {};
    Text streetType = {}; // code, may be empty
    Text street = {};
    Text number = {};
    /// Which municipality is meant, of several with one name; either may be empty.
    Text province = {}; // its two digits, or its name
    Text ineCode = {};

    /// The same address in texts of another kind.
    template<class Other, class Convert>
    [[nodiscard]] TypedAddressOf<Other> as(Convert convert) const {
        return {convert(municipality), convert(streetType), convert(street),
                convert(number),       convert(province),   convert(ineCode)};
    }
};

/// What is typed one after the other.
enum class AddressPart { Municipality, StreetType, Street, Number };

/// Why a known street has no sure postal code.
enum class NumberProblem {
    None,
    NoStretch,    // no stretch of the street has the number
    NoNumber,     // the street has several postal codes, and no number chooses among them
    NotANumber,   // what stands for a number is none
    SeveralCodes, // stretches with different postal codes have the number
    NoCode        // the street has no postal code
};

/// One of several municipalities that a name can mean.
template<class Text>
struct NamedMunicipalityOf {
    Text name;
    Text ineCode;
    Text province; // two digits
};

/// What the typing settled. Texts are empty where nothing is known.
template<class Text>
struct ResolvedAddressOf {
    Text municipality;
    Text ineCode;
    Text street;
    Text streetType;
    /// The address's; while the number is unsettled that of the street's beginning, and while the street is,
    /// that of a municipality which has a single one.
    Text postalCode;
    /// The parts that were typed to no avail, in the order of typing. What depends on such a part was not
    /// tried.
    std::vector<AddressPart> unsettled;
    /// The parts that are not what was typed: a beginning became a whole name, a missing or other type that
    /// of the street.
    std::vector<AddressPart> completed;
    /// The municipalities of that name, where not exactly one of them can be meant.
    std::vector<NamedMunicipalityOf<Text>> candidates;
    NumberProblem numberProblem = NumberProblem::None;

    /// Whether everything that was typed is known and belongs together: the street is the municipality's,
    /// and the postal code the one of the number.
    [[nodiscard]] bool isSettled() const { return unsettled.empty(); }
    /// Whether it is settled under the very names that were typed. Who asks for many addresses at once, with
    /// nobody looking on, does well to take no other.
    [[nodiscard]] bool isExact() const {
        return isSettled() && std::ranges::count(completed, AddressPart::Municipality) == 0 &&
               std::ranges::count(completed, AddressPart::Street) == 0;
    }

    /// The same answer in texts of another kind.
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

/// In texts of one byte a letter, or in UTF-8.
using TypedAddress = TypedAddressOf<std::string>;
using NamedMunicipality = NamedMunicipalityOf<std::string>;
using ResolvedAddress = ResolvedAddressOf<std::string>;

/// Texts in Windows-1252, in and out, as the tables have them. form/AddressText.h has the same for QString.
/// `database`: the name under which the folder of the tables is registered.
/// Errors: whatever keeps MUNICIPI and POSTAL, and PROVIN where a province's name is given, from being opened
/// or read (dbase::Error).
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddress(const std::string& database,
                                                           const TypedAddress& typed);

/// Texts in UTF-8, in and out. One that the tables cannot hold matches nothing, and is answered as typed.
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddressUtf8(const std::string& database,
                                                               const TypedAddress& typed);

} // namespace ambrel
