// The street card's look-ups, and the texts it stores.
#include <gtest/gtest.h>

#include "controller/StreetCard.h"
#include "data/PostalTables.h"

namespace {

using ambrel::isPostalCodeOf;
using ambrel::provinceNameIn;
using ambrel::streetTypeCodeIn;

class StreetCardLookups : public postal_tests::PostalTables {
protected:
    StreetCardLookups() {
        addProvinces({{"028", "MADRID"}, {"008", "BARCELONA"}, {"201", "FRANCIA", 3}});
        addStreetTypes({{"CL", "CALLE"}});
    }
    ambrel::StreetCardTables tables;
};

TEST_F(StreetCardLookups, ProvincesAreThoseOfGroup1ByName) {
    const auto found = tables.provinces();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].name, "BARCELONA");
    EXPECT_EQ(found[1].code, "028");
    EXPECT_FALSE(tables.tbProvin.isOpen());
}

TEST_F(StreetCardLookups, ProvincesAreFoundByTwoDigitsAndByWholeName) {
    EXPECT_EQ(tables.findProvince("08").value().name, "BARCELONA");
    EXPECT_FALSE(tables.findProvince("8"));
    EXPECT_EQ(tables.provinceCode("MADRID"), "28");
    EXPECT_EQ(tables.provinceCode("MADR"), "00");
    EXPECT_EQ(tables.provinceCode(""), "00");
    EXPECT_FALSE(tables.tbProvin.isOpen());
}

TEST_F(StreetCardLookups, StreetTypesAreFoundByWholeCode) {
    EXPECT_EQ(tables.findStreetType("CL").value().name, "CALLE");
    EXPECT_FALSE(tables.findStreetType("CLX")) << "not by its beginning";
    EXPECT_FALSE(tables.findStreetType(""));
    EXPECT_FALSE(tables.tbTipoVia.isOpen());
}

TEST_F(StreetCardLookups, TablesThatAreFoundOpenAreReadFromTheirBeginningAndStayOpen) {
    addStreetTypes({{"AV", "AVENIDA"}});
    tables.tbProvin.open();
    tables.tbProvin.last();
    EXPECT_EQ(tables.provinces().size(), 2U);
    EXPECT_EQ(tables.provinces().size(), 2U) << "the table stands at its end now";
    EXPECT_EQ(tables.findProvince("28").value().name, "MADRID");
    EXPECT_EQ(tables.provinceCode("BARCELONA"), "08");
    EXPECT_TRUE(tables.tbProvin.isOpen());
    tables.tbTipoVia.open();
    tables.tbTipoVia.last();
    EXPECT_EQ(tables.streetTypes().size(), 2U);
    EXPECT_TRUE(tables.findStreetType("CL").has_value());
    EXPECT_TRUE(tables.tbTipoVia.isOpen());
}

TEST(StreetCardTexts, ProvinceNameEndsBeforeTheBracket) {
    EXPECT_EQ(provinceNameIn("MADRID [28]", "MADRID [28]"), "MADRID");
    EXPECT_EQ(provinceNameIn(" MADRID ", "other"), "MADRID");
    EXPECT_EQ(provinceNameIn("[28]", "[28]"), "");
}

TEST(StreetCardTexts, TheBracketOfTheTextCutsTheProvinceThatIsShown) {
    EXPECT_EQ(provinceNameIn("LUGO [27]", " BARCELONA [08] "), "BARCE");
    EXPECT_EQ(provinceNameIn("SANTA CRUZ DE TENERIFE [38]", "LUGO"), "LUGO");
}

TEST(StreetCardTexts, StreetTypeCodeEndsBeforeTheHyphenAndIsInCapitals) {
    EXPECT_EQ(streetTypeCodeIn("cl - calle"), "CL");
    EXPECT_EQ(streetTypeCodeIn(" av "), "AV");
    EXPECT_EQ(streetTypeCodeIn("-"), "");
    EXPECT_EQ(streetTypeCodeIn(""), "");
}

TEST(StreetCardTexts, PostalCodeHasFiveCharactersAndBeginsWithTheProvince) {
    EXPECT_TRUE(isPostalCodeOf("28013", "28"));
    for (const char* wrong : {"", "2801", "280131", "08013"}) {
        EXPECT_FALSE(isPostalCodeOf(wrong, "28")) << wrong;
    }
    EXPECT_FALSE(isPostalCodeOf("28013", ""));
}

} // namespace
