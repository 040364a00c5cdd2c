// What the tables hold for a reading of an address.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "address/AddressDirectory.h"
#include "address/AddressOption.h"
#include "address/AddressQuestion.h"
#include "address/GivenReadings.h"
#include "address/MunicipalityBook.h"
#include "address/PlaceSearch.h"
#include "address/StreetSearch.h"
#include "address/StreetTypeMatch.h"
#include "address/Suggesters.h"

namespace ambrel {

/// What was found for one reading.
struct AddressFinding {
    AddressQuestion question = {};
    std::vector<PlaceOption> places = {};
    std::vector<AddressOption> options = {}; // the likeliest first
};

/// Looks readings up, first exactly and then by suggestions. Errors: dbase::Error.
class AddressLookup {
public:
    AddressLookup(const std::string& database, std::size_t memory);

    /// Forgets the municipalities if they have changed, and with them what earlier findings point at.
    void renew() { book_.renew(); }

    /// Adds readings with words that only the tables know for a type: "DS Son Remei".
    void addCodeReadings(GivenReadings& readings);
    /// Makes a reading the question of a new finding.
    void ask(AddressParts&& reading, AddressFinding& finding);

    /// The municipalities with exactly the name.
    void findPlaces(AddressFinding& finding);
    /// The same for several; within a read scope findStreets() then reads the streets of all together, as
    /// long as it is called for them in turn.
    void findAllPlaces(std::span<AddressFinding* const> findings);
    /// The streets with exactly the name in these municipalities.
    void findStreets(AddressFinding& finding);
    /// Municipalities and streets that are like what was written, where nothing is exactly so.
    void findNear(AddressFinding& finding);

    [[nodiscard]] bool contradict(std::string_view type, std::string_view other) {
        return types_.contradict(type, other);
    }
    /// As PROVIN holds it; empty if it does not.
    [[nodiscard]] std::string provinceName(const std::string& province) {
        return suggesters_.provinces.nameOf(province);
    }

private:
    [[nodiscard]] const std::string& provinceOf(const std::string& written);

    AddressDirectory directory_;
    MunicipalityBook book_;
    Suggesters suggesters_;
    StreetTypeMatch types_;
    PlaceSearch places_;
    StreetSearch streets_;
    suggest::TextMap<std::string> provinces_; // by what was written
};

} // namespace ambrel
