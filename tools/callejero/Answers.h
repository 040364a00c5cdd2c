// The answers of the street-directory service, in the form in which it sends them: one line of UTF-8.
#pragma once

#include <string>
#include <vector>

#include "tools/callejero/Operation.h"

namespace callejero {

/// Texts are UTF-8, codes those of the statistics office without leading zeros.
struct Street {
    std::string type, name;
};

struct Municipality {
    std::string name;
    int code = 0; // within the province
    std::vector<Street> streets = {};
};

struct Province {
    std::string name;
    int code = 0;
    std::vector<Municipality> municipalities = {};
};

[[nodiscard]] std::string provincesAnswer(const std::vector<Province>& provinces);
[[nodiscard]] std::string municipalitiesAnswer(const Province& province);
[[nodiscard]] std::string streetsAnswer(const Province& province, const Municipality& municipality);

/// An error of the service, which is an answer like any other.
struct ServiceError {
    int code;
    const char* text;
};

inline constexpr ServiceError serverError{1, "ERROR EN EL SERVIDOR"};
inline constexpr ServiceError provinceNeeded{11, "LA PROVINCIA ES OBLIGATORIA"};
inline constexpr ServiceError noSuchProvince{12, "LA PROVINCIA NO EXISTE"};
inline constexpr ServiceError municipalityNeeded{21, "EL MUNICIPIO ES OBLIGATORIO."};
inline constexpr ServiceError noSuchMunicipality{22, "EL MUNICIPIO NO EXISTE."};
inline constexpr ServiceError noSuchStreet{33, "LA VÍA NO EXISTE"};

[[nodiscard]] std::string errorAnswer(Operation operation, const ServiceError& error);
[[nodiscard]] std::string soapFault(const std::string& text);

/// Names of the elements that hold the number of entries and the entries.
[[nodiscard]] std::string countElement(Operation operation);
[[nodiscard]] std::string listElement(Operation operation);

} // namespace callejero
