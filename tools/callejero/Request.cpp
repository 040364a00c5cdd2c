// Reads requests.
#include "tools/callejero/Request.h"

#include <algorithm>
#include <string_view>

#include "dbase/dbf/codepage.h"

namespace callejero {
namespace {

constexpr std::string_view contentType = "text/xml; charset=utf-8";
constexpr std::string_view declaration = R"(<?xml version="1.0" encoding="utf-8"?>)";
constexpr std::string_view envelope =
    R"(<soap:Envelope xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    R"( xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/">)";

[[noreturn]] void refuse(const std::string& what, std::string_view expected, std::string_view found) {
    throw WrongRequest(what + ": se esperaba «" + std::string(expected) + "» y ha llegado «" +
                       std::string(found) + "»");
}

Operation operationOf(const std::string& action) {
    for (std::size_t i = 0; i < operationNames.size(); ++i) {
        if (action == '"' + std::string(actionPrefix) + std::string(operationNames.at(i)) + '"') {
            return static_cast<Operation>(i);
        }
    }
    refuse("SOAPAction", '"' + std::string(actionPrefix) + "…\"", action);
}

/// The lines of a body, each ended by a carriage return alone.
class Lines {
public:
    explicit Lines(std::string_view text) : left_(text) {}

    void expect(std::string_view line) {
        const std::string_view found = next();
        if (found != line) {
            refuse(where(), line, found);
        }
    }

    /// The text within an element that stands on a line of its own, indented by four blanks.
    std::string element(const std::string& name) {
        const std::string opening = "    <" + name + " xmlns=\"" + std::string(xmlNamespace) + "\">";
        const std::string closing = "</" + name + ">";
        const std::string_view found = next();
        if (!found.starts_with(opening) || !found.ends_with(closing)) {
            refuse(where(), opening + "…" + closing, found);
        }
        return std::string(found.substr(opening.size(), found.size() - opening.size() - closing.size()));
    }

    void expectEmptyElement(const std::string& name) {
        if (const std::string text = element(name); !text.empty()) {
            refuse(where() + ", " + name, "", text);
        }
    }

    void expectEnd() const {
        if (!left_.empty()) {
            refuse("detrás de la última línea", "", left_);
        }
    }

private:
    std::string_view next() {
        ++number_;
        const std::size_t end = left_.find('\r');
        if (end == std::string_view::npos) {
            throw WrongRequest(where() + ": no acaba en retorno de carro");
        }
        const std::string_view line = left_.substr(0, end);
        left_.remove_prefix(end + 1);
        return line;
    }

    [[nodiscard]] std::string where() const { return "línea " + std::to_string(number_); }

    std::string_view left_;
    int number_ = 0;
};

void readBody(Request& request) {
    Lines lines(request.body);
    lines.expect(declaration);
    lines.expect(envelope);
    lines.expect("  <soap:Body>");
    if (request.operation != Operation::Provinces) {
        request.province = lines.element("Provincia");
        request.municipality = lines.element("Municipio");
    }
    if (request.operation == Operation::Municipalities && !request.municipality.empty()) {
        refuse("Municipio", "", request.municipality);
    }
    if (request.operation == Operation::Streets) {
        lines.expectEmptyElement("TipoVia");
        lines.expectEmptyElement("NombreVia");
    }
    lines.expect("  </soap:Body>");
    lines.expect("</soap:Envelope>");
    lines.expectEnd();
}

} // namespace

Request readRequest(const Received& received) {
    if (received.contentType != contentType) {
        refuse("Content-Type", contentType, received.contentType);
    }
    Request request{.operation = operationOf(received.soapAction), .body = received.body};
    if (std::ranges::find(request.body, '\n') != request.body.end()) {
        throw WrongRequest("el cuerpo tiene saltos de línea: cada línea acaba en un solo retorno de carro");
    }
    // All names come from Windows-1252, so a text beyond it was wrongly converted on its way.
    if (!dbase::CodePage::windows1252().fromUtf8(request.body)) {
        throw WrongRequest("el cuerpo no está en UTF-8");
    }
    readBody(request);
    return request;
}

} // namespace callejero
