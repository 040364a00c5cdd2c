// An address settled without boxes: what typing municipality, street and number, and leaving the boxes, comes
// to.
#pragma once

#include <string>
#include <vector>

#include "AmbrelExport.h"

namespace ambrel {

/// What somebody would type. Texts in Windows-1252; lower case counts as typed in capitals.
struct TypedAddress {
    std::string municipality;
    std::string streetType; // code, may be empty
    std::string street;
    std::string number;
};

/// What is typed one after the other.
enum class AddressPart { Municipality, Street, Number };

/// What the typing settled. Texts in Windows-1252; empty where nothing is known.
struct ResolvedAddress {
    std::string municipality;
    std::string ineCode;
    std::string street;
    std::string streetType;
    std::string postalCode;
    /// The parts that were typed to no avail, in the order of typing. What depends on such a part was not
    /// tried.
    std::vector<AddressPart> unsettled;

    /// Whether everything that was typed is known.
    [[nodiscard]] bool isSettled() const { return unsettled.empty(); }
};

/// `database`: the name under which the folder of the tables is registered.
/// Errors: whatever keeps MUNICIPI and POSTAL from being opened or read (dbase::Error).
[[nodiscard]] AMBREL_EXPORT ResolvedAddress resolveAddress(const std::string& database,
                                                           const TypedAddress& typed);

} // namespace ambrel
