// Numbers and times as the windows show them.
#include <gtest/gtest.h>

#include "host/GroupedNumber.h"
#include "host/ShownTime.h"

namespace {

TEST(ShownTime, IsRoundedUpToSeconds) {
    EXPECT_EQ(host::shownTime(0), "0:00");
    EXPECT_EQ(host::shownTime(0.2), "0:01");
    EXPECT_EQ(host::shownTime(65), "1:05");
    EXPECT_EQ(host::shownTime(3600), "60:00");
}

TEST(ShownTime, IsNoneWhenMoreHasBeenReadThanThereWas) { EXPECT_EQ(host::shownTime(-3.5), "0:00"); }

TEST(GroupedNumber, PointsBeginWithFiveFigures) {
    EXPECT_EQ(host::groupedNumber(1234), "1234");
    EXPECT_EQ(host::groupedNumber(12345), "12.345");
    EXPECT_EQ(host::groupedNumber(1234567), "1.234.567");
}

TEST(GroupedNumber, RowsAreCountedWithTheirNoun) {
    EXPECT_EQ(host::rowsText(0), "0 filas");
    EXPECT_EQ(host::rowsText(1), "1 fila");
    EXPECT_EQ(host::rowsText(12345), "12.345 filas");
}

} // namespace
