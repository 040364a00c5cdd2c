// Converts window texts for the address resolution.
#include "form/AddressText.h"

namespace ambrel {

ResolvedAddressText resolveAddressText(const std::string& database, const TypedAddressText& typed) {
    const auto toUtf8 = [](const QString& text) { return text.toStdString(); };
    const auto fromUtf8 = [](const std::string& utf8) { return QString::fromStdString(utf8); };
    return resolveAddressUtf8(database, typed.as<std::string>(toUtf8)).as<QString>(fromUtf8);
}

} // namespace ambrel
