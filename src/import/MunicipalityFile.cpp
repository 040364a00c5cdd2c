// Reading the lines of municipality files.
#include "import/MunicipalityFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/codepage.h"
#include "import/Trimmed.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr int openOdd = 9999;
constexpr int openEven = 9998;

bool contains(const std::string& text, std::string_view part) {
    return !part.empty() && text.find(part) != std::string::npos;
}

void removeAll(std::string& text, std::string_view part) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
}

/// Text with everything before the first `part` blanked.
void blankBefore(std::string& text, std::string_view part) {
    const std::size_t at = text.find(part);
    text.replace(0, at, at, ' ');
}

int leadingNumber(const std::string& text) {
    return Cad_Int(text.substr(0, text.find_first_not_of("0123456789")));
}

/// A group's bounds, from its text without brackets and opening words.
void readGroup(std::string group, int open, int& first, int& last) {
    first = leadingNumber(group);
    if (contains(group, "FINAL")) {
        last = open;
        return;
    }
    if (contains(group, "AL")) {
        blankBefore(group, "AL");
        removeAll(group, "AL");
        group = std::string(trimmed(group));
    }
    last = leadingNumber(group);
}

std::string withoutBrackets(std::string group, std::string_view plural, std::string_view singular) {
    for (const std::string_view word : {plural, singular, std::string_view("("), std::string_view(")")})
        removeAll(group, word);
    return std::string(trimmed(group));
}

bool isLowerCase(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return dbase::CodePage::windows1252().upper(byte) != byte;
}

/// Takes the types that stand behind commas off the line, from its end, and returns their code.
/// Deliberate: a comma begins a type only when a lower-case letter stands two places behind it, and a second
/// one takes the code found so far along as part of its name.
std::string takeType(std::string& line, const StreetTypeCode& typeCode) {
    std::string type;
    for (std::size_t i = line.size(); i-- > 0;) {
        if (line[i] != ',' || i + 2 >= line.size() || !isLowerCase(line[i + 2]))
            continue;
        type = typeCode(UpperCase(trimmed(type + line.substr(i + 1))));
        line.resize(i);
    }
    return type;
}

constexpr std::array<std::pair<std::string_view, std::string_view>, 9> knownTypes{{
    {"PLACETA", "PZ"},
    {"PLAZUELA", "PZ"},
    {"CALLEJUELA", "CJ"},
    {"PUERTA", "ED"},
    {"PALACIO", "ED"},
    {"CERRO", "MT"},
    {"CAMINO VIEJO", "CM"},
    {"TRANSVERSAL", "TR"},
    {"RESIDENCIAL", "UR"},
}};

std::string codeInTable(const std::string& database, const std::string& name) {
    const auto types = CreaTabla(database, "TIPO_VIA.DBF", "NOMBRE", false, openNow);
    dbase::Field& code = types->field("CODIGO");
    dbase::Field& typeName = types->field("NOMBRE");
    if (TBBusca(*types, {{"NOMBRE", name}}, exactSearch))
        return code.text();
    if (types->isEmpty())
        return {};
    types->first();
    do
        if (contains(typeName.text(), name) && !code.isNull())
            return code.text();
    while (types->next());
    return {};
}

} // namespace

void ExtraeNumeracion(const std::string& text, int& oddFirst, int& oddLast, int& evenFirst, int& evenLast) {
    const std::size_t open = text.find('(');
    if (open == std::string::npos)
        return;
    std::string rest(trimmed(std::string_view(text).substr(open)));
    if (contains(rest, "IMPAR")) {
        std::string odd;
        // Deliberate: an odd group without its closing bracket is left for the even one, whose word it
        // contains.
        if (const std::size_t close = rest.find(')'); close != std::string::npos) {
            odd = std::string(trimmed(std::string_view(rest).substr(0, close + 1)));
            rest = std::string(trimmed(std::string_view(rest).substr(close + 1)));
        }
        readGroup(withoutBrackets(odd, "IMPARES DEL", "IMPAR DEL"), openOdd, oddFirst, oddLast);
    }
    if (contains(rest, "PAR")) {
        blankBefore(rest, "PAR");
        readGroup(withoutBrackets(rest, "PARES DEL", "PAR DEL"), openEven, evenFirst, evenLast);
    }
}

std::string ExtraeTipoVia(const std::string& database, const std::string& name) {
    const std::string wanted(trimmed(std::string_view(name).substr(0, name.find('('))));
    if (std::string code = codeInTable(database, wanted); !code.empty())
        return code;
    for (const auto& [known, code] : knownTypes)
        if (known == wanted)
            return std::string(code);
    return {};
}

ImportedStreet readMunicipalityLine(std::string_view line, const StreetTypeCode& typeCode) {
    ImportedStreet street;
    std::string text(trimmed(line));
    ExtraeNumeracion(UpperCase(text), street.oddFirst, street.oddLast, street.evenFirst, street.evenLast);
    street.type = takeType(text, typeCode);
    const bool hasNumbers = street.oddFirst || street.oddLast || street.evenFirst || street.evenLast;
    if (hasNumbers)
        text.resize(std::min(text.find('('), text.size()));
    text = std::string(trimmed(text));
    if (const std::size_t colon = text.find(':'); colon != std::string::npos) {
        street.postalCode = text.substr(0, colon);
        text = std::string(trimmed(std::string_view(text).substr(colon + 1)));
    }
    street.name = text.substr(0, streetNameWidth);
    return street;
}

} // namespace ambrel
