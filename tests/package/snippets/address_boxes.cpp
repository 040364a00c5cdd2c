#include <QLabel>
#include <QLineEdit>

#include "package/AmbCodPostales.h"

// The boxes of the form; a label says what is wrong with the address.
void wireAddress(QWidget* form, QLineEdit* municipality, QLineEdit* street, QLineEdit* number,
                 QLineEdit* postalCode, QLabel* warning) {
    auto* address = new ambrel::AddressBoxes(
        {.municipality = municipality, .street = street, .number = number, .postalCode = postalCode}, form);
    QObject::connect(address, &ambrel::AddressBoxes::stateChanged, warning,
                     [=] { warning->setText(address->reason(ambrel::AddressBoxes::Box::PostalCode)); });
}
