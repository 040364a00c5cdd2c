// The three operations of the street-directory service.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace callejero {

enum class Operation { Provinces, Municipalities, Streets };

inline constexpr std::array<std::string_view, 3> operationNames{"ConsultaProvincia", "ConsultaMunicipio",
                                                                "ConsultaVia"};

[[nodiscard]] inline std::string nameOf(Operation operation) {
    return std::string(operationNames.at(static_cast<std::size_t>(operation)));
}

/// Namespace of every element of requests and answers, and beginning of every SOAP action.
inline constexpr std::string_view xmlNamespace = "http://www.catastro.meh.es/";
inline constexpr std::string_view actionPrefix = "http://tempuri.org/OVCServWeb/OVCCallejero/";
inline constexpr std::string_view servicePath = "/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx";

} // namespace callejero
