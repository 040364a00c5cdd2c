// Names taken apart into folded words.
#include <gtest/gtest.h>

#include "suggest/Folding.h"
#include "suggest/Letters.h"
#include "support/Tables.h"

namespace ambrel::suggest {
namespace {

using ambrel::test::ansi;

/// The words that count, written out, with their numbers after "=".
std::string folded(const std::string& utf8) {
    std::string text;
    for (const NameWord& word : foldName(ansi(utf8))) {
        if (counts(word.role)) {
            text += (text.empty() ? "" : " ") + word.text;
            if (word.number != 0 && !isDigit(word.text.front())) {
                text += "=" + std::to_string(word.number);
            }
        }
    }
    return text;
}

TEST(Folding, CaseAccentsAndPunctuationDoNotCount) {
    EXPECT_EQ(folded("Ávila"), "AVILA");
    EXPECT_EQ(folded("  gran-vía. "), "GRAN VIA");
    EXPECT_EQ(folded("Vilanova i la Geltrú"), "VILANOVA GELTRU");
    EXPECT_EQ(folded("Plaça"), "PLACA");
    EXPECT_EQ(folded("Paral·lel"), "PARALLEL");
}

TEST(Folding, EnyeIsALetterOfItsOwn) {
    EXPECT_EQ(folded("España"), ansi("ESPAÑA"));
    EXPECT_NE(folded("España"), folded("Espana"));
    EXPECT_EQ(soundOf(folded("España")), soundOf(folded("Espana")));
}

TEST(Folding, ArticlesDoNotCountWhereverTheyStand) {
    for (const char* name : {"A Coruña", "Coruña, A", "CORUÑA (A)", "Coruña"}) {
        EXPECT_EQ(folded(name), ansi("CORUÑA")) << name;
    }
    EXPECT_EQ(folded("ROZAS DE MADRID (LAS)"), "ROZAS MADRID");
    EXPECT_EQ(folded("L'Hospitalet"), "HOSPITALET");
    EXPECT_EQ(folded("Palmas, Las"), "PALMAS");
    EXPECT_EQ(folded("JARA DE LA"), "JARA");
}

TEST(Folding, NameOfSmallWordsAloneKeepsThem) {
    EXPECT_EQ(folded("A"), "A");
    EXPECT_EQ(folded("La"), "LA");
}

TEST(Folding, ShortFormsAreWrittenOut) {
    EXPECT_EQ(folded("Sta. Teresa"), "SANTA TERESA");
    EXPECT_EQ(folded("Dr. Fleming"), "DOCTOR FLEMING");
    EXPECT_EQ(folded("Gral. Mola"), "GENERAL MOLA");
    EXPECT_EQ(folded("Mª Auxiliadora"), "MARIA AUXILIADORA");
    EXPECT_EQ(folded("Hnos. García"), "HERMANOS GARCIA");
}

TEST(Folding, ElidedArticleIsNotAShortForm) {
    EXPECT_EQ(folded("S'Algar"), "ALGAR");
    EXPECT_EQ(folded("S. Juan"), "SAN JUAN");
}

TEST(Folding, NumbersAreKnownInWordsAndRomanFigures) {
    EXPECT_EQ(folded("2 de Mayo"), "2 MAYO");
    EXPECT_EQ(folded("Dos de Mayo"), "DOS=2 MAYO");
    EXPECT_EQ(folded("Alfonso XII"), "ALFONSO XII=12");
    EXPECT_EQ(folded("Felipe V"), "FELIPE V=5");
    EXPECT_EQ(folded("Juan XXIII"), "JUAN XXIII=23");
    EXPECT_EQ(folded("Alfonso X"), "ALFONSO X=10");
    EXPECT_EQ(folded("Carlos XXXIX"), "CARLOS XXXIX=39");
    EXPECT_EQ(folded("1º de Mayo"), "1 MAYO");
}

TEST(Folding, SingleLettersAndGalicianArticlesAreNotNumbers) {
    EXPECT_EQ(folded("V"), "V");
    EXPECT_EQ(folded("Rúa dos Olmos"), "RUA OLMOS");
}

TEST(Folding, ThingsInBracketsAreAppended) {
    const auto words = foldName("MAYOR (ARIJA)");
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[0].role, WordRole::Plain);
    EXPECT_EQ(words[1].role, WordRole::Appended);
}

TEST(Folding, SoundsThatAreConfusedAreEqual) {
    const std::pair<const char*, const char*> alike[] = {
        {"VELAZQUEZ", "BELASQUES"}, {"HUERTA", "UERTA"}, {"GINER", "JINER"},        {"LLANO", "YANO"},
        {"CARRERA", "CARERA"},      {"ZAFRA", "SAFRA"},  {"CERVANTES", "SERBANTES"}};
    for (const auto& [one, other] : alike) {
        EXPECT_EQ(soundOf(one), soundOf(other)) << one;
    }
    EXPECT_NE(soundOf("CASA"), soundOf("CAZO"));
}

/// The readings of a typed street: words, then "|" and the number.
std::vector<std::string> readings(const std::string& utf8) {
    const TypedStreet street = readStreet(ansi(utf8));
    std::vector<std::string> texts;
    for (const auto& reading : street.readings) {
        std::string text;
        for (std::size_t i = reading.first; i < reading.last; ++i) {
            text += (text.empty() ? "" : " ") + street.words[i].literal;
        }
        texts.push_back(reading.number.empty() ? text : text + "|" + reading.number);
    }
    return texts;
}

TEST(TypedStreet, TypeAtTheBeginningMayOrMayNotBelongToTheName) {
    EXPECT_EQ(readings("c/ gran via"), (std::vector<std::string>{"C GRAN VIA", "GRAN VIA"}));
    EXPECT_EQ(readings("gran via"), (std::vector<std::string>{"GRAN VIA"}));
    EXPECT_EQ(readings("Mayor"), (std::vector<std::string>{"MAYOR"}));
}

TEST(TypedStreet, TypeMayStandAfterAComma) {
    const TypedStreet street = readStreet("Mayor, calle");
    ASSERT_EQ(street.readings.size(), 2U);
    EXPECT_EQ(street.readings[1].last, 1U);
    EXPECT_NE(street.readings[1].types & readStreet("calle X").types, 0U);
}

TEST(TypedStreet, NumberMayFollowTheStreet) {
    EXPECT_EQ(readings("Sta. Teresa 5"), (std::vector<std::string>{"STA TERESA 5", "STA TERESA|5"}));
    EXPECT_EQ(readings("Mayor nº 12 bis").back(), "MAYOR|12 bis");
    EXPECT_EQ(readings("2 de Mayo"), (std::vector<std::string>{"2 DE MAYO"}));
    EXPECT_EQ(readings("Mayor s/n"), (std::vector<std::string>{"MAYOR S N", "MAYOR|s/n"}));
}

TEST(TypedStreet, ANumberThatIsNotThatOfTheHouseStaysWithItsWord) {
    EXPECT_EQ(readings("Mayor km 5").back(), "MAYOR|km 5");
    EXPECT_EQ(readings("Mayor, piso 3 B").back(), "MAYOR|piso 3 B");
    EXPECT_EQ(readings("Mayor 12, piso 3")[1], "MAYOR|12, piso 3");
}

} // namespace
} // namespace ambrel::suggest
