// Municipalities that may have been meant.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/PostalTables.h"
#include "dbase/system/error.h"
#include "suggest/Suggestions.h"

namespace ambrel {
namespace {

using ambrel::test::ansi;

class MunicipalitySuggestions : public postal_tests::PostalTables {
protected:
    MunicipalitySuggestions() {
        addMunicipalities({{"28079", "28001", "MADRID"},
                           {"28079", "28013", "MADRID"},
                           {"28013", "28300", "ARANJUEZ", "S"},
                           {"28127", "28231", "ROZAS DE MADRID, LAS"},
                           {"15030", "15001", "CORUÑA, A"},
                           {"03014", "03001", "ALICANTE/ALACANT"},
                           {"08101", "08901", "HOSPITALET DE LLOBREGAT, L'"},
                           {"29067", "29001", "MÁLAGA"},
                           {"33037", "33600", "MIERES"},
                           {"17105", "17830", "MIERES"},
                           {"21005", "21750", "ALMONTE"},
                           {"21005", "21750", "EL ROCIO", "N", "9", true}});
        addProvinces({{"015", "CORUÑA, A"}, {"033", "ASTURIAS"}, {"028", "MADRID"}});
    }

    std::vector<SuggestedMunicipality> suggest(const std::string& utf8, const std::string& province = "",
                                               bool withLocalities = true) {
        return suggestions.municipalities({ansi(utf8), ansi(province), withLocalities});
    }
    std::string first(const std::string& utf8, const std::string& province = "") {
        const auto found = suggest(utf8, province);
        return found.empty() ? std::string() : found.front().ineCode;
    }

    Suggestions suggestions;
};

TEST_F(MunicipalitySuggestions, NameIsFoundHoweverItIsWritten) {
    for (const char* name : {"La Coruña", "a coruña", "Coruña (A)", "CORUNA", "coruña"}) {
        EXPECT_EQ(first(name), "15030") << name;
    }
    EXPECT_EQ(first("Malaga"), "29067");
    EXPECT_EQ(first("l'hospitalet"), "08101");
    EXPECT_EQ(first("Las Rozas"), "28127");
}

TEST_F(MunicipalitySuggestions, OnePointMeansTheSameName) {
    EXPECT_EQ(suggest("málaga").front().points, 1);
    EXPECT_EQ(suggest("A Coruña").front().points, 1);
    EXPECT_LT(suggest("malga").front().points, 0.9);
    EXPECT_LT(suggest("Coruna").front().points, 1);
    EXPECT_GT(suggest("Coruna").front().points, 0.9);
}

TEST_F(MunicipalitySuggestions, EitherLanguageAloneLeadsToTheMunicipality) {
    for (const char* name : {"Alacant", "alicante", "Alicante/Alacant", "alacamt"}) {
        EXPECT_EQ(first(name), "03014") << name;
    }
    EXPECT_EQ(suggest("alacant").front().name, "ALICANTE/ALACANT");
    EXPECT_EQ(suggest("alacant").front().found, "ALACANT");
}

TEST_F(MunicipalitySuggestions, SlipsAreForgiven) {
    for (const char* name : {"madird", "Mdrid", "madrod", "maddrid"}) {
        EXPECT_EQ(first(name), "28079") << name;
    }
    EXPECT_EQ(first("xyzzy"), "");
}

TEST_F(MunicipalitySuggestions, ProvinceChoosesAmongEqualNames) {
    EXPECT_EQ(suggest("mieres").size(), 2U);
    EXPECT_EQ(first("mieres", "Asturias"), "33037");
    EXPECT_EQ(first("mieres", "17"), "17105");
    EXPECT_EQ(suggest("mieres", "28").size(), 0U);
    EXPECT_EQ(suggest("mieres", "Mordor").size(), 0U);
}

TEST_F(MunicipalitySuggestions, CodesLeadToTheirMunicipalities) {
    const auto found = suggest("28013");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].ineCode, "28079"); // its postal code
    EXPECT_EQ(found[1].ineCode, "28013"); // its INE code
    EXPECT_EQ(found[0].points, 1);
    EXPECT_EQ(first("0801"), "");
    EXPECT_EQ(first("089"), "08101");
    EXPECT_LT(suggest("089").front().points, 1);
}

TEST_F(MunicipalitySuggestions, LocalityLeadsToItsMunicipalityUnlessLeftOut) {
    const auto found = suggest("el rocio");
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front().ineCode, "21005");
    EXPECT_EQ(found.front().name, "ALMONTE");
    EXPECT_EQ(found.front().found, "EL ROCIO");
    EXPECT_TRUE(found.front().isLocality);
    for (const SuggestedMunicipality& one : suggest("el rocio", "", false)) {
        EXPECT_NE(one.ineCode, "21005");
    }
}

TEST_F(MunicipalitySuggestions, LocalityComesAfterAMunicipalityOfTheSameName) {
    addMunicipalities({{"40001", "40001", "VILLAR"},
                       {"10001", "10001", "ZZ"},
                       {"10001", "10001", "VILLAR", "N", "9", true}});
    const auto found = suggest("villar");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].ineCode, "40001");
    EXPECT_EQ(found[1].ineCode, "10001");
}

TEST_F(MunicipalitySuggestions, MatchingLettersAreMarked) {
    EXPECT_EQ(suggest("madr").front().marks, (std::vector<TextSpan>{{0, 4}}));
    EXPECT_EQ(suggest("madird").front().marks, (std::vector<TextSpan>{{0, 3}, {4, 2}}));
    EXPECT_EQ(suggest("las rozas").front().marks, (std::vector<TextSpan>{{0, 5}, {17, 3}}));
}

TEST_F(MunicipalitySuggestions, OtherNamesOfTheHostLeadToTheMunicipality) {
    folder.write("antiguos.csv", "COD_INE,NOMBRE\n28013,Real Sitio\n");
    Suggestions mine("DB", {.otherNames = folder / "antiguos.csv"});
    const auto found = mine.municipalities({"real sitio"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().ineCode, "28013");
    EXPECT_EQ(found.front().found, "Real Sitio");
}

TEST_F(MunicipalitySuggestions, FolderInPlaceOfTheFileOfOtherNamesIsRefused) {
    std::filesystem::create_directory(folder / "antiguos.csv");
    Suggestions mine("DB", {.otherNames = folder / "antiguos.csv"});
    EXPECT_THROW(static_cast<void>(mine.municipalities({"real sitio"})), dbase::Error);
}

TEST_F(MunicipalitySuggestions, BrokenFileOfOtherNamesIsRefusedWithItsLine) {
    folder.write("antiguos.csv", "28013,Real Sitio\nbasura\n");
    Suggestions mine("DB", {.otherNames = folder / "antiguos.csv"});
    try {
        static_cast<void>(mine.municipalities({"real sitio"}));
        FAIL();
    } catch (const std::exception& error) {
        EXPECT_NE(std::string(error.what()).find("línea 2"), std::string::npos) << error.what();
    }
}

} // namespace
} // namespace ambrel
