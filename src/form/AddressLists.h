// The lists opened from the boxes of an address, and the card of its street.
#pragma once

#include "form/AddressBoxes.h"

namespace ambrel {

/// A choice goes into its box as if it had been typed and left. Without a choice the form stays as it was.
/// Not installed: internal to AddressBoxes.
class AddressLists {
public:
    explicit AddressLists(AddressValidation& validation) : validation_(validation) {}

    void open(AddressBoxes::Box box);
    void openCard();

private:
    void chooseMunicipality();
    void chooseProvince();
    void chooseStreetType();
    void chooseStreet();

    AddressValidation& validation_;
};

} // namespace ambrel
