// Judges addresses by the plain rows.
#include "data/AddressOracle.h"

#include <algorithm>
#include <cstdlib>

#include "dbase/dataset/dataset.h"

namespace postal_tests {

/// What the rows of one municipality say together.
struct AddressOracle::Town {
    [[nodiscard]] bool hasOneCode() const { return isMarked && codes.size() == 1; }
    [[nodiscard]] bool owns(const StreetRow& row) const {
        return provinces.contains(row.province) &&
               (codes.contains(row.code) || (row.ineCode == ineCode && !hasOneCode()));
    }

    std::string ineCode;
    std::set<std::string> codes, provinces;
    bool isMarked = false;
};

namespace {

template<class Rows>
std::set<std::string> codesOf(const Rows& rows) {
    std::set<std::string> codes;
    for (const auto& row : rows) {
        codes.insert(row.code);
    }
    return codes;
}

template<class Rows>
void keepType(Rows& rows, const std::string& type) {
    if (type.empty()) {
        return;
    }
    for (const std::string& wanted : {type, std::string()}) {
        if (std::ranges::any_of(rows, [&](const auto& row) { return row.type == wanted; })) {
            std::erase_if(rows, [&](const auto& row) { return row.type != wanted; });
            return;
        }
    }
    rows.clear(); // the form shows a street that does not exist
}

template<class Rows, class AlsoKept>
void keepOwn(Rows& rows, const std::string& ineCode, AlsoKept alsoKept) {
    const auto isSaid = [&](const auto& row) { return row.ineCode == ineCode; };
    if (std::ranges::any_of(rows, isSaid)) {
        std::erase_if(rows, [&](const auto& row) { return !isSaid(row) && !alsoKept(row); });
    }
}

} // namespace

AddressOracle::AddressOracle() {
    dbase::Dataset towns("DB", "MUNICIPI"), streets("DB", "POSTAL");
    towns.open();
    for (bool more = !towns.isEmpty(); more; more = towns.next()) {
        towns_.push_back({towns.field("COD_INE").text(), towns.field("CODPOSTAL").text(),
                          towns.field("NOMBRE").text(), towns.field("COD_PROV").text(),
                          towns.field("UNICO").text() == "S"});
    }
    streets.open();
    for (bool more = !streets.isEmpty(); more; more = streets.next()) {
        streets_.push_back({streets.field("VIA").text(),
                            streets.field("TIPO_VIA").text(),
                            streets.field("CODPOSTAL").text(),
                            streets.field("PROVINCIA").text(),
                            streets.field("COD_INE").text(),
                            {streets.field("PAR_INI").integer(), streets.field("IMPAR_INI").integer()},
                            {streets.field("PAR_FIN").integer(), streets.field("IMPAR_FIN").integer()}});
    }
}

AddressOracle::Town AddressOracle::town(const std::string& ineCode) const {
    Town town;
    town.ineCode = ineCode;
    for (const TownRow& row : towns_) {
        if (row.ineCode == ineCode) {
            town.codes.insert(row.code);
            town.provinces.insert(row.province);
            town.provinces.insert(row.code.substr(0, 2));
            town.isMarked = town.isMarked || row.isMarked;
        }
    }
    return town;
}

std::set<std::string> AddressOracle::codes(const std::string& ineCode, const std::string& street,
                                           const std::string& type, const std::string& number) const {
    const Town town = this->town(ineCode);
    if (town.hasOneCode()) {
        return town.codes;
    }
    std::vector<StreetRow> rows;
    for (const StreetRow& row : streets_) {
        if (row.name == street && town.owns(row)) {
            rows.push_back(row);
        }
    }
    keepType(rows, type);
    keepOwn(rows, ineCode, [](const StreetRow& row) { return row.ineCode.empty(); });
    const int value = std::atoi(number.c_str());
    if (value > 0) {
        std::erase_if(rows, [&](const StreetRow& row) {
            return value < row.first[value % 2] || value > row.last[value % 2];
        });
    }
    if (codesOf(rows).size() > 1 && value > 0) {
        keepOwn(rows, ineCode, [](const StreetRow&) { return false; });
    }
    return codesOf(rows);
}

std::set<std::string> AddressOracle::namesOf(const std::string& ineCode) const {
    std::set<std::string> names;
    for (const TownRow& row : towns_) {
        if (row.ineCode == ineCode) {
            names.insert(row.name);
        }
    }
    return names;
}

} // namespace postal_tests
