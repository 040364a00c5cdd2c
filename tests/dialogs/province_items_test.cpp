// The items of the province combo.
#include "dialogs/common/ProvinceItems.h"

#include <gtest/gtest.h>

namespace {

using namespace ambrel;

TEST(ProvinceItems, ItemIsTheNameAndTheLastTwoCharactersOfTheCodeInBrackets) {
    EXPECT_EQ(provinceItem("BARCELONA", "008").toStdString(), "BARCELONA [08]");
    EXPECT_EQ(provinceItem("MADRID", "28").toStdString(), "MADRID [28]");
}

TEST(ProvinceItems, NameIsTheTextBeforeBlankAndBracketWithoutBlanksAround) {
    EXPECT_EQ(nameOfItem("CORUÑA, A [15]").toStdString(), "CORUÑA, A");
    EXPECT_EQ(nameOfItem("  MADRID   [28]").toStdString(), "MADRID");
    EXPECT_EQ(nameOfItem("").toStdString(), "");
}

TEST(ProvinceItems, NameOfATextWithoutBlankAndBracketIsTheWholeText) {
    EXPECT_EQ(nameOfItem(" MADRID ").toStdString(), "MADRID");
    EXPECT_EQ(nameOfItem("MADRID[28]").toStdString(), "MADRID[28]");
}

TEST(ProvinceItems, CodeIsTheTwoCharactersAfterTheBracket) {
    EXPECT_EQ(codeOfItem("BARCELONA [08]").toStdString(), "08");
    EXPECT_EQ(codeOfItem("MADRID [2 ]").toStdString(), "2");
    EXPECT_EQ(codeOfItem("MADRID").toStdString(), "");
    EXPECT_EQ(codeOfItem("").toStdString(), "");
}

TEST(ProvinceItems, FirstItemThatContainsTheTextAnywhereIsFound) {
    const QStringList items{"ALAVA/ARABA [01]", "BARCELONA [08]", "MADRID [28]"};
    EXPECT_EQ(findItemContaining(items, "MADRID"), 2);
    EXPECT_EQ(findItemContaining(items, "ELO"), 1);
    EXPECT_EQ(findItemContaining(items, "08"), 1);
    EXPECT_EQ(findItemContaining(items, "A"), 0);
}

TEST(ProvinceItems, NothingIsFoundForAnEmptyTextOrOneThatNoItemContains) {
    const QStringList items{"ALAVA/ARABA [01]"};
    EXPECT_EQ(findItemContaining(items, ""), -1);
    EXPECT_EQ(findItemContaining(items, "MADRID"), -1);
    EXPECT_EQ(findItemContaining(items, "araba"), -1) << "letter case counts";
    EXPECT_EQ(findItemContaining({}, "A"), -1);
}

} // namespace
