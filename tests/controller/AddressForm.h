// Test fixture: a host's form with municipality, street and number boxes wired to a controller, over a host
// table.
#pragma once

#include <QLineEdit>
#include <QWidget>
#include <memory>

#include "controller/ClasCodPostales.h"
#include "controller/StreetTables.h"
#include "dbase/dataset/dataset.h"

namespace postal_tests {

class AddressForm : public StreetTables {
protected:
    AddressForm();

    /// Creates the controller, the host's row, in edit, and the wired boxes. Call it once the tables are
    /// filled.
    void openForm();
    /// Goes to a municipality as if it had been chosen.
    void choose(const std::string& municipality) const;
    /// Goes to a street row by its key.
    void goToRow(const std::string& codigo1) const;

    [[nodiscard]] std::string municipality() const;
    [[nodiscard]] std::string row() const;
    [[nodiscard]] std::string hostPostalCode() const { return postalCodeField->text(); }

    QWidget form;
    QLineEdit* const municipalityBox = new QLineEdit(&form);
    QLineEdit* const streetBox = new QLineEdit(&form);
    QLineEdit* const numberBox = new QLineEdit(&form);

    /// The arguments that the host passes to the handlers, and what the handlers write into them.
    QString province = "?", postalCode = "?", streetType = "CL";
    bool asks = true;

    dbase::Dataset host{"DB", "CLIENTES"};
    dbase::Field* postalCodeField = nullptr;
    std::unique_ptr<TClassCodPostales> controller;
};

} // namespace postal_tests
