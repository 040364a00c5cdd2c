// How likely an option is what was meant.
#pragma once

#include "address/AddressOption.h"
#include "address/AddressQuestion.h"

namespace ambrel {

/// Looks the number up among the stretches, and sets the doubt and the confidence.
void weigh(AddressOption& option, const AddressQuestion& question);

} // namespace ambrel
