// A customer of the host's whose address is bound to the boxes.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"
#include "form/AddressBoxes.h"
#include "form/RecordBinding.h"

namespace postal_tests {

/// The first row of the table that BoxesTest::storeCustomer() makes.
class BoundCustomer {
public:
    explicit BoundCustomer(const ambrel::AddressBoxes::Boxes& boxes) {
        table.open();
        record.bind(boxes.municipality, table.field("VECINDAD"));
        record.bind(boxes.postalCode, table.field("CODPOSTAL"));
    }

    /// Shows it in the wired boxes.
    void showIn(ambrel::AddressBoxes& address) {
        address.setRecord(record);
        record.showRow();
    }
    /// Another user puts it into edit, and lets it go.
    void hold() {
        others_.open();
        others_.edit();
    }
    void release() { others_.cancel(); }

    [[nodiscard]] std::string municipality() { return table.field("VECINDAD").text(); }
    [[nodiscard]] std::string postalCode() { return table.field("CODPOSTAL").text(); }

    dbase::Dataset table{"DB", "CLIENTES"};
    ambrel::RecordBinding record{table};

private:
    dbase::Dataset others_{"DB", "CLIENTES"};
};

} // namespace postal_tests
