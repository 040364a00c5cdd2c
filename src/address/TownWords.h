// Municipality and province among the pieces of an address.
#pragma once

#include <vector>

#include "address/AddressPieces.h"
#include "address/StreetWords.h"
#include "address/WrittenWords.h"

namespace ambrel {

/// A street and the town that goes with it.
struct StreetInTown {
    StreetWords street;
    WordRange municipality, province;
};

/// The towns that an address may name beside one reading of its street, the likeliest first; at least one,
/// perhaps empty. `streetPiece`: the street's number among the pieces, or their count if there is none.
[[nodiscard]] std::vector<StreetInTown> readTowns(const WrittenWords& words,
                                                  const std::vector<AddressPiece>& pieces,
                                                  std::size_t streetPiece, const StreetWords& street);

} // namespace ambrel
