// Many addresses with known postal codes, resolved one after the other.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "data/PostalTables.h"

namespace postal_tests {

/// Texts are UTF-8. Several codes where several villages of a municipality have the address.
struct KnownAddress {
    std::string municipality, ineCode, type, street;
    int number = 0;
    std::set<std::string> postalCodes = {};

    /// Compares what is typed, whatever the codes.
    friend bool operator<(const KnownAddress& a, const KnownAddress& b) {
        return std::tie(a.ineCode, a.type, a.street, a.number) <
               std::tie(b.ineCode, b.type, b.street, b.number);
    }
};

/// The result of a trial.
struct Tally {
    int exact = 0; // addresses with one code
    int found = 0; // of them
    /// Settled with a code other than the address's, with one of several, or as another street.
    std::vector<std::string> wrong;

    [[nodiscard]] double foundShare() const { return exact == 0 ? 1.0 : static_cast<double>(found) / exact; }
};

/// The addresses at the ends of each stretch, once each; `ineCodes`: the municipality of each stretch. Leaves
/// out those with a code that MUNICIPI does not have for their municipality: one of the two is wrong there.
[[nodiscard]] std::vector<KnownAddress> addressesOf(const std::vector<StreetRow>& streets,
                                                    const std::vector<std::string>& ineCodes,
                                                    const std::vector<MunicipalityRow>& municipalities);

/// Returns the postal code of an address; null if it does not know it.
using AddressResolver = std::function<std::optional<std::string>(const KnownAddress&)>;

[[nodiscard]] Tally tryAddresses(const std::vector<KnownAddress>& addresses, const AddressResolver& resolver);
/// Resolves each in the tables of "DB", without boxes.
[[nodiscard]] Tally tryAddresses(const std::vector<KnownAddress>& addresses);

} // namespace postal_tests
