#include <string>

#include "package/AmbCodPostales.h"

// Completes an address without a window, and without a QApplication. Texts in UTF-8; empty when it is not
// known.
std::string postalCodeOf(const std::string& municipality, const std::string& street,
                         const std::string& number) {
    const auto bytes = [](const std::string& utf8) {
        return ambrel::toWindows1252(QString::fromStdString(utf8)).value_or(std::string());
    };
    const ambrel::ResolvedAddress address = ambrel::resolveAddress("DB", {.municipality = bytes(municipality),
                                                                          .streetType = "CL",
                                                                          .street = bytes(street),
                                                                          .number = bytes(number)});
    return address.isExact() ? address.postalCode : std::string();
}
