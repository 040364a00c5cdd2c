// Official keys as text.
#include "directory/OfficialKey.h"

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

TEST(OfficialKey, IsWrittenInTwentyCharactersAndReadAgain) {
    const OfficialKey street{streetId(1059, false, 123), 1001, 2},
        pseudo{streetId(28079, true, 99999), 1001, 999};
    EXPECT_EQ(street.text(), "01059V00123010010002");
    EXPECT_EQ(pseudo.text(), "28079P99999010010999");
    EXPECT_EQ(OfficialKey::fromText(street.text()), street);
    EXPECT_EQ(OfficialKey::fromText(pseudo.text()), pseudo);
}

TEST(OfficialKey, OfAPlaceNamesItsUnit) {
    const OfficialPlaceKey place{.place = 9109, .postalCode = 9215},
        unit{.place = 9109, .isEntity = true, .unit = 10203, .name = 1, .postalCode = 1118};
    EXPECT_EQ(place.text(), "09109M0000000092150");
    EXPECT_EQ(unit.text(), "09109E0010203011181");
    EXPECT_EQ(OfficialPlaceKey::fromText(place.text()), place);
    EXPECT_EQ(OfficialPlaceKey::fromText(unit.text()), unit);
}

TEST(OfficialKey, OtherTextsAreNone) {
    for (const char* const text : {"", "01059V0012301001000", "01059X00123010010002", "0105 V00123010010002",
                                   "01059V001230100100023"}) {
        EXPECT_FALSE(OfficialKey::fromText(text)) << text;
        EXPECT_FALSE(OfficialPlaceKey::fromText(text)) << text;
    }
}

} // namespace
} // namespace ambrel::directory
