// The official files of an edition, read line by line without the library: what the tables made of them is
// held against this.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace country_tests {

/// What a line of TRAM says of a side. Numbers are 0 for a stretch without them.
struct OfficeSide {
    char numbering = '0'; // 0 none, 1 odd, 2 even
    int first = 0, last = 0;
    std::string postalCode, unit;
};

/// Texts in Windows-1252.
struct OfficeStreet {
    std::string place; // 28079
    bool isPseudo = false;
    std::string key;  // five digits
    std::string type; // the office's abbreviation
    std::string name; // of VIAS or PSEU; of TRAM, in 25 letters, where neither has it
    std::vector<OfficeSide> sides;
};

class OfficeLines {
public:
    /// The files that ambcp's generator writes into a folder. Throws if one is missing or not understood.
    explicit OfficeLines(const std::string& folder);

    /// Municipalities by their codes.
    [[nodiscard]] const std::map<std::string, std::string>& municipalities() const { return municipalities_; }
    /// Those with stretches, in the order of municipality, kind and key.
    [[nodiscard]] const std::vector<OfficeStreet>& streets() const { return streets_; }
    /// The name of a unit of a municipality; empty if it has none of its own.
    [[nodiscard]] const std::string& entity(const std::string& place, const std::string& unit) const;

private:
    std::map<std::string, std::string> municipalities_;
    std::vector<OfficeStreet> streets_;
    std::map<std::string, std::string> entities_; // by municipality and unit
};

} // namespace country_tests
