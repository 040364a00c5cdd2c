// Rows of MUNICIPI from an edition's places.
#include "directory/PlaceNames.h"

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

TEST(PlaceNames, AMunicipalityStandsBeforeItsEntitiesOnceForEachCode) {
    PlaceNames names;
    names.addMunicipality(28079, "Madrid");
    names.addUnit(28079, 101, "MADRID", "*DISEMINADO*");
    names.addUnit(28079, 202, "MONTEROS (LOS)", "ARRIBA");
    names.addCode(28079, 101, 28002);
    names.addCode(28079, 101, 28001);
    names.addCode(28079, 202, 28002);
    const std::vector<PlaceRow> rows = names.rows();
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].name, "MADRID");
    EXPECT_EQ(rows[0].official.postalCode, 28001U);
    EXPECT_FALSE(rows[0].official.isEntity);
    EXPECT_FALSE(rows[0].hasOneCode);
    EXPECT_EQ(rows[1].official.postalCode, 28002U);
    EXPECT_EQ(rows[2].name, "ARRIBA");
    EXPECT_TRUE(rows[2].official.isEntity);
    EXPECT_EQ(rows[3].name, "MONTEROS, LOS");
    EXPECT_EQ(rows[3].shortPlaceName, "MADRID");
}

TEST(PlaceNames, AMunicipalityWithOneCodeIsMarkedInAllItsRows) {
    PlaceNames names;
    names.addMunicipality(9001, "Abajas");
    names.addUnit(9001, 202, "OTRA", "");
    names.addCode(9001, 202, 9141);
    for (const PlaceRow& row : names.rows()) {
        EXPECT_TRUE(row.hasOneCode);
    }
    EXPECT_EQ(names.rows().size(), 2U);
}

TEST(PlaceNames, LongNamesInThirtyCharactersKeepMunicipalitiesApart) {
    PlaceNames names;
    names.addMunicipality(9001, "SAN VICENTE DE LA SIERRA DE ARRIBA DE LOS MONTES");
    names.addMunicipality(9002, "SAN VICENTE DE LA SIERRA DE ARRIBA DE LOS PRADOS");
    names.addCode(9001, 101, 9141);
    names.addCode(9002, 101, 9141);
    const std::vector<PlaceRow> rows = names.rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_LE(rows[0].shortPlaceName.size(), 30U);
    EXPECT_NE(rows[0].shortPlaceName, rows[1].shortPlaceName);
    EXPECT_EQ(rows[0].name.size(), 48U);
}

TEST(PlaceNames, AUnitHasTenNamesAtMostAsManyAsItsKeysCanTellApart) {
    PlaceNames names;
    names.addMunicipality(9001, "Abajas");
    names.addCode(9001, 202, 9141);
    unsigned taken = 0;
    for (int i = 0; i < 300; ++i) {
        taken += names.addUnit(9001, 202, "ALDEA " + std::to_string(i), "") ? 1 : 0;
    }
    EXPECT_EQ(taken, 10U);
    EXPECT_TRUE(names.addUnit(9001, 202, "ALDEA 0", "")) << "which it has already";
    const std::vector<PlaceRow> rows = names.rows();
    EXPECT_EQ(rows.size(), 11U) << "with the municipality";
    for (const PlaceRow& row : rows) {
        EXPECT_EQ(OfficialPlaceKey::fromText(row.official.text()), row.official) << row.name;
    }
}

TEST(PlaceNames, ProvincialCapitalsAreKnown) {
    for (const PlaceCode place : {1059U, 28079U, 51001U, 52001U, 38038U}) {
        EXPECT_TRUE(isCapital(place)) << place;
    }
    EXPECT_FALSE(isCapital(28006));
}

} // namespace
} // namespace ambrel::directory
