// Any bytes as an address in one line, as a street's column and as a number's.
#include <algorithm>

#include "Trial.h"
#include "address/AddressLine.h"

namespace {

void requireFew(const std::vector<ambrel::AddressParts>& readings) {
    trial::require(!readings.empty() && readings.size() <= 12);
    for (const ambrel::AddressParts& parts : readings) {
        trial::require(std::ranges::count(readings, parts) == 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    requireFew(ambrel::readAddressLine(text));
    const std::vector<ambrel::AddressParts> streets = ambrel::readStreetText(text);
    requireFew(streets);
    for (const ambrel::AddressParts& parts : streets) {
        trial::require(parts.municipality.empty() && parts.province.empty() && parts.postalCode.empty());
    }
    const ambrel::AddressParts number = ambrel::readNumberText(text);
    trial::require(number.type.empty() && number.street.empty() && number.postalCode.empty());
    return 0;
}
