// Keys of POSTAL for official rows.
#include "directory/StreetKeys.h"

#include <gtest/gtest.h>

#include <set>

#include "loading/failure.h"

namespace ambrel::directory {
namespace {

OfficialKey row(std::uint32_t street, PlaceCode place = 28079, std::uint16_t ordinal = 0) {
    return {.place = place, .street = street, .postalCode = 28001, .ordinal = ordinal};
}

TEST(StreetKeys, BeginWithTheMunicipalitysProvince) {
    StreetKeys keys;
    EXPECT_EQ(keys.keyOf(row(1)), 28000001U);
    EXPECT_EQ(keys.keyOf(row(2)), 28000002U);
    EXPECT_EQ(keys.keyOf(row(1, 1059)), 1000001U);
    EXPECT_EQ(keys.keyOf(row(1, 52001)), 52000001U);
}

TEST(StreetKeys, NeverTakeOneThatIsInUse) {
    StreetKeys keys;
    keys.addUsed(28000001);
    keys.addUsed(28000003);
    EXPECT_EQ(keys.keyOf(row(1)), 28000002U);
    EXPECT_EQ(keys.keyOf(row(2)), 28000004U);
}

TEST(StreetKeys, ARowKeepsTheKeyOfTheEditionBefore) {
    StreetKeys first;
    const std::uint32_t one = first.keyOf(row(1)), two = first.keyOf(row(1, 28079, 1)),
                        three = first.keyOf(row(2));
    StreetKeys next;
    next.addEarlier(row(1, 28079, 1), two);
    next.addEarlier(row(2), three);
    EXPECT_EQ(next.keyOf(row(2)), three);
    EXPECT_EQ(next.keyOf(row(3)), one) << "the first row is gone";
    EXPECT_EQ(next.keyOf(row(1, 28079, 1)), two);
    EXPECT_EQ(next.keyOf(row(4)), 28000004U);
}

TEST(StreetKeys, AProvinceWithoutFreeKeysIsNamed) {
    StreetKeys keys;
    for (std::uint32_t key = 1; key < 1000000; ++key) {
        keys.addUsed(28000000 + key);
    }
    EXPECT_THROW(static_cast<void>(keys.keyOf(row(1))), loading::Failure);
}

TEST(OfficialKey, IsWrittenInTwentyCharacters) {
    EXPECT_EQ(row(123, 1059, 2).text(), "01059V00123280010002");
    EXPECT_EQ(
        (OfficialKey{.place = 28079, .isPseudo = true, .street = 99999, .postalCode = 1001, .ordinal = 9999})
            .text(),
        "28079P99999010019999");
}

} // namespace
} // namespace ambrel::directory
