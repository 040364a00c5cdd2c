// What is wrong with the writing of names.
#include "directory/audit/NameFaults.h"

#include <utility>

#include <gtest/gtest.h>

#include "support/Tables.h"

namespace ambrel::directory {
namespace {

using test::ansi;

TEST(NameFaults, FindSmallLettersWithAccentsAndPutThemInCapitals) {
    EXPECT_TRUE(hasSmallLetters(ansi("PEñA")));
    EXPECT_EQ(inCapitals(ansi("Peña Únª")), ansi("PEÑA ÚNª"));
    EXPECT_FALSE(hasSmallLetters(ansi("PEÑA ÚNICA 1º")));
}

TEST(NameFaults, FindBlanksAtTheStartAndSeveralInARow) {
    EXPECT_TRUE(hasNeedlessBlanks(" MAYOR"));
    EXPECT_TRUE(hasNeedlessBlanks("DOS  DE MAYO"));
    EXPECT_FALSE(hasNeedlessBlanks("DOS DE MAYO"));
    EXPECT_EQ(withoutNeedlessBlanks("  DOS   DE  MAYO"), "DOS DE MAYO");
}

TEST(NameFaults, GuessALetterOfSevenBitsOrOfAnotherCodePage) {
    for (const char* const broken : {"CASTA\\AR",
                                     "CASTA\xA5"
                                     "AR",
                                     "CASTA|AR"}) {
        const auto found = findBrokenLetters(broken);
        ASSERT_TRUE(found) << broken;
        EXPECT_EQ(found->likely, ansi("CASTAÑAR"));
        EXPECT_FALSE(found->isCertain());
    }
    EXPECT_FALSE(findBrokenLetters(ansi("CASTAÑAR")));
}

TEST(NameFaults, AreCertainOnlyWhereTheTextWasUtf8) {
    const auto found = findBrokenLetters("CASTA\xC3\x91"
                                         "AR");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->likely, ansi("CASTAÑAR"));
    EXPECT_TRUE(found->isCertain());
    EXPECT_FALSE(findBrokenLetters(ansi("SÃO PAULO, CORAÇÃO"))) << "Portuguese names have the same letter";
}

TEST(NameFaults, ReadLettersOfThreeBytesAndTextThatWasEncodedTwice) {
    const auto quoted = findBrokenLetters("L\xE2\x80\x99"
                                          "ALZINA");
    ASSERT_TRUE(quoted && quoted->isCertain());
    EXPECT_EQ(quoted->likely, "L\x92"
                              "ALZINA");
    const auto twice = findBrokenLetters("CASTA\xC3\x83\xE2\x80\x98"
                                         "AR");
    ASSERT_TRUE(twice && twice->isCertain());
    EXPECT_EQ(twice->likely, ansi("CASTAÑAR"));
}

TEST(NameFaults, AreNotCertainWhereSomethingOfUtf8IsLeft) {
    for (const auto& [broken, likely] :
         {std::pair(ansi("CAÃ‘ADA DE MARÃ"), ansi("CAÑADA DE MARÃ")), // cut within a letter
          std::pair(ansi("CASTAÃ‘AR DE ÃVILA"), ansi("CASTAÑAR DE ÃVILA")),
          std::pair(ansi("CAÃ‘ADA âº"), ansi("CAÑADA Âº"))}) { // what capitals make reads as UTF-8 again
        const auto found = findBrokenLetters(broken);
        ASSERT_TRUE(found) << broken;
        EXPECT_EQ(found->likely, likely);
        EXPECT_TRUE(found->wasUtf8);
        EXPECT_FALSE(found->isCertain()) << broken;
    }
}

TEST(NameFaults, FindLettersOfWhichTheSecondByteWasDropped) {
    for (const char* const name : {"ÃVILA", "MARÃA", "ALCALÃ DE HENARES", "CALLE DE MARÃ", "GARCÃ-A"}) {
        const auto found = findBrokenLetters(ansi(name));
        ASSERT_TRUE(found) << name;
        EXPECT_EQ(found->likely, "");
    }
    EXPECT_FALSE(findBrokenLetters(ansi("JOÃO DE MAGALHÃES, GUIMARÃeS")));
}

TEST(NameFaults, GuessNothingWhereALetterIsLost) {
    for (const char* const lost : {"CASTA\xEF\xBF\xBD"
                                   "AR",
                                   "CASTA\xCF\xBF\xBD"
                                   "AR",
                                   "GRAN\xA0VIA"}) {
        const auto found = findBrokenLetters(lost);
        ASSERT_TRUE(found) << lost;
        EXPECT_EQ(found->likely, "");
        EXPECT_FALSE(found->isCertain());
    }
    EXPECT_TRUE(findBrokenLetters("CASTA\xEF\xBF\xBD"
                                  "AR")
                    ->wasUtf8);
}

TEST(NameFaults, GuessSmallLettersOfAnotherCodePage) {
    const auto found = findBrokenLetters("CAMI\xA2N");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->likely, ansi("CAMIÓN"));
}

TEST(NameFaults, TakeAQuestionMarkForALostLetterOnlyBesideLetters) {
    const auto found = findBrokenLetters("ESPA?A");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->likely, "");
    EXPECT_FALSE(findBrokenLetters("KM 3 ?"));
    EXPECT_FALSE(findBrokenLetters(ansi("L'ALZINA/ENCINA, 2 (Nº 1-3) S.A. & C·L")));
}

TEST(NameFaults, FindBracketsWithoutTheirPair) {
    EXPECT_TRUE(hasOpenBracket("MAYOR (ARIJA"));
    EXPECT_TRUE(hasOpenBracket("MAYOR ARIJA)"));
    EXPECT_TRUE(hasOpenBracket("MAYOR )ARIJA("));
    EXPECT_TRUE(hasOpenBracket("MAYOR (ARIJA]"));
    EXPECT_FALSE(hasOpenBracket("MAYOR (ARIJA) [BARRIO (ALTO)]"));
}

} // namespace
} // namespace ambrel::directory
