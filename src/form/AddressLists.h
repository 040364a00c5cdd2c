// The lists that the boxes of an address open, and the card of its street.
#pragma once

#include "form/AddressBoxes.h"

namespace ambrel {

/// What is chosen goes into its box as if it had been typed and left. Without a choice the form stays as it
/// was. Not installed: the inside of AddressBoxes.
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
