// Streets that may have been meant.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>

#include "data/PostalTables.h"
#include "suggest/Suggestions.h"

namespace ambrel {
namespace {

using ambrel::test::ansi;

class StreetSuggestions : public postal_tests::PostalTables {
protected:
    StreetSuggestions() {
        addMunicipalities({{"28079", "28001", "MADRID"},
                           {"28079", "28013", "MADRID"},
                           {"28013", "28300", "ARANJUEZ", "S"},
                           {"28045", "28770", "COLMENAR VIEJO"},
                           {"28144", "28770", "SOTO"}});
        addStreetTypes({{"CL", "CALLE", "CARRER"},
                        {"PZ", "PLAZA", "PLAÇA"},
                        {"AV", "AVENIDA", "AVINGUDA"},
                        {"GV", "GRAN VIA"},
                        {"PS", "PASEO", "PASSEIG"}});
        addStreets({{"28000001", "GRAN VIA", "CL", "28013"},
                    {"28000002", "GRAN VIA", "CL", "28001", {51, 99}, {52, 98}},
                    {"28000003", "SANTA TERESA", "CL", "28001"},
                    {"28000004", "CONSTITUCION", "AV", "28001"},
                    {"28000005", "CONSTITUCION", "PZ", "28001"},
                    {"28000006", "DOS DE MAYO", "CL", "28001"},
                    {"28000007", "ALFONSO XII", "CL", "28001"},
                    {"28000008", "FEDERICO GARCIA LORCA", "CL", "28001"},
                    {"28000009", "VELAZQUEZ", "CL", "28001"},
                    {"28000010", "CASTELLANA", "PS", "28001"},
                    {"28000011", "DOCTOR FLEMING", "CL", "28001"},
                    {"28000012", "ESPAÑA", "PZ", "28001"},
                    {"28000013", "MAYOR (EL PARDO)", "CL", "28001"},
                    {"28000014", "MAYOR", "CL", "28300"},
                    {"28000015", "REAL", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", "28045"},
                    {"28000016", "REAL", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", "28144"},
                    {"28000017", "REALES", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", "28144"}});
    }

    std::vector<SuggestedStreet> suggest(const std::string& utf8, const std::string& type = "",
                                         const std::string& ineCode = "28079") {
        return suggestions.streets({.text = ansi(utf8), .type = type, .ineCode = ineCode});
    }
    std::string first(const std::string& utf8, const std::string& type = "") {
        const auto found = suggest(utf8, type);
        return found.empty() ? std::string() : found.front().type + ' ' + found.front().name;
    }

    Suggestions suggestions;
};

TEST_F(StreetSuggestions, StreetIsFoundHoweverItIsWritten) {
    EXPECT_EQ(first("c/ gran vía"), "CL GRAN VIA");
    EXPECT_EQ(first("avda. de la constitución"), "AV CONSTITUCION");
    EXPECT_EQ(first("pza constitucion"), "PZ CONSTITUCION");
    EXPECT_EQ(first("Sta. Teresa"), "CL SANTA TERESA");
    EXPECT_EQ(first("2 de mayo"), "CL DOS DE MAYO");
    EXPECT_EQ(first("Alfonso 12"), "CL ALFONSO XII");
    EXPECT_EQ(first("Carrer del Dr. Fleming"), "CL DOCTOR FLEMING");
    EXPECT_EQ(first("Pº de la Castellana"), "PS CASTELLANA");
    EXPECT_EQ(first("espana"), ansi("PZ ESPAÑA"));
}

TEST_F(StreetSuggestions, AStreetThatSaysItsMunicipalityComesBeforeOneThatOnlySharesItsPostalCode) {
    addStreets({{"28000020", "ROSAL", "CL", "28770", {1, 9999}, {2, 9998}, "28", "9", ""},
                {"28000021", "ROSAL", "PZ", "28770", {1, 9999}, {2, 9998}, "28", "9", "28144"}});
    const auto found = suggest("rosal", "", "28144");
    ASSERT_GE(found.size(), 2U);
    EXPECT_EQ(found[0].type, "PZ");
    EXPECT_EQ(found[1].type, "CL");
}

TEST_F(StreetSuggestions, ShortFormsOfOneLetterAreWrittenOut) {
    addStreets({{"28000020", "MARIA TARIN", "CL", "28001"},
                {"28000021", "DON FELIPE", "CL", "28001"},
                {"28000022", "PADRE ARRUPE", "CL", "28001"},
                {"28000023", "FELIPE V", "CL", "28001"}});
    EXPECT_EQ(first("M.ª Tarin"), "CL MARIA TARIN");
    EXPECT_GT(suggest("M.ª Tarin").front().points, 0.9);
    EXPECT_EQ(first("D. Felipe"), "CL DON FELIPE");
    EXPECT_GT(suggest("D. Felipe").front().points, 0.9);
    EXPECT_EQ(first("P. Arrupe"), "CL PADRE ARRUPE");
    EXPECT_GT(suggest("P. Arrupe").front().points, 0.9);
}

TEST_F(StreetSuggestions, StreetNamedByALetterIsFoundByIt) {
    addStreets({{"28000020", "S", "CL", "28001"},
                {"28000021", "D", "CL", "28001"},
                {"28000022", "P", "CL", "28001"}});
    for (const std::string letter : {"S", "D", "P"}) {
        EXPECT_EQ(first(letter), "CL " + letter);
        EXPECT_GT(suggest(letter).front().points, 0.9);
        EXPECT_EQ(first("calle " + letter + " 5"), "CL " + letter);
    }
}

TEST_F(StreetSuggestions, RareTypesAreRecognisedByTheirNames) {
    addStreets({{"28000020", "RECALDE", "AL", "28001"}, {"28000021", "PILAR CUARTERO", "AN", "28001"}});
    EXPECT_EQ(first("Alameda Recalde"), "AL RECALDE");
    EXPECT_EQ(suggest("Alameda Recalde").front().points, 1);
    EXPECT_EQ(suggest("Andador Pilar Cuartero").front().points, 1);
}

TEST_F(StreetSuggestions, SlipsMissingWordsAndBeginningsAreForgiven) {
    EXPECT_EQ(first("velasques"), "CL VELAZQUEZ");
    EXPECT_EQ(first("vlezaquez"), "CL VELAZQUEZ");
    EXPECT_EQ(first("garcia lorca"), "CL FEDERICO GARCIA LORCA");
    EXPECT_EQ(first("federico gar"), "CL FEDERICO GARCIA LORCA");
    EXPECT_EQ(first("granvia"), "CL GRAN VIA");
    EXPECT_EQ(first("fleming"), "CL DOCTOR FLEMING");
    EXPECT_EQ(first("xyzzyw"), "");
}

TEST_F(StreetSuggestions, TypeOrdersEqualNamesAndExcludesNone) {
    EXPECT_EQ(first("constitucion", "PZ"), "PZ CONSTITUCION");
    EXPECT_EQ(first("constitucion", "AV"), "AV CONSTITUCION");
    EXPECT_EQ(first("constitucion", "avenida"), "AV CONSTITUCION");
    EXPECT_EQ(first("velazquez", "PZ"), "CL VELAZQUEZ");
    EXPECT_EQ(suggest("constitucion").size(), 2U);
}

TEST_F(StreetSuggestions, OneLineStandsForAllStretchesAndGivesTheirCodes) {
    const auto found = suggest("gran via");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().points, 1);
    EXPECT_EQ(found.front().key, "28000001");
    EXPECT_EQ(found.front().postalCodes, (std::vector<std::string>{"28001", "28013"}));
    EXPECT_EQ(found.front().municipality, "MADRID");
    EXPECT_EQ(found.front().ineCode, "28079");
    EXPECT_EQ(found.front().province, "28");
}

TEST_F(StreetSuggestions, ArticleMoreOrLessIsNearerThanAnotherOneInItsPlace) {
    addStreets({{"28000020", "JORNALEROS", "CL", "28001"},
                {"28000021", "DE LOS JORNALEROS", "AV", "28001"},
                {"28000022", "SES BARRAQUES", "CL", "28001"},
                {"28000023", "BARRAQUES", "PZ", "28001"},
                {"28000024", "TORRE, DE SA", "PS", "28001"},
                {"28000025", "DE SA TORRE", "CL", "28001"}});
    EXPECT_EQ(first("del jornaleros"), "CL JORNALEROS");
    EXPECT_EQ(first("de los jornaleros"), "AV DE LOS JORNALEROS");
    EXPECT_EQ(first("los barraques"), "PZ BARRAQUES");
    EXPECT_EQ(first("barraques, los"), "PZ BARRAQUES");
    EXPECT_EQ(first("torre de sa"), "PS TORRE, DE SA");
    EXPECT_EQ(first("de sa torre"), "CL DE SA TORRE");
}

TEST_F(StreetSuggestions, LoneLetterAtTheEndIsABeginningAndNoFigure) {
    addStreets({{"28000020", "CINCO", "CL", "28001"}, {"28000021", "GRAN VIA DE VILLAVERDE", "AV", "28001"}});
    EXPECT_EQ(first("gran via de v"), "AV GRAN VIA DE VILLAVERDE");
    EXPECT_EQ(first("5"), "CL CINCO");
}

TEST_F(StreetSuggestions, VillageInBracketsMayBeMisspeltOrUnfinished) {
    addStreets({{"28000020", "ESTACION", "CL", "28001"},
                {"28000021", "ESTACION (VILLAVERDE)", "PS", "28001"},
                {"28000022", "DOS (CIUDAD PEGASO)", "CL", "28001"},
                {"28000023", "CIUDAD REAL", "CL", "28001"}});
    EXPECT_EQ(first("estacion (vil"), "PS ESTACION (VILLAVERDE)");
    EXPECT_EQ(first("estacion (villabrede)"), "PS ESTACION (VILLAVERDE)");
    EXPECT_EQ(first("estacion"), "CL ESTACION");
    EXPECT_EQ(first("ciudad"), "CL CIUDAD REAL");
    EXPECT_EQ(first("2 (ciudad pegaso)"), "CL DOS (CIUDAD PEGASO)");
}

TEST_F(StreetSuggestions, NamesThatTheTextBeginsComeInTheOrderOfTheirLetters) {
    addStreets(
        {{"28000020", "COLLADO DE LA MINA", "CL", "28001"}, {"28000021", "COLLADO MEDIANO", "CL", "28001"}});
    EXPECT_EQ(first("collado m"), "CL COLLADO MEDIANO");
    EXPECT_EQ(first("collado de m"), "CL COLLADO DE LA MINA");
}

TEST_F(StreetSuggestions, LongTextThatTheNameDoesNotExplainIsNotSuggested) {
    EXPECT_TRUE(suggest("velazquez " + std::string(300, 'x')).empty());
    std::string words = "velazquez";
    for (int i = 0; i < 40; ++i) {
        words += " palabra";
    }
    EXPECT_TRUE(suggest(words).empty());
}

TEST_F(StreetSuggestions, VillageInBracketsWeighsLessThanTheName) {
    EXPECT_EQ(first("mayor"), "CL MAYOR (EL PARDO)");
    EXPECT_EQ(first("mayor el pardo"), "CL MAYOR (EL PARDO)");
    EXPECT_GT(suggest("mayor").front().points, 0.9);
}

TEST_F(StreetSuggestions, NumberAfterTheStreetIsKept) {
    const auto found = suggest("Sta. Teresa 5");
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front().name, "SANTA TERESA");
    EXPECT_EQ(found.front().number, "5");
    EXPECT_EQ(suggest("2 de mayo").front().number, "");
    EXPECT_EQ(suggest("velazquez 28001").front().number, "28001") << "never dropped";
    EXPECT_EQ(suggest("velazquez 12 bis, 3 B").front().number, "12 bis, 3 B");
}

TEST_F(StreetSuggestions, OnlyTheMunicipalitysOwnStreetsAreSuggested) {
    EXPECT_TRUE(suggest("velazquez", "", "28013").empty());
    ASSERT_FALSE(suggest("mayor", "", "28013").empty());
    EXPECT_EQ(suggest("mayor", "", "28013").front().name, "MAYOR");
    EXPECT_TRUE(suggest("velazquez", "", "99999").empty());
}

TEST_F(StreetSuggestions, RowsWithTheMunicipalitysOwnCodeComeFirst) {
    const auto found = suggest("real", "", "28045");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].name, "REAL");
    EXPECT_EQ(found[0].key, "28000015");
    EXPECT_EQ(suggest("real", "", "28144").front().key, "28000016");
}

TEST_F(StreetSuggestions, StreetsOfAPostalCodeAndOfAProvinceAreFoundToo) {
    const auto ofCode = suggestions.streets({.text = "real", .postalCode = "28770"});
    ASSERT_EQ(ofCode.size(), 3U);
    EXPECT_EQ(ofCode[0].municipality, "COLMENAR VIEJO");
    EXPECT_EQ(ofCode[1].municipality, "SOTO");
    const auto ofProvince = suggestions.streets({.text = "mayor", .province = "28"});
    ASSERT_GE(ofProvince.size(), 2U);
    EXPECT_EQ(ofProvince[0].municipality, "ARANJUEZ");
    EXPECT_EQ(ofProvince[1].municipality, "MADRID"); // the only one with 28001
}

TEST_F(StreetSuggestions, MunicipalityWithoutACodeOwnsNoStreets) {
    addMunicipalities({{"", "28999", "SIN CODIGO"}});
    const auto found = suggestions.streets({.text = "velazqez", .postalCode = "28001"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().ineCode, "28079");
    EXPECT_EQ(found.front().municipality, "MADRID");
}

TEST_F(StreetSuggestions, UncertainMunicipalityIsSettledByTheStreet) {
    const auto found = suggestions.addresses({.municipality = {"madird"}, .street = "velazqez"});
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front().ineCode, "28079");
    EXPECT_EQ(found.front().name, "VELAZQUEZ");
    EXPECT_LT(found.front().points, 0.9);
}

TEST_F(StreetSuggestions, AsManyAreGivenAsAreWanted) {
    const AddressQuery address{.municipality = {"madird"}, .street = "velazqez"};
    const StreetQuery street{.text = "velazqez", .ineCode = "28079"};
    EXPECT_TRUE(suggestions.addresses(address, 0).empty());
    EXPECT_TRUE(suggestions.streets(street, 0).empty());
    EXPECT_TRUE(suggestions.municipalities({"madird"}, 0).empty());
    EXPECT_EQ(suggestions.addresses(address, 1).size(), 1U);
    std::vector<postal_tests::StreetRow> rows;
    for (int i = 0; i < 60; ++i) { // the best comes last in the order of the names
        rows.push_back({std::to_string(28001000 + i), "PINAR SETA " + std::to_string(10 + i), "CL", "28001"});
    }
    rows.push_back({"28001999", "PINAR ZETA", "CL", "28001"});
    addStreets(rows);
    for (const std::size_t most : {std::size_t{1}, std::size_t{100}, std::size_t{1} << 62, SIZE_MAX}) {
        const auto found = suggestions.streets({.text = "pinar zeta", .ineCode = "28079"}, most);
        ASSERT_FALSE(found.empty());
        EXPECT_EQ(found.front().name, "PINAR ZETA") << most;
        EXPECT_TRUE(std::ranges::is_sorted(found, std::greater<>(), &SuggestedStreet::points)) << most;
    }
}

TEST_F(StreetSuggestions, MatchingLettersOfTheStreetAreMarked) {
    EXPECT_EQ(suggest("c/ velaz").front().marks, (std::vector<TextSpan>{{0, 5}}));
    EXPECT_EQ(suggest("sta teresa").front().marks, (std::vector<TextSpan>{{0, 5}, {6, 6}}));
}

TEST_F(StreetSuggestions, HostileTextsFindNothingAndDoNoHarm) {
    std::vector<std::string> texts{"", "   ", "()", "5", "C/", "''''"};
    texts.emplace_back(5000, 'A');
    texts.emplace_back(3000, ' ');
    texts.emplace_back(300, '\xD1');
    texts.emplace_back(2, '\0');
    for (const std::string& text : texts) {
        EXPECT_LE(suggestions.streets({.text = text, .ineCode = "28079"}).size(), 8U);
        EXPECT_LE(suggestions.municipalities({text}).size(), 8U);
    }
    std::string many;
    for (int i = 0; i < 500; ++i) {
        many += "A" + std::to_string(i) + ' ';
    }
    EXPECT_LE(suggest(many).size(), 8U);
}

} // namespace
} // namespace ambrel
