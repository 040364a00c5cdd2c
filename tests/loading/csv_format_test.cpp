// Recognises how a CSV file is written.
#include "loading/csv_format.h"

#include <gtest/gtest.h>

#include "loading/failure.h"

namespace loading {
namespace {

CsvFormat formatOf(std::string_view sample) { return recogniseFormat(sample, "prueba.csv"); }

TEST(CsvFormat, SeparatorIsTheMostFrequentOneOfTheHeading) {
    EXPECT_EQ(formatOf("A,B\n1;2;3,4\n").separator, ',');
    EXPECT_EQ(formatOf("A;\"B,C,D\";E\n").separator, ';');
    EXPECT_EQ(formatOf("A\tB, C\tD\n").separator, '\t');
    EXPECT_EQ(formatOf("A|B\n").separator, '|');
    EXPECT_EQ(formatOf("\r\n\nA;B\n,,,\n").separator, ';') << "empty lines in front";
    EXPECT_EQ(formatOf("\"A\nB\";C\n,,,\n").separator, ';') << "a heading of two lines";
}

TEST(CsvFormat, SeparatorOfASingleColumnStandsNowhereInIt) {
    EXPECT_EQ(formatOf("DIRECCION\nMayor 5\n").separator, ',');
    EXPECT_EQ(formatOf("DIRECCION\nMayor, 5, Madrid\n").separator, ';');
    EXPECT_EQ(formatOf("DIRECCION\nMayor, 5; Madrid\n").separator, '\t');
    EXPECT_EQ(formatOf("DIRECCION\n\"Mayor, 5\"\n").separator, ',') << "it may stand in quotes";
}

TEST(CsvFormat, EncodingIsRecognisedByItsMark) {
    EXPECT_EQ(formatOf("\xEF\xBB\xBF"
                       "A\n\xE1\xE1\n")
                  .encoding,
              TextEncoding::Utf8);
    EXPECT_TRUE(formatOf("\xEF\xBB\xBF"
                         "A\n")
                    .hasMark);
    const CsvFormat wide = formatOf(std::string_view("\xFF\xFE"
                                                     "A\0;\0B\0\n\0",
                                                     10));
    EXPECT_EQ(wide.encoding, TextEncoding::Utf16);
    EXPECT_FALSE(wide.isBigEndian);
    EXPECT_EQ(wide.separator, ';');
    EXPECT_TRUE(formatOf(std::string_view("\xFE\xFF\0A\0,\0B", 8)).isBigEndian);
}

TEST(CsvFormat, EncodingIsRecognisedByItsLetters) {
    EXPECT_EQ(formatOf("A\nMayor\n").encoding, TextEncoding::Utf8);
    EXPECT_EQ(formatOf("A\nAlcalá\n").encoding, TextEncoding::Utf8);
    EXPECT_EQ(formatOf("A\nAlcal\xE1\n").encoding, TextEncoding::Windows1252);
    EXPECT_EQ(formatOf("A\nAlcalá\nEspaña\nAlcal\xE1\n").encoding, TextEncoding::Utf8) << "one broken row";
    EXPECT_FALSE(formatOf("A\nAlcalá\n").hasMark);
}

TEST(CsvFormat, WhatIsGivenIsNotRecognised) {
    const CsvFormat format = recogniseFormat("A;B\nAlcalá\n", "prueba.csv", TextEncoding::Windows1252, ',');
    EXPECT_EQ(format.encoding, TextEncoding::Windows1252);
    EXPECT_EQ(format.separator, ',');
}

TEST(CsvFormat, AnEncodingThatTheMarkContradictsIsRefused) {
    const auto formatAs = [](std::string_view sample, TextEncoding encoding) {
        static_cast<void>(recogniseFormat(sample, "prueba.csv", encoding));
    };
    EXPECT_THROW(formatAs("\xEF\xBB\xBF"
                          "A\n",
                          TextEncoding::Windows1252),
                 Failure);
    EXPECT_THROW(formatAs(std::string_view("\xFF\xFE"
                                           "A\0",
                                           4),
                          TextEncoding::Utf8),
                 Failure);
    EXPECT_THROW(formatAs("A;B\n", TextEncoding::Utf16), Failure);
}

TEST(CsvFormat, BytesThatAreNotTextAreRefused) {
    EXPECT_THROW(static_cast<void>(formatOf(std::string_view("A\0B\0", 4))), Failure);
}

TEST(CsvFormat, PeekedBytesAreReadAgain) {
    TextSource source = textSource("0123456789");
    EXPECT_EQ(peek(source, 4), "0123");
    EXPECT_EQ(wholeText(source), "0123456789");
    EXPECT_EQ(peek(source, 4), "");
}

TEST(CsvFormat, Utf16GoesBackToWhatItWas) {
    const std::string text = "aÑ€𝄞\n";
    for (const bool isBigEndian : {false, true}) {
        const std::string bytes = (isBigEndian ? "\xFE\xFF" : "\xFF\xFE") + utf16FromUtf8(text, isBigEndian);
        EXPECT_EQ(wholeText(decoded(textSource(bytes), TextEncoding::Utf16, "prueba.csv")), text);
    }
}

TEST(CsvFormat, EncodingsHaveTheirUsualNames) {
    for (const std::string_view name : {"utf-8", "windows-1252", "utf-16"}) {
        EXPECT_EQ(textEncodingName(textEncodingNamed(name).value()), name);
    }
}

} // namespace
} // namespace loading
