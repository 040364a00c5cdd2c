// Code pages: conversion, letter case, letters.
#include "dbase/dbf/codepage.h"
#include "dbase/dbf/collation.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace dbase;

const CodePage& dos437() { return CodePage::ofDriver(0x01); }
const CodePage& dos850() { return CodePage::ofDriver(0x02); }
const CodePage& windows1250() { return CodePage::ofDriver(0xC8); }

std::string everyByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

TEST(CodePage, DriverByteNamesThePage) {
    for (const int driver : {0x57, 0x03, 0x58, 0x59, 0x00}) {
        EXPECT_EQ(&CodePage::ofDriver(static_cast<std::uint8_t>(driver)), &CodePage::windows1252()) << driver;
    }
    for (const int driver : {0x01, 0x1B, 0x18}) {
        EXPECT_EQ(CodePage::ofDriver(static_cast<std::uint8_t>(driver)).decode(0xA5), U'Ñ') << driver;
    }
    for (const int driver : {0x02, 0x37, 0x14}) {
        EXPECT_EQ(CodePage::ofDriver(static_cast<std::uint8_t>(driver)).decode(0xB5), U'Á') << driver;
    }
    EXPECT_EQ(windows1250().decode(0xC8), U'Č');
}

TEST(CodePage, UnknownDriversAreReadAsWindows1252) {
    EXPECT_EQ(&CodePage::ofDriver(0x65), &CodePage::windows1252());
    EXPECT_EQ(&CodePage::ofDriver(0xFF), &CodePage::windows1252());
}

TEST(CodePage, Windows1252DecodesItsOwnCharacters) {
    const CodePage& page = CodePage::windows1252();
    EXPECT_EQ(page.decode('A'), U'A');
    EXPECT_EQ(page.decode(0xD1), U'Ñ');
    EXPECT_EQ(page.decode(0x80), U'€');
    EXPECT_EQ(page.decode(0x8C), U'Œ');
    EXPECT_EQ(page.toUtf8("ESPA\xD1"
                          "A \x80"),
              "ESPAÑA €");
}

TEST(CodePage, OpenBytesStandForTheControlsOfTheSameNumber) {
    for (const int byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
        EXPECT_EQ(CodePage::windows1252().decode(static_cast<unsigned char>(byte)),
                  static_cast<char32_t>(byte));
    }
}

TEST(CodePage, EveryByteSurvivesARoundTripThroughUtf8) {
    for (const CodePage* page : {&CodePage::windows1252(), &dos437(), &dos850(), &windows1250()}) {
        EXPECT_EQ(page->fromUtf8(page->toUtf8(everyByte())), everyByte());
    }
}

TEST(CodePage, CharactersOutsideThePageHaveNoByte) {
    EXPECT_EQ(CodePage::windows1252().encode(U'Ω'), std::nullopt);
    EXPECT_EQ(CodePage::windows1252().encode(U'Č'), std::nullopt);
    EXPECT_EQ(CodePage::windows1252().encode(0x80), std::nullopt); // the page has the euro there
    EXPECT_EQ(CodePage::windows1252().encode(0x1F600), std::nullopt);
    EXPECT_EQ(dos437().encode(U'Á'), std::nullopt);
    EXPECT_EQ(CodePage::windows1252().fromUtf8("A Č"), std::nullopt);
}

TEST(CodePage, MalformedUtf8IsRefused) {
    for (const char* text : {"\x80", "\xC3", "\xC3(", "\xE2\x82", "\xC0\x80", "\xC1\xBF", "\xE0\x80\xAF",
                             "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF",
                             "\xD1"
                             "A"}) {
        EXPECT_EQ(CodePage::windows1252().fromUtf8(text), std::nullopt) << text;
    }
}

TEST(CodePage, LongestAndLastCharactersOfUtf8AreRead) {
    const CodePage& page = CodePage::windows1252();
    EXPECT_EQ(page.fromUtf8("\xF0\x9F\x98\x80"), std::nullopt) << "beyond the first 65536";
    EXPECT_EQ(page.fromUtf8("\xEE\x80\x80"), std::nullopt) << "behind the surrogates, and in no page";
    EXPECT_EQ(page.fromUtf8("\xED\xA0\x80"), std::nullopt) << "a surrogate";
    EXPECT_EQ(page.fromUtf8("\xE2\x82\xAC"), "\x80");
}

TEST(CodePage, Windows1252CaseCoversAccentedLetters) {
    const CodePage& page = CodePage::windows1252();
    EXPECT_EQ(page.upper('a'), 'A');
    EXPECT_EQ(page.lower('Z'), 'z');
    EXPECT_EQ(page.upper(0xF1), 0xD1); // ñ
    EXPECT_EQ(page.lower(0xC7), 0xE7); // Ç
    EXPECT_EQ(page.upper(0x9A), 0x8A); // š
    EXPECT_EQ(page.upper(0x9C), 0x8C); // œ
    EXPECT_EQ(page.upper(0x9E), 0x8E); // ž
    EXPECT_EQ(page.upper(0xFF), 0x9F); // ÿ
    EXPECT_EQ(page.lower(0x9F), 0xFF);
}

TEST(CodePage, BytesWithoutCounterpartKeepTheirCase) {
    const CodePage& page = CodePage::windows1252();
    for (const int byte : {0x31, 0x20, 0x5F, 0xDF /* ß */, 0xD7 /* × */, 0xF7 /* ÷ */, 0xAA, 0xBA,
                           0xB5 /* µ */, 0x83 /* ƒ */}) {
        EXPECT_EQ(page.upper(static_cast<unsigned char>(byte)), byte);
        EXPECT_EQ(page.lower(static_cast<unsigned char>(byte)), byte);
    }
}

TEST(CodePage, DosPagesHaveTheirOwnCase) {
    EXPECT_EQ(dos437().upper(0xA4), 0xA5);      // ñ
    EXPECT_EQ(dos437().upper(0x82), 0x90);      // é
    EXPECT_EQ(dos437().upper(0xA0), 0xA0);      // á, whose capital the page lacks
    EXPECT_EQ(dos850().upper(0xA0), 0xB5);      // á
    EXPECT_EQ(dos850().lower(0xE9), 0xA3);      // Ú
    EXPECT_EQ(windows1250().upper(0xE8), 0xC8); // č
    EXPECT_EQ(windows1250().lower(0xA3), 0xB3); // Ł
}

TEST(CodePage, CaseChangesAreEachOthersInverse) {
    for (const CodePage* page : {&CodePage::windows1252(), &dos437(), &dos850(), &windows1250()}) {
        for (int i = 0; i < 256; ++i) {
            const auto byte = static_cast<unsigned char>(i);
            if (page->upper(byte) != byte) {
                EXPECT_EQ(page->lower(page->upper(byte)), byte);
                EXPECT_TRUE(page->isLetter(byte)) << i;
            }
            EXPECT_EQ(page->upper(page->upper(byte)), page->upper(byte));
        }
    }
}

TEST(CodePage, LettersAreThoseOfThePage) {
    const CodePage& page = CodePage::windows1252();
    for (const int byte : {0x41, 0x7A, 0xD1, 0xDF, 0xFF, 0x8A, 0x9F, 0xAA, 0xBA}) {
        EXPECT_TRUE(page.isLetter(static_cast<unsigned char>(byte))) << byte;
    }
    for (const int byte : {0x30, 0x20, 0x5F, 0x80, 0xB2, 0xB9, 0xBC, 0xBF, 0xD7, 0xF7, 0x81}) {
        EXPECT_FALSE(page.isLetter(static_cast<unsigned char>(byte))) << byte;
    }
}

TEST(CodePage, SignsThatCountAsLetters) {
    const CodePage& page = CodePage::windows1252();
    for (const int letter : {0xAA, 0xB5, 0xBA, 0x83}) {
        EXPECT_TRUE(page.isLetter(static_cast<unsigned char>(letter))) << letter;
    }
    for (const int sign : {0xD7, 0xF7, 0xA9, 0x5F, 0x30}) {
        EXPECT_FALSE(page.isLetter(static_cast<unsigned char>(sign))) << sign;
    }
}

TEST(Collation, AllWeightsDiffer) {
    const auto& weights = collationWeights();
    EXPECT_EQ(std::set<std::uint8_t>(weights.begin(), weights.end()).size(), 256u);
    EXPECT_EQ(weights[0], 0);
}

TEST(Collation, LettersStandTogetherWhateverTheirCaseAndAccent) {
    const auto& weights = collationWeights();
    const std::string ascending = " -.09aA\xE1\xC1"
                                  "bBcC\xE7\xC7nN\xF1\xD1oOzZ";
    for (std::size_t i = 1; i < ascending.size(); ++i) {
        EXPECT_LT(weights[static_cast<unsigned char>(ascending[i - 1])],
                  weights[static_cast<unsigned char>(ascending[i])])
            << i;
    }
}

TEST(Collation, OnlyTheTwoAnsiDriversCollate) {
    for (int driver = 0; driver < 256; ++driver) {
        EXPECT_EQ(driverCollates(static_cast<std::uint8_t>(driver)), driver == 0x58 || driver == 0x59)
            << driver;
    }
}

} // namespace
