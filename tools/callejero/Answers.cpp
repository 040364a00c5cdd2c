// Writes the answers.
#include "tools/callejero/Answers.h"

#include <array>

namespace callejero {
namespace {

/// The elements of an operation's answer, from the outside in.
struct Shape {
    const char *answer, *result, *count, *list;
};

const Shape& shapeOf(Operation operation) {
    static constexpr std::array<Shape, 3> shapes{{
        {"Provincias", "consulta_provinciero", "cuprov", "provinciero"},
        {"Municipios", "consulta_municipiero", "cumun", "municipiero"},
        {"Callejero", "consulta_callejero", "cuca", "callejero"},
    }};
    return shapes.at(static_cast<std::size_t>(operation));
}

std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string inEnvelope(const std::string& content) {
    return R"(<?xml version="1.0" encoding="utf-8"?>)"
           R"(<soap:Envelope xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/")"
           R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
           R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema"><soap:Body>)" +
           content + "</soap:Body></soap:Envelope>";
}

std::string inShape(Operation operation, const std::string& content) {
    const auto open = [](const std::string& name) {
        return "<" + name + " xmlns=\"" + std::string(xmlNamespace) + "\">";
    };
    const Shape& shape = shapeOf(operation);
    return inEnvelope(open(shape.answer) + open(shape.result) + content + "</" + shape.result + "></" +
                      shape.answer + ">");
}

template<class Entries, class Write>
std::string listAnswer(Operation operation, const Entries& entries, Write write) {
    std::string list;
    for (const auto& entry : entries) {
        list += write(entry);
    }
    return inShape(operation,
                   element("control", element(countElement(operation), std::to_string(entries.size()))) +
                       element(listElement(operation), list));
}

std::string twoDigits(int code) { return (code < 10 ? "0" : "") + std::to_string(code); }

std::string codes(const std::string& group, const char* first, int province, const char* second, int own) {
    return element(group, element(first, std::to_string(province)) + element(second, std::to_string(own)));
}

} // namespace

std::string countElement(Operation operation) { return shapeOf(operation).count; }

std::string listElement(Operation operation) { return shapeOf(operation).list; }

std::string provincesAnswer(const std::vector<Province>& provinces) {
    return listAnswer(Operation::Provinces, provinces, [](const Province& province) {
        return element("prov",
                       element("cpine", twoDigits(province.code)) + element("np", escaped(province.name)));
    });
}

std::string municipalitiesAnswer(const Province& province) {
    return listAnswer(
        Operation::Municipalities, province.municipalities, [&](const Municipality& municipality) {
            return element("muni", element("nm", escaped(municipality.name)) +
                                       codes("locat", "cd", province.code, "cmc", municipality.code) +
                                       codes("loine", "cp", province.code, "cm", municipality.code));
        });
}

std::string streetsAnswer(const Province& province, const Municipality& municipality) {
    int number = 0;
    return listAnswer(Operation::Streets, municipality.streets, [&](const Street& street) {
        return element("calle", codes("loine", "cp", province.code, "cm", municipality.code) +
                                    element("dir", element("cv", std::to_string(++number)) +
                                                       element("tv", escaped(street.type)) +
                                                       element("nv", escaped(street.name))));
    });
}

std::string errorAnswer(Operation operation, const ServiceError& error) {
    return inShape(operation, element("control", element("cuerr", "1")) +
                                  element("lerr", element("err", element("cod", std::to_string(error.code)) +
                                                                     element("des", error.text))));
}

std::string soapFault(const std::string& text) {
    return inEnvelope(element("soap:Fault", element("faultcode", "soap:Server") +
                                                element("faultstring", escaped(text)) + "<detail />"));
}

} // namespace callejero
