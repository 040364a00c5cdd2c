#include <QLineEdit>

#include "package/AmbCodPostales.h"

// The same for boxes that belong to a row of the host's table.
void wireCustomer(QWidget* form, const ambrel::AddressBoxes::Boxes& boxes, dbase::Dataset& customers) {
    auto* record = new ambrel::RecordBinding(customers, form);
    record->bind(boxes.municipality, customers.field("VECINDAD"));
    record->bind(boxes.street, customers.field("DOMICILIO"));
    record->bind(boxes.number, customers.field("NUMERO"));
    record->bind(boxes.postalCode, customers.field("CODPOSTAL"));
    auto* address = new ambrel::AddressBoxes(boxes, form);
    address->setRecord(*record); // looks up each row that is shown as a stored address
    record->showRow();           // of the open table; again after each move, post and cancel
}

// The host's command for saving.
void saveCustomer(ambrel::AddressBoxes& address, ambrel::RecordBinding& record, dbase::Dataset& customers) {
    address.settle();                       // as if the box being typed in had been left
    if (QLineEdit* cut = record.cutBox()) { // its column would lose the end of the text
        return cut->setFocus();
    }
    if (QLineEdit* box = record.unstorableBox()) { // its column would have "?" for a character
        return box->setFocus();
    }
    if (record.hasChanges()) {
        customers.post();
    }
    record.showRow();
}
