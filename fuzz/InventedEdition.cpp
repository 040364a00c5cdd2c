// Names, codes and keys are few, so that they meet.
#include "InventedEdition.h"

#include <array>

#include "tools/edition/OfficialLines.h"

namespace trial {
namespace {

enum File { Stretches, Streets, PseudoStreets, Units };

constexpr std::array<unsigned, 4> places = {9001, 9059, 28079, 1001};
constexpr std::array<unsigned, 6> postalCodes = {9001, 9002, 9215, 1118, 28001, 28002};
constexpr std::array<unsigned, 4> units = {0, 101, 201, 199};
constexpr std::array<const char*, 8> types = {"CALLE", "AVDA", "C", "PLAZA", "", "KALE", "QQQQQ", "CAM"};
constexpr std::array<const char*, 12> names = {"MAYOR",
                                               "DEL MOLINO",
                                               "MOLINO (DEL)",
                                               "CONSTITUCI\xD3N DE MIL NOVECIENTOS SETENTA Y OCHO PRIMA",
                                               "CONSTITUCI\xD3N DE MIL NOVECIENTOS SETENTA Y OCHO PRIMO",
                                               "CONSTITUCION DE MIL NOVECIENTOS SETENTA Y OCHO",
                                               "NUESTRA SE\xD1ORA DE LOS DESAMPARADOS (URBANIZACION",
                                               "NUESTRA SE\xD1ORA DE LOS DESAMPARADOS (URBANIZACIONE",
                                               "A",
                                               "ABAJAS",
                                               "SAN JUAN, LA",
                                               "*DISEMINADO*"};

} // namespace

unsigned Choices::below(unsigned limit) {
    if (bytes_.empty()) {
        return 0;
    }
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte % limit;
}

unsigned Choices::houseNumber() {
    constexpr unsigned small = 200, last = 9999, all = 256;
    const unsigned choice = below(all);
    return choice < small ? choice : last - (all - 1 - choice);
}

unsigned Choices::place() { return places.at(below(places.size())); }
unsigned Choices::postalCode() { return postalCodes.at(below(postalCodes.size())); }

std::string Choices::name() {
    const unsigned choice = below(names.size() + 4);
    if (choice < names.size()) {
        return names.at(choice);
    }
    const std::string_view taken = bytes_.substr(0, below(51));
    bytes_.remove_prefix(std::min(taken.size(), bytes_.size()));
    return std::string(taken);
}

std::string InventedEdition::stretch(Choices& choices) const {
    const unsigned place = choices.place(), key = choices.below(8), first = choices.houseNumber();
    const unsigned last = first == 0 ? 0 : std::min(first + 2 * choices.below(40), 9999U);
    const bool isPseudo = key == 7;
    return edition::lineOf({.place = place,
                            .unit = units.at(choices.below(units.size())),
                            .street = isPseudo ? 0 : key,
                            .pseudo = isPseudo ? 1U : 0U,
                            .postalCode = choices.postalCode(),
                            .numbering = first == 0       ? '0'
                                         : first % 2 == 1 ? '1'
                                                          : '2',
                            .first = first,
                            .last = last,
                            .entity = choices.name(),
                            .nucleus = choices.name(),
                            .streetName = choices.name(),
                            .pseudoName = choices.name()});
}

void InventedEdition::amend(Choices& choices) {
    const unsigned what = choices.below(16);
    if (what < 8) {
        files_[Stretches].push_back(stretch(choices));
    } else if (what < 10) {
        const unsigned place = choices.place(), key = choices.below(8);
        const std::string type = types.at(choices.below(types.size()));
        files_[Streets].push_back(edition::streetLine(place, key, type, choices.name()));
    } else if (what == 10) {
        const unsigned place = choices.place();
        files_[PseudoStreets].push_back(edition::pseudoLine(place, choices.below(3), choices.name()));
    } else if (what == 11) {
        const unsigned place = choices.place(), unit = units.at(choices.below(units.size()));
        const std::string municipality = choices.name(), entity = choices.name();
        files_[Units].push_back(edition::unitLine(place, unit, municipality, entity, choices.name()));
    } else if (Lines& lines = files_.at(choices.below(4)); !lines.empty()) {
        const auto line = lines.begin() + static_cast<std::ptrdiff_t>(choices.below(256) % lines.size());
        if (what < 14) {
            lines.erase(line);
        } else if (what == 14) {
            const std::string twice = *line;
            lines.push_back(twice);
        } else {
            line->at(choices.below(256) % line->size()) = static_cast<char>(choices.below(256));
        }
    }
}

ambrel::directory::EditionFiles InventedEdition::write(Choices& choices) const {
    static const std::array<NamedBytes, 4> named;
    for (std::size_t i = 0; i < named.size(); ++i) {
        std::string text;
        for (const std::string& line : files_.at(i)) {
            text += line + "\r\n";
        }
        named.at(i).put(text);
    }
    ambrel::directory::EditionFiles files{.stretches = named[Stretches].path(),
                                          .streets = named[Streets].path()};
    const unsigned without = choices.below(8);
    if (without != 1 && !files_[PseudoStreets].empty()) {
        files.pseudoStreets = named[PseudoStreets].path();
    }
    if (without != 2 && !files_[Units].empty()) {
        files.units = named[Units].path();
    }
    if (without == 3) {
        files.provinces = {9};
    }
    return files;
}

} // namespace trial
