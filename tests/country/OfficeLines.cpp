// Cuts lines where the office's layouts since July 2025 say.
#include "country/OfficeLines.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <unordered_map>

#include "dbase/dbf/codepage.h"

namespace country_tests {
namespace {

/// Columns from 1, both ends included, without the blanks after the text.
std::string columns(const std::string& line, std::size_t first, std::size_t last) {
    std::string text = line.substr(first - 1, last - first + 1);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void forEachLine(const std::string& folder, const std::string& kind, std::size_t width,
                 const std::function<void(const std::string&)>& use) {
    const std::string name = kind + ".D250630.G250702";
    std::ifstream file(std::filesystem::path(folder) / name, std::ios::binary);
    if (!file) {
        throw std::runtime_error(name + " is missing");
    }
    for (std::string line; std::getline(file, line);) {
        if (line.size() != width + 1 || line.back() != '\r') {
            throw std::runtime_error(name + ": a line of another width");
        }
        use(line);
    }
}

} // namespace

OfficeLines::OfficeLines(const std::string& folder) {
    std::ifstream file(std::filesystem::path(folder) / "municipios.csv");
    for (std::string line; std::getline(file, line);) { // CPRO,CMUN,"NOMBRE"
        if (line.find('"') == 7) {
            municipalities_[line.substr(0, 2) + line.substr(3, 3)] =
                dbase::CodePage::windows1252().fromUtf8(line.substr(8, line.size() - 9)).value();
        }
    }
    std::unordered_map<std::string, OfficeStreet> streets; // by municipality, V or P, and key
    forEachLine(folder, "VIAS", 132, [&](const std::string& line) {
        OfficeStreet& street = streets[line.substr(0, 5) + 'V' + line.substr(5, 5)];
        street.type = columns(line, 53, 57);
        street.name = columns(line, 58, 107);
    });
    forEachLine(folder, "PSEU", 127, [&](const std::string& line) {
        streets[line.substr(0, 5) + 'P' + line.substr(5, 5)].name = columns(line, 78, 127);
    });
    forEachLine(folder, "UP", 604,
                [&](const std::string& line) { entities_[line.substr(0, 12)] = columns(line, 385, 434); });
    forEachLine(folder, "TRAM", 273, [&](const std::string& line) {
        if (line.compare(44, 3, "000") == 0) {
            return; // 28000 is not a postal code, though the office writes it now and then
        }
        const bool isPseudo = line.compare(20, 5, "00000") == 0;
        const std::string key = line.substr(isPseudo ? 25 : 20, 5);
        OfficeStreet& street = streets[line.substr(0, 5) + (isPseudo ? 'P' : 'V') + key];
        street.place = line.substr(0, 5);
        street.isPseudo = isPseudo;
        street.key = key;
        if (street.name.empty()) {
            street.name = isPseudo ? columns(line, 196, 245) : columns(line, 166, 190);
        }
        street.sides.push_back({line[47], std::stoi(line.substr(48, 4)), std::stoi(line.substr(53, 4)),
                                line.substr(42, 5), line.substr(13, 7)});
    });
    for (auto& [key, street] : streets) {
        if (!street.sides.empty()) {
            streets_.push_back(std::move(street));
        }
    }
    std::ranges::sort(streets_, {}, [](const OfficeStreet& street) {
        return std::tie(street.place, street.isPseudo, street.key);
    });
}

const std::string& OfficeLines::entity(const std::string& place, const std::string& unit) const {
    static const std::string none;
    const auto found = entities_.find(place + unit);
    return found == entities_.end() || found->second == municipalities_.at(place) ? none : found->second;
}

} // namespace country_tests
