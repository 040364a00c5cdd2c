// The requests to the street-directory service, as sent.
#pragma once

#include <string>

namespace ambrel {

/// Address to which all operations are posted, on the configured server.
[[nodiscard]] std::string directoryUrl();

/// Value of the SOAPAction header of an operation: "ConsultaProvincia", "ConsultaMunicipio", "ConsultaVia".
[[nodiscard]] std::string soapAction(const std::string& operation);

/// Whole request texts in Windows-1252, each line ended by a single carriage return. Names are inserted
/// unchanged.
[[nodiscard]] std::string provincesRequest();
[[nodiscard]] std::string municipalitiesRequest(const std::string& province);
[[nodiscard]] std::string streetsRequest(const std::string& province, const std::string& municipality);

} // namespace ambrel
