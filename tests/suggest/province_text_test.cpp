// Provinces by any writing.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/PostalTables.h"
#include "suggest/Suggestions.h"

namespace ambrel {
namespace {

using ambrel::test::ansi;

class ProvinceTexts : public postal_tests::PostalTables {};

TEST_F(ProvinceTexts, AnyWritingOfANameIsRecognised) {
    addProvinces({{"001", "ALAVA/ARABA"}, {"015", "CORUÑA, A"}, {"038", "SANTA CRUZ DE TENERIF"}});
    Suggestions suggestions;
    const std::pair<const char*, const char*> writings[] = {{"28", "28"},
                                                            {"1", "01"},
                                                            {"028", "28"},
                                                            {"Araba/Álava", "01"},
                                                            {"Alava", "01"},
                                                            {"Coruña, A", "15"},
                                                            {"La Coruña", "15"},
                                                            {"coruna", "15"},
                                                            {"SANTA CRUZ DE TENERIF", "38"},
                                                            {"Santa Cruz de Tenerife", "38"},
                                                            {"S.C. TENERIFE", "38"},
                                                            {"Palmas, Las", "35"},
                                                            {"LAS PALMAS", "35"},
                                                            {"Balears, Illes", "07"},
                                                            {"ILLES BALEARS", "07"},
                                                            {"Vizcaya", "48"},
                                                            {"Gerona", "17"},
                                                            {"A CORUÑA", "15"},
                                                            {"Mordor", ""},
                                                            {"99", ""},
                                                            {"", ""}};
    for (const auto& [text, digits] : writings) {
        EXPECT_EQ(suggestions.provinceNamed(ansi(text)), digits) << text;
    }
}

TEST_F(ProvinceTexts, NameIsShownAsTheTableHoldsIt) {
    addProvinces({{"015", "CORUÑA, A"}, {"724", "ESPAÑA", 2}});
    Suggestions suggestions;
    EXPECT_EQ(suggestions.provinceName("15"), ansi("CORUÑA, A"));
    EXPECT_EQ(suggestions.provinceName("28"), "");
}

TEST_F(ProvinceTexts, NameIsKnownAsSoonAsTheTableIsThere) {
    addProvinces({{"015", "CORUÑA, A"}});
    const std::filesystem::path table(folder / "PROVIN.DBF"), away(folder / "AWAY");
    std::filesystem::rename(table, away);
    Suggestions suggestions;
    EXPECT_EQ(suggestions.provinceNamed("coruna"), "15");
    EXPECT_EQ(suggestions.provinceName("15"), "");
    std::filesystem::rename(away, table);
    EXPECT_EQ(suggestions.provinceName("15"), ansi("CORUÑA, A"));
}

} // namespace
} // namespace ambrel
