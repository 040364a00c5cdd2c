// Which boxes of the form say what the tables say.
#pragma once

#include "host/AddressForm.h"

class TDMCodPostales;

namespace host {

/// Compares the boxes with the rows that the controller's tables stand on, and sets the Tags of the boxes
/// that the controller has none for: 1 is validated, 0 is not.
class AddressMarks {
public:
    AddressMarks(const AddressBoxes& boxes, TDMCodPostales& tables) : boxes_(boxes), tables_(tables) {}

    /// Whether POSTAL stands on a row of the street in the box.
    [[nodiscard]] bool isAtStreet() const;
    /// The number is validated when the row has it.
    void markNumber() const;
    /// Province, street type and postal code are validated while they say what the validated municipality and
    /// street imply.
    void markWhatFollows() const;

private:
    [[nodiscard]] bool isAtNumber() const;

    AddressBoxes boxes_;
    TDMCodPostales& tables_;
};

} // namespace host
