// Test fixture: the municipalities and streets of one real province. The data are not part of the project:
// the environment variable AMBREL_REAL_DATA names a folder that has them, and without it the tests skip
// themselves.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "address/AddressTrial.h"
#include "data/PostalTables.h"

namespace postal_tests {

class RealProvince : public PostalTables {
protected:
    void SetUp() override;

    /// Fills MUNICIPI, TIPO_VIA and POSTAL, the last with or without the column that the INE pass fills.
    void load(bool withIneCodes);
    /// The addresses at the ends of each stretch.
    [[nodiscard]] std::vector<KnownAddress> addresses() const;

private:
    void readMunicipalities();
    void readStreets();

    std::filesystem::path folder_;
    std::vector<MunicipalityRow> municipalities_;
    std::vector<StreetRow> streets_;
    std::vector<std::string> owners_;          // INE code of each street
    std::map<std::string, std::string> types_; // code of each street type's name; any two characters will do
};

} // namespace postal_tests
