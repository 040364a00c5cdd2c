// The host's own provinces and municipalities, as the import offers them.
#pragma once

#include <QString>
#include <string>
#include <vector>

namespace ambrel {

struct HostPlace {
    QString name;
    int number = 0; // of a province its code, of a municipality its postal code
};

/// PROVIN's Spanish provinces in alphabetical order. Errors: dbase::Error.
[[nodiscard]] std::vector<HostPlace> hostProvinces(const std::string& database);

/// MUNICIPI's rows of a province, whose code has two digits, in Spanish order; rows of one name in the order
/// of their INE codes. Errors: dbase::Error.
[[nodiscard]] std::vector<HostPlace> hostMunicipalities(const std::string& database,
                                                        const std::string& provinceCode);

/// Number as a code of a fixed width: 7 is "07".
[[nodiscard]] std::string codeOf(int number, int width);

} // namespace ambrel
