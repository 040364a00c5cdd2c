// The verdict on an address for which something was found.
#pragma once

#include "address/AddressOption.h"
#include "address/AddressQuestion.h"
#include "address/AddressValidator.h"

namespace ambrel {

/// The verdict if nothing else were as likely; Correct stands for all that are settled. `option`: weighed.
[[nodiscard]] Verdict verdictOn(const AddressOption& option, const AddressQuestion& question,
                                const ValidationOptions& options);

/// The address with the parts of an option; if it is settled, its changes decide whether it is correct,
/// completed or corrected.
[[nodiscard]] JudgedAddress judgedAs(const AddressOption& option, Verdict verdict,
                                     const AddressQuestion& question);

/// An address of which at most the municipality is known.
[[nodiscard]] JudgedAddress judgedWithoutStreet(const PlaceOption* place, Verdict verdict,
                                                const AddressQuestion& question);

[[nodiscard]] AddressAlternative alternativeOf(const AddressOption& option);
[[nodiscard]] AddressAlternative alternativeOf(const PlaceOption& place);

} // namespace ambrel
