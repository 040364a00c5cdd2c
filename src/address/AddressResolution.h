// An address settled without boxes: what typing municipality, street and number, and leaving the boxes, comes
// to.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// What somebody would type. Texts in Windows-1252; letter case and superfluous blanks do not count.
struct TypedAddress {
    std::string municipality;
    std::string streetType; // code, may be empty
    std::string street;
    std::string number;
    /// Which municipality is meant, of several with one name; either may be empty.
    std::string province = {}; // its two digits, or its name
    std::string ineCode = {};
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

/// One of several municipalities that a name can mean. Texts in Windows-1252.
struct NamedMunicipality {
    std::string name;
    std::string ineCode;
    std::string province; // two digits
};

/// What the typing settled. Texts in Windows-1252; empty where nothing is known.
struct ResolvedAddress {
    std::string municipality;
    std::string ineCode;
    std::string street;
    std::string streetType;
    /// The address's; while the number is unsettled that of the street's beginning, and while the street is,
    /// that of a municipality which has a single one.
    std::string postalCode;
    /// The parts that were typed to no avail, in the order of typing. What depends on such a part was not
    /// tried.
    std::vector<AddressPart> unsettled;
    /// The parts that are not what was typed: a beginning became a whole name, a missing or other type that
    /// of the street.
    std::vector<AddressPart> completed;
    /// The municipalities of that name, where not exactly one of them can be meant.
    std::vector<NamedMunicipality> candidates;
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
};

/// `database`: the name under which the folder of the tables is registered.
/// Errors: whatever keeps MUNICIPI and POSTAL, and PROVIN where a province's name is given, from being opened
/// or read (dbase::Error).
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddress(const std::string& database,
                                                           const TypedAddress& typed);

} // namespace ambrel
