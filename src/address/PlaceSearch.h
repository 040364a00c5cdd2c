// The municipalities that an address may mean.
#pragma once

#include <string>
#include <vector>

#include "address/AddressOption.h"
#include "address/AddressQuestion.h"
#include "address/MunicipalityBook.h"
#include "address/Suggesters.h"

namespace ambrel {

class PlaceSearch {
public:
    PlaceSearch(MunicipalityBook& book, Suggesters& suggesters) : book_(book), suggesters_(suggesters) {}

    /// Those with exactly the name, or those that the postal code leads to where no name was written.
    [[nodiscard]] std::vector<PlaceOption> exact(const AddressQuestion& question);
    /// Those with a name like it, and those with the name in another province; the likeliest first.
    [[nodiscard]] std::vector<PlaceOption> near(const AddressQuestion& question);

private:
    MunicipalityBook& book_;
    Suggesters& suggesters_;
};

} // namespace ambrel
