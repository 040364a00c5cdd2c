// The requests of the street-directory service, as they are sent.
#pragma once

#include <string>

namespace ambrel {

/// Address that all operations are posted to, by the configuration's server.
[[nodiscard]] std::string directoryUrl();

/// Value of the SOAPAction header of an operation: "ConsultaProvincia", "ConsultaMunicipio", "ConsultaVia".
[[nodiscard]] std::string soapAction(const std::string& operation);

/// Whole request texts in Windows-1252, every line ended by a single carriage return. Names go in as they
/// are.
[[nodiscard]] std::string provincesRequest();
[[nodiscard]] std::string municipalitiesRequest(const std::string& province);
[[nodiscard]] std::string streetsRequest(const std::string& province, const std::string& municipality);

} // namespace ambrel
