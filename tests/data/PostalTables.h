// Test fixture: the five postal tables in a folder of their own, filled with rows written inline.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/TableTest.h"

namespace dbase {
class Dataset;
}

namespace postal_tests {

/// Texts are UTF-8.
struct MunicipalityRow {
    std::string codIne, codPostal, nombre;
    std::string unico = "N", capital = "9";
    bool entMenor = false;
};

struct StreetRow {
    std::string codigo1, via, tipo, codPostal;
    std::pair<int, int> odd = {1, 9999}, even = {2, 9998};
    std::string provincia = "28", capital = "0", ineCode = {};
};

struct ProvinceRow {
    std::string codigo, provincia;
    int grupo = 1;
};

struct StreetTypeRow {
    std::string codigo, nombre, nombreCat = {};
};

/// All five tables exist, empty, with a fresh configuration.
class PostalTables : public ambrel::test::TableTest {
protected:
    PostalTables();
    ~PostalTables() override;

    void addMunicipalities(const std::vector<MunicipalityRow>& rows);
    void addStreets(const std::vector<StreetRow>& rows);
    void addProvinces(const std::vector<ProvinceRow>& rows);
    void addStreetTypes(const std::vector<StreetTypeRow>& rows);
    /// Rows of PROVCOD and POBLLITE.
    void addAlternativeMunicipalities(const std::vector<std::pair<std::string, std::string>>& rows);

    /// Goes to the row of POSTAL with this key, in any order; fails the test when there is none.
    static void goToStreet(dbase::Dataset& streets, const std::string& codigo1);
};

} // namespace postal_tests
