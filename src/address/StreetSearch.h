// The streets that an address may mean in a municipality.
#pragma once

#include <vector>

#include "address/AddressDirectory.h"
#include "address/AddressOption.h"
#include "address/AddressQuestion.h"
#include "address/StreetTypeMatch.h"
#include "address/Suggesters.h"
#include "suggest/TableStamp.h"

namespace ambrel {

/// Adds one option for each type that a street has.
class StreetSearch {
public:
    StreetSearch(AddressDirectory& directory, Suggesters& suggesters, StreetTypeMatch& types)
        : directory_(directory), suggesters_(suggesters), types_(types) {}

    /// The street with exactly the name.
    void addExact(const AddressQuestion& question, const PlaceOption& place,
                  std::vector<AddressOption>& options);
    /// Announces addExact(): those that are announced are read together.
    void expectExact(const AddressQuestion& question, const PlaceOption& place);
    /// Streets with a name like it.
    void addNear(const AddressQuestion& question, const PlaceOption& place,
                 std::vector<AddressOption>& options);

private:
    [[nodiscard]] double otherDoubt(const NameLikeness& likeness, std::string_view written,
                                    const Municipality& municipality);
    /// Whether any municipality has a street with exactly this name.
    [[nodiscard]] bool isAnyStreet(std::string_view name);
    void addTypes(const AddressQuestion& question, AddressOption option, std::vector<StreetStretch> stretches,
                  std::vector<AddressOption>& options);

    AddressDirectory& directory_;
    Suggesters& suggesters_;
    StreetTypeMatch& types_;
    suggest::TextMap<bool> anyStreet_;
    suggest::TableStamp anyStreetStamp_; // of the streets that it knows
};

} // namespace ambrel
