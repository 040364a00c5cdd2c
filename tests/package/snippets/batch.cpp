#include <string>

#include "package/AmbCodPostales.h"

// Completes an address without a window, and without a QApplication. Texts in UTF-8; empty when the address
// is not known.
std::string postalCodeOf(const std::string& municipality, const std::string& street,
                         const std::string& number) {
    const ambrel::ResolvedAddress address = ambrel::resolveAddressUtf8(
        "DB", {.municipality = municipality, .streetType = "CL", .street = street, .number = number});
    return address.isExact() ? address.postalCode : std::string();
}
