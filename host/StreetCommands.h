// What the form offers for its street: the list of streets and the card of the one it names.
#pragma once

#include <QObject>

#include "host/AddressForm.h"

class TClassCodPostales;

namespace host {

class AddressValidation;

class StreetCommands : public QObject {
    Q_OBJECT
public:
    StreetCommands(const AddressForm& form, TClassCodPostales& controller, AddressValidation& validation,
                   QObject* parent = nullptr);

    /// Opens the list of streets, in the province of the form's municipality or else in the host's own. The
    /// street chosen is taken over with its municipality.
    void chooseStreet();
    /// Opens the card of the form's street; one that users added can be changed there.
    void showCard();

private:
    const AddressBoxes& boxes_;
    TClassCodPostales& controller_;
    AddressValidation& validation_;
};

} // namespace host
