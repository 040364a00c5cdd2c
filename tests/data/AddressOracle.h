// What the tables say about an address, read row by row without the pieces that a form uses.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace postal_tests {

/// The rows of MUNICIPI and POSTAL of database "DB" at one moment. Texts are Windows-1252.
class AddressOracle {
public:
    /// Reads the tables.
    AddressOracle();

    /// All postal codes that the rows allow for an address. `number` begins with its digits, if it has any.
    [[nodiscard]] std::set<std::string> codes(const std::string& ineCode, const std::string& street,
                                              const std::string& type, const std::string& number) const;
    /// All names of a municipality.
    [[nodiscard]] std::set<std::string> namesOf(const std::string& ineCode) const;

private:
    struct TownRow {
        std::string ineCode, code, name, province;
        bool isMarked; // as having one code only
    };
    struct StreetRow {
        std::string name, type, code, province, ineCode;
        int first[2], last[2]; // even, odd
    };
    struct Town;

    [[nodiscard]] Town town(const std::string& ineCode) const;

    std::vector<TownRow> towns_;
    std::vector<StreetRow> streets_;
};

} // namespace postal_tests
