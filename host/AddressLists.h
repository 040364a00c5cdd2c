// The lists that the boxes of the address form open: by their button, by F4, or from the menu.
#pragma once

#include <QObject>

#include "host/AddressForm.h"

class QPushButton;
class TClassCodPostales;

namespace host {

class AddressValidation;

/// What is chosen from a list goes into its box, which then is settled as if it had been typed and left.
/// Without a choice the form stays as it was.
class AddressLists : public QObject {
    Q_OBJECT
public:
    AddressLists(const AddressForm& form, TClassCodPostales& controller, AddressValidation& validation,
                 QObject* parent = nullptr);

    void chooseMunicipality();
    void chooseProvince();
    void chooseStreetType();

private:
    const AddressBoxes& boxes_;
    TClassCodPostales& controller_;
    AddressValidation& validation_;
};

} // namespace host
