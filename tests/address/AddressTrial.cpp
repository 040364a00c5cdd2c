// Resolves many known addresses and counts the results.
#include "AddressTrial.h"

#include <algorithm>
#include <map>

#include "address/AddressResolution.h"
#include "support/Tables.h"

namespace postal_tests {
namespace {

using ambrel::test::ansi;

/// The first and the last number of each side that has numbers.
std::vector<int> endsOf(const StreetRow& street) {
    std::vector<int> numbers;
    for (const auto& [first, last] : {street.odd, street.even}) {
        if (first > 0 && first <= last) {
            numbers.insert(numbers.end(), {first, last});
        }
    }
    return numbers;
}

std::string described(const KnownAddress& address, const std::string& code) {
    std::string right;
    for (const std::string& one : address.postalCodes) {
        right += ' ' + one;
    }
    return address.municipality + ", " + address.type + ' ' + address.street + ' ' +
           std::to_string(address.number) + ": " + code + ", right:" + right;
}

} // namespace

std::vector<KnownAddress> addressesOf(const std::vector<StreetRow>& streets,
                                      const std::vector<std::string>& ineCodes,
                                      const std::vector<MunicipalityRow>& municipalities) {
    std::map<std::string, std::string> names;
    std::map<std::string, std::set<std::string>> codes;
    for (const MunicipalityRow& row : municipalities) {
        codes[row.codIne].insert(row.codPostal);
        if (!row.entMenor) {
            names.emplace(row.codIne, row.nombre);
        }
    }
    std::map<KnownAddress, std::set<std::string>> known;
    for (std::size_t i = 0; i < streets.size(); ++i) {
        for (const int number : endsOf(streets[i])) {
            known[{names.at(ineCodes[i]), ineCodes[i], streets[i].tipo, streets[i].via, number}].insert(
                streets[i].codPostal);
        }
    }
    std::vector<KnownAddress> addresses;
    for (const auto& [address, right] : known) {
        if (std::ranges::includes(codes.at(address.ineCode), right)) {
            addresses.push_back(address);
            addresses.back().postalCodes = right;
        }
    }
    return addresses;
}

Tally tryAddresses(const std::vector<KnownAddress>& addresses, const AddressResolver& resolver) {
    Tally tally;
    for (const KnownAddress& address : addresses) {
        const bool isExact = address.postalCodes.size() == 1;
        tally.exact += isExact ? 1 : 0;
        const std::optional<std::string> code = resolver(address);
        if (!code) {
            continue;
        }
        if (!isExact || !address.postalCodes.contains(*code)) {
            tally.wrong.push_back(described(address, *code));
        } else {
            ++tally.found;
        }
    }
    return tally;
}

Tally tryAddresses(const std::vector<KnownAddress>& addresses) {
    return tryAddresses(addresses, [](const KnownAddress& address) -> std::optional<std::string> {
        const ambrel::ResolvedAddress answer =
            ambrel::resolveAddress("DB", {.municipality = ansi(address.municipality),
                                          .streetType = address.type,
                                          .street = ansi(address.street),
                                          .number = std::to_string(address.number),
                                          .ineCode = address.ineCode});
        if (!answer.isSettled()) {
            return std::nullopt;
        }
        return answer.completed.empty() ? answer.postalCode : "another street's: " + answer.postalCode;
    });
}

} // namespace postal_tests
