// The line of an address, from the texts of its columns.
#pragma once

#include <optional>
#include <string>

namespace ambrel {

/// Texts in Windows-1252, as read from the host's columns; `type` is the name of the street type.
struct AddressColumns {
    std::string type, street, number, floor;
    std::optional<std::string> postalCode, locality; // at the end of the line, if given
};

/// `width` below 0: the columns keep their blanks and NÚMERO precedes the number; above 0: the line has
/// exactly that many characters. Otherwise it neither begins nor ends with a blank.
[[nodiscard]] std::string addressLine(const AddressColumns& columns, int width);

} // namespace ambrel
