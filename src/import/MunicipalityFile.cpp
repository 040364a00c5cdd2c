// Reads the lines of municipality files.
#include "import/MunicipalityFile.h"

#include <algorithm>

#include "controller/NumberRange.h"
#include "data/TableDefinitions.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/trim.h"
#include "services/Rnumcad.h"

namespace ambrel {
namespace {

constexpr std::size_t longestCode = 45; // characters shown; five of them are stored

bool contains(const std::string& text, std::string_view part) {
    return !part.empty() && text.find(part) != std::string::npos;
}

void removeAll(std::string& text, std::string_view part) {
    std::size_t from = 0, kept = 0;
    while (from < text.size()) {
        const std::size_t end = std::min(text.find(part, from), text.size());
        std::copy(text.begin() + static_cast<std::ptrdiff_t>(from),
                  text.begin() + static_cast<std::ptrdiff_t>(end),
                  text.begin() + static_cast<std::ptrdiff_t>(kept));
        kept += end - from;
        from = end + part.size();
    }
    text.resize(kept);
}

/// Blanks everything before the first `part`.
void blankBefore(std::string& text, std::string_view part) {
    const std::size_t at = text.find(part);
    text.replace(0, at, at, ' ');
}

int leadingNumber(const std::string& text) {
    return Cad_Int(text.substr(0, text.find_first_not_of("0123456789")));
}

/// Reads a group's bounds from its text without brackets and opening words.
void readGroup(std::string group, int open, int& first, int& last) {
    first = leadingNumber(group);
    if (contains(group, "FINAL")) {
        last = open;
        return;
    }
    if (contains(group, "AL")) {
        blankBefore(group, "AL");
        removeAll(group, "AL");
        group = std::string(dbase::trimmedLine(group));
    }
    last = leadingNumber(group);
}

std::string withoutBrackets(std::string group, std::string_view plural, std::string_view singular) {
    for (const std::string_view word : {plural, singular, std::string_view("("), std::string_view(")")}) {
        removeAll(group, word);
    }
    return std::string(dbase::trimmedLine(group));
}

bool isLowerCase(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return dbase::CodePage::windows1252().upper(byte) != byte;
}

/// Removes the types that follow commas from the line, starting at its end, and returns their code.
/// Deliberate: a comma starts a type only if the second character after it is a lower-case letter, and a
/// second such comma takes the code found so far as part of its name.
std::string takeType(std::string& line, const StreetTypeCode& typeCode) {
    std::string type;
    for (std::size_t i = line.size(); i-- > 0;) {
        if (line[i] != ',' || i + 2 >= line.size() || !isLowerCase(line[i + 2])) {
            continue;
        }
        type = typeCode(UpperCase(dbase::trimmedLine(type + line.substr(i + 1))));
        line.resize(i);
    }
    return type;
}

} // namespace

void ExtraeNumeracion(const std::string& text, int& oddFirst, int& oddLast, int& evenFirst, int& evenLast) {
    const std::size_t open = text.find('(');
    if (open == std::string::npos) {
        return;
    }
    std::string rest(dbase::trimmedLine(std::string_view(text).substr(open)));
    if (contains(rest, "IMPAR")) {
        std::string odd;
        // Deliberate: an odd group without its closing bracket is left to be read as the even one, whose word
        // it contains.
        if (const std::size_t close = rest.find(')'); close != std::string::npos) {
            odd = std::string(dbase::trimmedLine(std::string_view(rest).substr(0, close + 1)));
            rest = std::string(dbase::trimmedLine(std::string_view(rest).substr(close + 1)));
        }
        readGroup(withoutBrackets(odd, "IMPARES DEL", "IMPAR DEL"), wholeStreet.odd.last, oddFirst, oddLast);
    }
    if (contains(rest, "PAR")) {
        blankBefore(rest, "PAR");
        readGroup(withoutBrackets(rest, "PARES DEL", "PAR DEL"), wholeStreet.even.last, evenFirst, evenLast);
    }
}

ImportedStreet readMunicipalityLine(std::string_view line, const StreetTypeCode& typeCode) {
    ImportedStreet street;
    std::string text(dbase::trimmedLine(line));
    ExtraeNumeracion(UpperCase(text), street.oddFirst, street.oddLast, street.evenFirst, street.evenLast);
    street.type = takeType(text, typeCode);
    const bool hasNumbers = street.oddFirst || street.oddLast || street.evenFirst || street.evenLast;
    if (hasNumbers) {
        text.resize(std::min(text.find('('), text.size()));
    }
    text = std::string(dbase::trimmedLine(text));
    if (const std::size_t colon = text.find(':'); colon != std::string::npos) {
        street.postalCode = text.substr(0, std::min(colon, longestCode));
        text = std::string(dbase::trimmedLine(std::string_view(text).substr(colon + 1)));
    }
    street.name = text.substr(0, streetNameWidth);
    return street;
}

std::vector<ImportedStreet> readMunicipalityText(std::string_view text, const StreetTypeCode& typeCode) {
    if (text.size() > largestMunicipalityFile ||
        static_cast<std::size_t>(std::ranges::count(text, '\n')) > mostMunicipalityLines) {
        throw MunicipalityFileError("El fichero es demasiado grande para las vías de un municipio");
    }
    std::vector<ImportedStreet> streets;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        streets.push_back(readMunicipalityLine(text.substr(0, end), typeCode));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return streets;
}

} // namespace ambrel
