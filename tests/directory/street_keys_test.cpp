// Keys of POSTAL for official rows.
#include "directory/StreetKeys.h"

#include <gtest/gtest.h>

#include "loading/failure.h"

namespace ambrel::directory {
namespace {

TEST(StreetKeys, BeginWithTheMunicipalitysProvince) {
    StreetKeys keys;
    EXPECT_EQ(keys.next(28079), 28000001U);
    EXPECT_EQ(keys.next(28006), 28000002U);
    EXPECT_EQ(keys.next(1059), 1000001U);
    EXPECT_EQ(keys.next(52001), 52000001U);
}

TEST(StreetKeys, FollowTheHighestOneInUseSoThatNoneIsGivenTwice) {
    StreetKeys keys;
    keys.addUsed(28000003);
    keys.addUsed(28000001);
    keys.addUsed(99000007);
    EXPECT_EQ(keys.next(28079), 28000004U);
    EXPECT_EQ(keys.next(28079), 28000005U);
}

TEST(StreetKeys, OnesGivenUpServeOnceThereAreNoOthers) {
    StreetKeys keys;
    for (std::uint32_t key = 1; key < 1000000; ++key) {
        if (key != 77) {
            keys.addUsed(28000000 + key);
        }
    }
    EXPECT_EQ(keys.next(28079), 28000077U);
    EXPECT_THROW(static_cast<void>(keys.next(28079)), loading::Failure);
    EXPECT_EQ(keys.next(29067), 29000001U);
}

TEST(StreetKeys, ThoseOfRowsThatAreGoneComeLast) {
    StreetKeys keys;
    keys.addUsed(28000003);
    keys.addGone(28000009);
    EXPECT_EQ(keys.next(28079), 28000010U);
    keys.addGone(28999999);
    EXPECT_EQ(keys.next(28079), 28000001U);
    EXPECT_EQ(keys.next(28079), 28000002U);
    EXPECT_EQ(keys.next(28079), 28000004U);
}

} // namespace
} // namespace ambrel::directory
