// Conversion between Windows-1252 and QString.
#include "services/Text.h"

#include <gtest/gtest.h>

namespace {

using ambrel::fromWindows1252;
using ambrel::toNearestWindows1252;
using ambrel::toWindows1252;

TEST(Text, BytesBecomeCharacters) {
    EXPECT_EQ(fromWindows1252("A CORU\xD1"
                              "A 5\x80 \x8A"),
              QString("A CORUÑA 5€ Š"));
    EXPECT_EQ(fromWindows1252(""), QString());
}

TEST(Text, CharactersBecomeBytes) {
    EXPECT_EQ(toWindows1252("CÁDIZ"), "C\xC1"
                                      "DIZ");
    EXPECT_EQ(toWindows1252(""), "");
}

TEST(Text, EveryByteSurvivesTheRoundTrip) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all.push_back(static_cast<char>(byte));
    }
    const QString text = fromWindows1252(all);
    EXPECT_EQ(text.size(), 256);
    EXPECT_EQ(toWindows1252(text), all);
    EXPECT_EQ(toNearestWindows1252(text.mid(32, 95)), all.substr(32, 95));
}

TEST(Text, TextThatWindows1252CannotHoldIsNull) {
    EXPECT_EQ(toWindows1252("ŁÓDŹ"), std::nullopt);
    EXPECT_EQ(toWindows1252("PLAZA 😀"), std::nullopt);
    EXPECT_EQ(toWindows1252(QString("n\u0303")), std::nullopt);
}

TEST(Text, NearestLetterHasNoMark) {
    EXPECT_EQ(toNearestWindows1252("ŁÓDŹ, Győr, Đ ı"), "L\xD3"
                                                       "DZ, Gyor, D i");
}

TEST(Text, NearestJoinsLetterAndMarkThatWereTypedApart) {
    EXPECT_EQ(toNearestWindows1252(QString("ESPAN\u0303A")), "ESPA\xD1"
                                                             "A");
}

TEST(Text, NearestTakesLigaturesApart) { EXPECT_EQ(toNearestWindows1252(QString("o\uFB01cina")), "oficina"); }

TEST(Text, NearestOfWhatIsNoLetterIsAQuestionMark) {
    EXPECT_EQ(toNearestWindows1252("😀 Ж 中"), "? ? ?");
    EXPECT_EQ(toNearestWindows1252(QString(QChar(0xD800))), "?");
}

TEST(Text, NearestKeepsALetterTogetherWithItsMarkInALongText) {
    QString text;
    std::string bytes;
    for (int i = 0; i < 1000; ++i) {
        text += QStringLiteral("xN\u0303");
        bytes += "x\xD1";
    }
    EXPECT_EQ(toNearestWindows1252(text), bytes);
    EXPECT_EQ(toNearestWindows1252(QString("😀").repeated(1000)), std::string(1000, '?'));
}

TEST(Text, NearestOfAMillionMarksIsFoundAtOnce) {
    const QString marks = QStringLiteral("\u0316\u0301"); // below and above: the second one joins the letter
    EXPECT_EQ(toNearestWindows1252('A' + marks + 'B'), "\xC1?B");
    const std::string bytes = toNearestWindows1252('A' + marks.repeated(500'000));
    EXPECT_EQ(bytes.substr(0, 3), "\xC1??");
    EXPECT_GE(bytes.size(), 900'000U);
}

TEST(Text, OnlyCharactersWithoutANearLetterAreLost) {
    for (const QString& kept :
         {QString(), QStringLiteral("¿QUÉ?"), QStringLiteral("ŁÓDŹ"), QStringLiteral("€ – ½")}) {
        EXPECT_FALSE(ambrel::losesCharacters(kept)) << kept.toStdString();
    }
    for (const QString& lost :
         {QStringLiteral("★"), QStringLiteral("¿QUÉ? 日"), QStringLiteral("500\u2011B")}) {
        EXPECT_TRUE(ambrel::losesCharacters(lost)) << lost.toStdString();
    }
}

} // namespace
