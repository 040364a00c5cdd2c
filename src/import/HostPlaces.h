// The host's own provinces and municipalities, as offered by the import.
#pragma once

#include <QString>
#include <string>
#include <vector>

namespace ambrel {

struct HostPlace {
    QString name;
    int number = 0; // a province's code, a municipality's postal code
};

/// PROVIN's Spanish provinces in alphabetical order. Errors: dbase::Error.
[[nodiscard]] std::vector<HostPlace> hostProvinces(const std::string& database);

/// MUNICIPI's rows of a province, given by its two-digit code, in Spanish order; rows with the same name in
/// the order of their INE codes. Errors: dbase::Error.
[[nodiscard]] std::vector<HostPlace> hostMunicipalities(const std::string& database,
                                                        const std::string& provinceCode);

/// A number as a code of fixed width: "07" for 7 and a width of 2.
[[nodiscard]] std::string codeOf(int number, int width);

} // namespace ambrel
