// Reads house numbers as people write them.
#include "address/HouseNumber.h"

#include <gtest/gtest.h>

#include "support/Tables.h"

namespace {

using ambrel::HouseNumber;
using Kind = HouseNumber::Kind;

HouseNumber read(const char* text) { return ambrel::readHouseNumber(ambrel::test::ansi(text)); }

TEST(HouseNumberTest, APlainNumberIsItself) {
    EXPECT_EQ(read("12"), (HouseNumber{Kind::Known, 12}));
    EXPECT_EQ(read("  0012 "), (HouseNumber{Kind::Known, 12}));
    EXPECT_EQ(read("9999"), (HouseNumber{Kind::Known, 9999}));
}

TEST(HouseNumberTest, WhatFollowsANumberLeavesIt) {
    for (const char* text :
         {"12 BIS", "12bis", "12B", "12 b", "12-14", "12 - 14", "12/14", "12 y 14", "12, 3º", "12,3ºA",
          "12 3º izda.", "12.", "12 (bajo)", "12, bajo", "12 DUPLICADO"}) {
        EXPECT_EQ(read(text), (HouseNumber{Kind::Known, 12})) << text;
    }
}

TEST(HouseNumberTest, TheWordForANumberMayStandInFront) {
    for (const char* text :
         {"nº 12", "Nº12", "n.º 12", "n° 12", "N. 12", "num. 12", "núm 12", "Número: 12", "no. 12", "#12"}) {
        EXPECT_EQ(read(text), (HouseNumber{Kind::Known, 12})) << text;
    }
}

TEST(HouseNumberTest, BlankAndWithoutNumberAreNone) {
    for (const char* text : {"", "   ", "-", "--", ".", "S/N", "s/n", "S/Nº", "sn", "s. n.", "S-N",
                             "sin número", "SIN NUMERO", "s/núm."}) {
        EXPECT_EQ(read(text).kind, Kind::None) << text;
    }
}

TEST(HouseNumberTest, WhatIsNoHouseNumberIsUnclear) {
    for (const char* text : {"0", "-5", "+5", "3º", "3ª B", "12.5", "1.200", "28013", "99999999999", "km 12",
                             "12 km", "12km", "doce", "bajo", "nave 12", "N", "%12", "12%", "n 12.5"}) {
        EXPECT_EQ(read(text).kind, Kind::Unclear) << text;
    }
}

TEST(HouseNumberTest, SignsThatSayNothingAreUnclear) {
    for (const char* text : {"?", "??", "*", "%"}) { // "?" stands for what the tables cannot hold
        EXPECT_EQ(read(text).kind, Kind::Unclear) << text;
    }
}

TEST(HouseNumberTest, ALetterThatLooksLikeANoughtIsNotReadOver) {
    for (const char* text : {"1O", "1OO", "1o5", "nº 1O", "1O, 3º", "1O-14"}) {
        EXPECT_EQ(read(text).kind, Kind::Unclear) << text;
    }
    EXPECT_EQ(read("12 oficina 3"), (HouseNumber{Kind::Known, 12}));
}

} // namespace
