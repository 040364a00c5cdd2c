// A reading of an address, ready to be looked up.
#pragma once

#include <string>

#include "address/AddressParts.h"
#include "address/HouseNumber.h"

namespace ambrel {

struct AddressQuestion {
    AddressParts parts;
    std::string municipality, street; // in the form of the tables
    std::string postalCode;           // five digits, or empty
    bool hasOtherText = false;        // in place of a postal code
    std::string province;             // two digits, or empty
    bool isProvinceUnknown = false;   // none has the name that was written
    HouseNumber number;               // none for a kilometre

    /// Whether no postal code was given, readable or not.
    [[nodiscard]] bool lacksCode() const { return postalCode.empty() && !hasOtherText; }
};

} // namespace ambrel
