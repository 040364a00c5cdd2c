// The verdict on an address, read in one way.
#pragma once

#include "address/AddressLookup.h"
#include "address/AddressValidator.h"

namespace ambrel {

/// What the options that were found for a reading make of the address. Weighs them and puts the likeliest
/// first; without options the municipalities decide.
[[nodiscard]] JudgedAddress judgedFrom(AddressFinding& finding, const ValidationOptions& limits);

} // namespace ambrel
