// Makes streets up from a fixed sequence of numbers.
#include "tools/edition/OfficialEdition.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/Dice.h"

namespace edition {
namespace {

using invented::Dice;

using Words = std::array<const char*, 32>;
// Windows-1252: \xD1 is Ñ, \xC7 is Ç.
constexpr Words wholeNames = {"MAYOR",
                              "REAL",
                              "NUEVA",
                              "IGLESIA",
                              "FUENTE",
                              "SOL",
                              "CONSTITUCION",
                              "ESPA\xD1"
                              "A",
                              "HORNO",
                              "MOLINO",
                              "ERAS",
                              "OLMO",
                              "PARRA",
                              "CALVARIO",
                              "CASTILLO",
                              "POZO",
                              "ANCHA",
                              "ALTA",
                              "BAJA",
                              "ESTRECHA",
                              "CRUZ",
                              "SAN ROQUE",
                              "SANTA ANA",
                              "ROSARIO",
                              "MERCADO",
                              "ESCUELAS",
                              "AYUNTAMIENTO",
                              "1 DE MAYO",
                              "2 DE MAYO",
                              "NORTE",
                              "SUR",
                              "CA\xD1"
                              "ADA"};
constexpr Words firstWords = {
    "DOCTOR",    "PINTOR",    "MAESTRO",    "POETA",   "CAPITAN",     "ALCALDE",  "VIRGEN DE", "SANTO",
    "FUENTE DE", "CUESTA DE", "CASAS DE",   "MONTE",   "SIERRA DE",   "RIO",      "PUERTO DE", "ARROYO DE",
    "HERMANOS",  "CONDE DE",  "MARQUES DE", "OBISPO",  "FRAY",        "SOR",      "PARQUE DE", "BATALLA DE",
    "MINISTRO",  "GENERAL",   "ISLA DE",    "LAGO DE", "CASTILLO DE", "TORRE DE", "ERMITA DE", "PRADO DE"};
constexpr Words lastWords = {"ALBARES",
                             "BENIFLOR",
                             "CARDE\xD1"
                             "OSO",
                             "DURANZA",
                             "ESPARTAL",
                             "FRESNILLO",
                             "GUALDA",
                             "HINOJAR",
                             "IZNAMAR",
                             "JARALES",
                             "LENTISCO",
                             "MADRO\xD1"
                             "AL",
                             "NAVASECA",
                             "ORTIGAL",
                             "PEDROSA",
                             "QUEBRADA",
                             "ROBLEDAL",
                             "SAUCEDA",
                             "TEJARES",
                             "URBIA",
                             "VALDELUZ",
                             "XARAL",
                             "YESARES",
                             "ZARZAL",
                             "ABEJERA",
                             "BARDALES",
                             "COL\xC7"
                             "ADA",
                             "DEHESON",
                             "ENCINAR",
                             "FONTANAR",
                             "GALAPAGAR",
                             "HERRERIAS"};
constexpr std::array castilianTypes = {"CALLE", "CALLE", "CALLE", "CALLE", "CALLE", "AVDA", "PLAZA", "PASEO",
                                       "CMNO",  "CTRA",  "TRVA",  "RONDA", "PJE",   "URB",  "LUGAR", "BARRO"};
constexpr std::array catalanTypes = {"CARRE",
                                     "CARRE",
                                     "C",
                                     "AVGDA",
                                     "PLA\xC7"
                                     "A",
                                     "PASSE",
                                     "PTGE",
                                     "RAMBL"};
constexpr std::array basqueTypes = {"KALE", "KALE", "ETORB", "PLAZA"};

const char* typeIn(std::uint32_t place, Dice& dice) {
    if (dice.oneIn(400)) {
        return "QQQQQ"; // nobody knows what it is
    }
    switch (place / 1000) {
    case 7:
    case 8:
    case 17:
    case 25:
    case 43:
        return dice.among(catalanTypes);
    case 1:
    case 20:
    case 48:
        return dice.among(basqueTypes);
    default:
        return dice.oneIn(200) ? "" : dice.among(castilianTypes);
    }
}

std::string nameOf(std::uint32_t number, Dice& dice) {
    if (number < wholeNames.size()) {
        return wholeNames[number];
    }
    const std::string last = dice.among(lastWords);
    std::string name = std::string(dice.among(firstWords)) + ' ' + last;
    if (dice.oneIn(3)) {
        name += std::string(" Y ") + dice.among(lastWords);
    }
    if (dice.oneIn(50)) { // as long as the column, and alike but for its end
        name = "NUESTRA SE\xD1"
               "ORA DE LA VIRGEN DE LOS DESAMPARADOS DE ";
        name = name.substr(0, 46) + std::to_string(1000 + number % 9000);
    }
    return name.substr(0, 50);
}

class StreetMaker {
public:
    StreetMaker(const Place& place, const Options& options, Dice& dice)
        : place_(place), options_(options), dice_(dice) {}

    Street make(std::uint32_t number, std::uint32_t units) {
        Street street;
        street.place = &place_;
        street.key = number + 1;
        street.isPseudo = dice_.oneIn(12);
        street.isListed = !dice_.oneIn(1000);
        const std::uint32_t unit = dice_.roll(units);
        street.unit = (unit + 1) * 1000 + (street.isPseudo ? 99 : 1);
        street.entity = unit == 0 ? place_.name.substr(0, 25)
                                  : "ALDEA DE " + std::string(lastWords[unit % lastWords.size()]);
        street.type = street.isPseudo ? "" : typeIn(place_.code, dice_);
        // In villages of one municipality there is a street of one name in each.
        street.name = street.isPseudo
                          ? "FINCA " + std::string(dice_.among(lastWords)) + " KM " + std::to_string(number)
                          : nameOf(units > 1 && dice_.oneIn(10) ? number % 4 : number, dice_);
        makeSides(street);
        return street;
    }

private:
    void makeSides(Street& street) {
        const std::uint32_t code = dice_.roll(place_.postalCodes.size());
        if (dice_.oneIn(200)) {
            return; // a street without any stretch
        }
        if (street.isPseudo || dice_.oneIn(15)) {
            street.sides.push_back(
                {.numbering = '0', .postalCode = place_.postalCodes[code], .section = 1 + dice_.roll(20)});
            return;
        }
        for (const char numbering : {'1', '2'}) {
            makeSide(street, numbering, code);
        }
        if (dice_.oneIn(300)) { // two doors of one number, apart by their letters, with two codes
            const std::uint32_t other = place_.postalCodes[(code + 1) % place_.postalCodes.size()];
            street.sides.push_back({'1', 9001, 9001, 'A', 'A', place_.postalCodes[code], 1});
            street.sides.push_back({'1', 9001, 9001, 'B', 'B', other, 2});
        }
    }

    void makeSide(Street& street, char numbering, std::uint32_t code) {
        const bool isDivided = place_.postalCodes.size() > 1 && dice_.oneIn(8);
        const std::uint32_t pieces = isDivided ? 2 + dice_.roll(2) : dice_.oneIn(6) ? 2 : 1;
        std::uint32_t number = (numbering == '1' ? 1 : 2) + 2 * dice_.roll(3);
        if (options_.hasWholeSides && pieces == 1) {
            street.sides.push_back({numbering, numbering == '1' ? 1U : 2U, numbering == '1' ? 9999U : 9998U,
                                    ' ', ' ', place_.postalCodes[code], 1 + dice_.roll(20)});
            return;
        }
        for (std::uint32_t piece = 0; piece < pieces; ++piece) {
            const std::uint32_t last = number + 2 * dice_.roll(25);
            const std::uint32_t which = isDivided ? code + piece : code;
            street.sides.push_back({numbering, number, last, ' ', dice_.oneIn(40) ? 'B' : ' ',
                                    place_.postalCodes[which % place_.postalCodes.size()],
                                    1 + dice_.roll(20)});
            number = last + 2 + 2 * dice_.roll(4);
        }
    }

    const Place& place_;
    const Options& options_;
    Dice& dice_;
};

} // namespace

std::vector<Place> inventedPlaces(std::size_t count) {
    std::vector<Place> places;
    for (std::size_t i = 0; i < count; ++i) {
        Dice dice(i + 77);
        const auto province = static_cast<std::uint32_t>(i * 52 / count + 1);
        const auto number = static_cast<std::uint32_t>(i % 999 + 1);
        const std::string last = dice.among(lastWords);
        Place place{.code = province * 1000 + number,
                    .name = std::string("VILLA") + dice.among(lastWords) + " DE " + last,
                    .postalCodes = {}};
        const std::uint32_t codes = dice.oneIn(20) ? 12 : 1 + dice.roll(3);
        const std::uint32_t first = province * 1000 + 1 + static_cast<std::uint32_t>(i * 7 % 980);
        for (std::uint32_t code = 0; code < codes; ++code) {
            place.postalCodes.push_back(first + code);
        }
        if (i % 40 == 39 && province < 52) {
            place.postalCodes.push_back((province + 1) * 1000 + 215);
        }
        places.push_back(std::move(place));
    }
    return places;
}

void forEachStreet(const std::vector<Place>& places, const Options& options,
                   const std::function<void(const Street&)>& visit) {
    constexpr double stretchesOfStreet = 2.2;
    double weights = 0;
    const auto weightOf = [](const Place& place) {
        return std::pow(static_cast<double>(place.postalCodes.size()), 1.4);
    };
    for (const Place& place : places) {
        weights += weightOf(place);
    }
    for (const Place& place : places) {
        Dice dice(options.seed * 1000003 + place.code);
        const double share =
            weightOf(place) / weights * static_cast<double>(options.stretches) / stretchesOfStreet;
        const auto streets = static_cast<std::uint32_t>(std::clamp(std::lround(share), 1L, 99000L));
        const std::uint32_t units = dice.oneIn(2) ? 1 : 2 + dice.roll(8);
        StreetMaker maker(place, options, dice);
        for (std::uint32_t number = 0; number < streets; ++number) {
            visit(maker.make(number, units));
        }
    }
}

} // namespace edition
