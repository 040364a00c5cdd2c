// Faults: their names and their effect on an answer.
#include "tools/callejero/Fault.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "tools/callejero/Answers.h"

namespace callejero {
namespace {

struct NamedFault {
    std::string_view name;
    Fault fault;
    std::string_view explanation;
};

constexpr std::array<NamedFault, 21> names{{
    {"rechaza", Fault::Refuse, "se corta la conexión, sin un solo byte"},
    {"calla", Fault::Stall, "nada, hasta que el programa se cansa"},
    {"se-para", Fault::StallMidway, "la mitad, y luego nada"},
    {"corta", Fault::Cut, "la mitad de lo anunciado"},
    {"corta-trozos", Fault::CutChunked, "la mitad, sin anunciar cuánto era"},
    {"500", Fault::Status500, "el estado 500 y una línea de texto"},
    {"redirige", Fault::Redirection, "el estado 302, que no lleva a ninguna parte"},
    {"fallo-soap", Fault::SoapFault, "un fallo SOAP con el estado 500"},
    {"fallo-soap-200", Fault::SoapFaultOk, "un fallo SOAP con el estado 200"},
    {"error", Fault::ErrorAnswer, "una respuesta que dice que no existe la provincia"},
    {"cuenta-de-mas", Fault::MoreCounted, "un elemento más en la cuenta que en la lista"},
    {"cuenta-de-menos", Fault::FewerCounted, "un elemento menos"},
    {"sin-cuenta", Fault::NoCount, "la lista sin la cuenta"},
    {"cuenta-mala", Fault::BadCount, "una cuenta que no es un número"},
    {"sin-lista", Fault::NoEntries, "la cuenta sin la lista"},
    {"declara-latin1", Fault::OtherCoding, "la respuesta, en UTF-8, que dice ir en ISO-8859-1"},
    {"vacia", Fault::EmptyBody, "el estado 200 y nada más"},
    {"basura", Fault::Garbage, "bytes que no son XML"},
    {"html", Fault::HtmlPage, "una página para personas"},
    {"enorme", Fault::Huge, "1 GiB, anunciado"},
    {"enorme-trozos", Fault::HugeChunked, "1 GiB, sin anunciar cuánto es"},
}};

constexpr std::string_view everyOperation = "todo";

/// Position and length of the text between an element's tags, or including them.
std::pair<std::size_t, std::size_t> extentOf(const std::string& answer, const std::string& element,
                                             bool withTags) {
    const std::string opening = "<" + element + ">", closing = "</" + element + ">";
    const std::size_t begin = answer.find(opening), end = answer.find(closing);
    if (begin == std::string::npos || end == std::string::npos) {
        return {answer.size(), 0};
    }
    return withTags ? std::pair(begin, end + closing.size() - begin)
                    : std::pair(begin + opening.size(), end - begin - opening.size());
}

std::string withCount(std::string answer, Operation operation, int difference) {
    const auto [begin, size] = extentOf(answer, countElement(operation), false);
    if (size > 0) {
        answer.replace(begin, size, std::to_string(std::stoi(answer.substr(begin, size)) + difference));
    }
    return answer;
}

std::string without(std::string answer, const std::string& element) {
    const auto [begin, size] = extentOf(answer, element, true);
    return answer.erase(begin, size);
}

std::string withoutNumber(std::string answer, Operation operation) {
    const auto [begin, size] = extentOf(answer, countElement(operation), false);
    return answer.replace(begin, size, "muchas");
}

std::string declaringLatin1(std::string answer) {
    constexpr std::string_view declared = R"(encoding="utf-8")";
    if (const std::size_t at = answer.find(declared); at != std::string::npos) {
        answer.replace(at, declared.size(), R"(encoding="ISO-8859-1")");
    }
    return answer;
}

} // namespace

std::optional<Fault> faultNamed(std::string_view name) {
    const auto found = std::ranges::find(names, name, &NamedFault::name);
    return found == names.end() ? std::nullopt : std::optional(found->fault);
}

std::string faultNames() {
    std::string text;
    for (const NamedFault& named : names) {
        (text += text.empty() ? "" : ", ") += named.name;
    }
    return text;
}

std::string faultExplanations() {
    constexpr std::size_t indent = 18;
    std::string text;
    for (const NamedFault& named : names) {
        text += "  " + std::string(named.name);
        text.append(indent - 2 - named.name.size(), ' ');
        text += std::string(named.explanation) + '\n';
    }
    return text;
}

FaultRule readFaultRule(std::string_view text) {
    const std::size_t equals = text.rfind('=');
    if (equals == std::string_view::npos) {
        throw std::invalid_argument("«" + std::string(text) + "» no tiene la forma operación=modo");
    }
    FaultRule rule;
    const std::string_view mode = text.substr(equals + 1);
    const auto fault = faultNamed(mode);
    if (!fault) {
        throw std::invalid_argument("no hay modo «" + std::string(mode) + "»; los que hay: " + faultNames());
    }
    rule.fault = *fault;
    std::string_view operation = text.substr(0, equals);
    if (const std::size_t colon = operation.find(':'); colon != std::string_view::npos) {
        rule.name = operation.substr(colon + 1);
        operation = operation.substr(0, colon);
    }
    if (operation == everyOperation) {
        return rule;
    }
    const auto found = std::ranges::find(operationNames, operation);
    if (found == operationNames.end()) {
        throw std::invalid_argument(
            "no hay operación «" + std::string(operation) +
            "»; las que hay: ConsultaProvincia, ConsultaMunicipio, ConsultaVia, todo");
    }
    rule.operation = static_cast<Operation>(found - operationNames.begin());
    return rule;
}

std::string spoil(std::string answer, Operation operation, Fault fault) {
    switch (fault) {
    case Fault::SoapFault:
    case Fault::SoapFaultOk:
        return soapFault("El servidor no puede procesar la petición.");
    case Fault::ErrorAnswer:
        return errorAnswer(operation, noSuchProvince);
    case Fault::MoreCounted:
        return withCount(std::move(answer), operation, +1);
    case Fault::FewerCounted:
        return withCount(std::move(answer), operation, -1);
    case Fault::NoCount:
        return without(std::move(answer), countElement(operation));
    case Fault::BadCount:
        return withoutNumber(std::move(answer), operation);
    case Fault::NoEntries:
        return without(std::move(answer), listElement(operation));
    case Fault::Status500:
        return "Error interno del servidor.";
    case Fault::OtherCoding:
        return declaringLatin1(std::move(answer));
    case Fault::Redirection:
    case Fault::EmptyBody:
        return {};
    case Fault::Garbage:
        return std::string("\x1F\x8B\x08\0<<&\xFF\xFE no es XML", 19);
    case Fault::HtmlPage:
        return "<!DOCTYPE html><html><head><title>Acceso a la red</title></head>"
               "<body><p>Acepte las condiciones.</p></body></html>";
    case Fault::None:
    case Fault::Refuse:
    case Fault::Stall:
    case Fault::StallMidway:
    case Fault::Cut:
    case Fault::CutChunked:
    case Fault::Huge:
    case Fault::HugeChunked:
        break;
    }
    return answer;
}

} // namespace callejero
