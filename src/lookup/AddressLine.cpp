// Composes the line of an address.
#include "lookup/AddressLine.h"

#include "services/Rnumcad.h"

namespace ambrel {
namespace {

std::string trimmed(std::string_view text) { return std::string(withoutBlanks(text)); }

std::string trimmedLine(const AddressColumns& columns) {
    std::string line = trimmed(trimmed(columns.type) + ' ' + trimmed(columns.street));
    if (const std::string number = trimmed(columns.number); !number.empty()) {
        line += ", " + number;
    }
    if (const std::string floor = trimmed(columns.floor); !floor.empty()) {
        line += ", " + floor;
    }
    return line;
}

std::string untrimmedLine(const AddressColumns& columns) {
    std::string line = trimmed(columns.type + ' ' + columns.street);
    // Deliberate: the number is introduced in words here, whereas the trimmed line has only a comma.
    if (!withoutBlanks(columns.number).empty()) {
        line += " N\xDAMERO " + columns.number;
    }
    if (!withoutBlanks(columns.floor).empty()) {
        line += ", " + columns.floor;
    }
    return line;
}

} // namespace

std::string addressLine(const AddressColumns& columns, int width) {
    std::string line = width < 0 ? untrimmedLine(columns) : trimmedLine(columns);
    for (const std::optional<std::string>& part : {columns.postalCode, columns.locality}) {
        if (part) {
            line += ' ' + *part;
        }
    }
    return Espacios(withoutBlanks(line), width);
}

} // namespace ambrel
