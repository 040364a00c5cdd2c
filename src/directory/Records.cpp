// Taking the lines of the official files apart.
#include "directory/Records.h"

#include <cstring>

#include "dbase/system/bytes.h"

namespace ambrel::directory {
namespace {

constexpr unsigned provinceCount = 52;

bool isOfProvince(std::optional<unsigned> code) {
    return code && *code / 1000 >= 1 && *code / 1000 <= provinceCount;
}

/// Writing in UTF-8 moves all columns after the first letter that ISO-8859-1 has and ASCII lacks.
bool looksLikeUtf8(std::string_view text) {
    for (const char lead : {'\xC2', '\xC3'}) {
        for (std::size_t at = text.find(lead); at < text.size(); at = text.find(lead, at + 1)) {
            if (at + 1 < text.size() && (static_cast<unsigned char>(text[at + 1]) & 0xC0U) == 0x80U) {
                return true;
            }
        }
    }
    return false;
}

struct Signs {
    bool areAscii, areText; // areText: none is below the blank
};

/// A word at a time.
Signs signsOf(std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080, blanks = 0x2020202020202020;
    std::uint64_t all = 0, below = 0;
    const auto look = [&](std::uint64_t word) {
        all |= word;
        below |= (word - blanks) & ~word; // one below the blank borrows
    };
    for (; text.size() >= sizeof blanks; text.remove_prefix(sizeof blanks)) {
        look(dbase::load64(text.data()));
    }
    std::uint64_t rest = blanks;
    if (!text.empty()) {
        std::memcpy(&rest, text.data(), text.size());
    }
    look(rest);
    return {(all & highBits) == 0, (below & highBits) == 0};
}

Refusal refusalOfText(std::string_view text) {
    const Signs signs = signsOf(text);
    if (!signs.areText) {
        return "el nombre lleva signos que no son texto";
    }
    return !signs.areAscii && looksLikeUtf8(text)
               ? "parece escrita en UTF-8; los ficheros están en ISO-8859-1"
               : nullptr;
}

Refusal readPlace(const FixedLine& line, PlaceCode& place) {
    const std::optional<unsigned> code = line.number(1, 5);
    if (!isOfProvince(code)) {
        return "no empieza por una provincia y un municipio";
    }
    place = *code;
    return nullptr;
}

Refusal readKey(const FixedLine& line, std::uint32_t& key) {
    const std::optional<unsigned> number = line.number(6, 10);
    if (!number || *number == 0) {
        return "la clave no es un número de cinco cifras";
    }
    key = *number;
    return nullptr;
}

Refusal readNumbers(const FixedLine& line, StretchLine& stretch) {
    const std::optional<unsigned> numbering = line.number(48, 48);
    if (!numbering || *numbering > 2) {
        return "el tipo de numeración no es 0, 1 ni 2";
    }
    stretch.firstLetter = line.sign(53);
    stretch.lastLetter = line.sign(58);
    stretch.numbering = Numbering{static_cast<std::uint8_t>(*numbering)};
    stretch.first = stretch.last = 0;
    if (stretch.numbering == Numbering::None) {
        return nullptr;
    }
    const std::optional<unsigned> first = line.number(49, 52), last = line.number(54, 57);
    if (!first || !last) {
        return "un número del tramo no son cuatro cifras";
    }
    if (*first == 0 && *last == 0) {
        stretch.numbering = Numbering::None;
        return nullptr;
    }
    const unsigned parity = stretch.numbering == Numbering::Odd ? 1 : 0;
    if (*first % 2 != parity || *last % 2 != parity || *first == 0) {
        return "los números del tramo no son de su lado, pares o impares";
    }
    if (*first > *last) {
        return "el último número del tramo es menor que el primero";
    }
    stretch.first = static_cast<std::uint16_t>(*first);
    stretch.last = static_cast<std::uint16_t>(*last);
    return nullptr;
}

/// The name in columns, or else the one in others.
std::string_view textOr(const FixedLine& line, std::size_t first, std::size_t last, std::size_t otherFirst,
                        std::size_t otherLast) {
    const std::string_view text = line.text(first, last);
    return text.empty() ? line.text(otherFirst, otherLast) : text;
}

/// The first refusal among several texts.
Refusal refusalOfTexts(std::initializer_list<std::string_view> texts) {
    for (const std::string_view text : texts) {
        if (const Refusal refusal = refusalOfText(text)) {
            return refusal;
        }
    }
    return nullptr;
}

} // namespace

Refusal read(const FixedLine& line, StretchLine& stretch) {
    if (const Refusal refusal = readPlace(line, stretch.place)) {
        return refusal;
    }
    const std::optional<unsigned> unit = line.number(14, 20), street = line.number(21, 25),
                                  pseudo = line.number(26, 30), postalCode = line.number(43, 47);
    if (!unit || !street || !pseudo) {
        return "las claves de unidad, vía o seudovía no son números";
    }
    if (*street == 0 && *pseudo == 0) {
        return "no es de ninguna vía ni seudovía";
    }
    if (!isOfProvince(postalCode) || *postalCode % 1000 == 0) {
        return "no tiene un código postal";
    }
    stretch.unit = *unit;
    stretch.street = *street;
    stretch.pseudo = *street == 0 ? *pseudo : 0;
    stretch.postalCode = *postalCode;
    if (const Refusal refusal = readNumbers(line, stretch)) {
        return refusal;
    }
    stretch.line = line;
    return refusalOfText(line.raw(86, 245));
}

Refusal read(const FixedLine& line, bool repeatsName, StreetLine& street) {
    if (const Refusal refusal = readPlace(line, street.place)) {
        return refusal;
    }
    if (const Refusal refusal = readKey(line, street.street)) {
        return refusal;
    }
    street.type = repeatsName ? line.text(53, 57) : line.text(28, 32);
    street.name = repeatsName ? textOr(line, 58, 107, 108, 132) : textOr(line, 34, 83, 84, 108);
    if (street.name.empty()) {
        return "la vía no tiene nombre";
    }
    return refusalOfTexts({street.type, street.name});
}

Refusal read(const FixedLine& line, bool repeatsName, PseudoLine& pseudo) {
    if (const Refusal refusal = readPlace(line, pseudo.place)) {
        return refusal;
    }
    if (const Refusal refusal = readKey(line, pseudo.pseudo)) {
        return refusal;
    }
    pseudo.name = repeatsName ? textOr(line, 78, 127, 11, 60) : line.text(28, 77);
    if (pseudo.name.empty()) {
        return "la seudovía no tiene nombre";
    }
    return refusalOfText(pseudo.name);
}

Refusal read(const FixedLine& line, UnitLine& unit) {
    if (const Refusal refusal = readPlace(line, unit.place)) {
        return refusal;
    }
    const std::optional<unsigned> code = line.number(6, 12);
    if (!code) {
        return "la clave de la unidad no son siete cifras";
    }
    unit.unit = *code;
    unit.municipality = textOr(line, 95, 144, 25, 94);
    unit.entity = textOr(line, 385, 434, 315, 384);
    unit.nucleus = textOr(line, 530, 579, 460, 529);
    if (unit.municipality.empty()) {
        return "la unidad no nombra su municipio";
    }
    return refusalOfTexts({unit.municipality, unit.entity, unit.nucleus});
}

Refusal read(const FixedLine& line, SectionLine& section) {
    if (const Refusal refusal = readPlace(line, section.place)) {
        return refusal;
    }
    return line.hasDigits(6, 10) ? nullptr : "el distrito y la sección no son números";
}

} // namespace ambrel::directory
