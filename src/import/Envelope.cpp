// Composes the requests to the street-directory service.
#include "import/Envelope.h"

#include <initializer_list>
#include <string_view>

#include "services/Confamb.h"

namespace ambrel {
namespace {

// Deliberate: a carriage return alone ends each line.
constexpr char lineEnd = '\r';

std::string envelope(std::initializer_list<std::string> bodyLines) {
    std::string text;
    const auto add = [&text](const std::string& line) { (text += line) += lineEnd; };
    add(R"(<?xml version="1.0" encoding="utf-8"?>)");
    add(R"(<soap:Envelope xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
        R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
        R"( xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/">)");
    add("  <soap:Body>");
    // Deliberate: the parameters are directly in the body; only the SOAP action names the operation.
    for (const std::string& line : bodyLines) {
        add("    " + line);
    }
    add("  </soap:Body>");
    add("</soap:Envelope>");
    return text;
}

/// Deliberate: the value is inserted as it is, not escaped.
std::string element(const std::string& name, const std::string& value) {
    return "<" + name + " xmlns=\"" + Config.directoryService.xmlNamespace + "\">" + value + "</" + name +
           ">";
}

/// Appends a path to an address, which may end with a slash or not.
std::string below(std::string_view address, const std::string& path) {
    while (address.ends_with('/')) {
        address.remove_suffix(1);
    }
    return std::string(address) + path;
}

} // namespace

std::string directoryUrl() {
    return below(Config.directoryService.server, "/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx");
}

std::string soapAction(const std::string& operation) {
    return below(Config.directoryService.actionPrefix, "/OVCServWeb/OVCCallejero/" + operation);
}

std::string provincesRequest() { return envelope({}); }

std::string municipalitiesRequest(const std::string& province) {
    return envelope({element("Provincia", province), element("Municipio", {})});
}

std::string streetsRequest(const std::string& province, const std::string& municipality) {
    return envelope({element("Provincia", province), element("Municipio", municipality),
                     element("TipoVia", {}), element("NombreVia", {})});
}

} // namespace ambrel
