// Reads the list of foreign codes.
#include "directory/audit/ForeignCodes.h"

#include <algorithm>
#include <set>
#include <string>

namespace ambrel::directory {

namespace {

constexpr std::size_t pairSize = 11; // CODE COD_INE

std::set<std::string, std::less<>> readPairs() {
    std::set<std::string, std::less<>> pairs;
    std::string_view text = foreignCodesText();
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (line.size() >= pairSize && !line.starts_with('#')) {
            pairs.emplace(line.substr(0, pairSize));
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return pairs;
}

} // namespace

bool isKnownForeignCode(std::string_view postalCode, std::string_view ineCode) {
    static const std::set<std::string, std::less<>> pairs = readPairs();
    return pairs.contains(std::string(postalCode) + ' ' + std::string(ineCode));
}

} // namespace ambrel::directory
