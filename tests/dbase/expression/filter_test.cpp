// Filters: the conditions that a program gives.
#include "expression_fixture.h"

namespace {

using namespace dbase;

class FilterTest : public ExpressionTest {
protected:
    FilterTest() : ExpressionTest(LanguageDriver::AnsiUs, Dialect::Filter) {}
};

TEST_F(FilterTest, LogicalColumnIsComparedWithTrueAndFalse) {
    set("MENOR", "F");
    EXPECT_TRUE(test("MENOR=False"));
    EXPECT_FALSE(test("MENOR=True"));
    EXPECT_TRUE(test("menor = FALSE"));
    set("MENOR", "T");
    EXPECT_FALSE(test("MENOR=False"));
    EXPECT_TRUE(test("MENOR<>False"));
    EXPECT_TRUE(test("MENOR"));
    EXPECT_TRUE(test("MENOR=.T."));
}

TEST_F(FilterTest, BlankLogicalIsFalse) {
    EXPECT_TRUE(test("MENOR=False"));
    set("MENOR", "?");
    EXPECT_TRUE(test("MENOR=False"));
}

TEST_F(FilterTest, NumberColumnIsComparedByValue) {
    set("NUM", "     1");
    EXPECT_TRUE(test("NUM=1"));
    EXPECT_TRUE(test("NUM = 1"));
    EXPECT_FALSE(test("NUM = 11"));
    EXPECT_TRUE(test("NUM > -1"));
    set("NUM", "    -2");
    EXPECT_TRUE(test("NUM=-2"));
}

TEST_F(FilterTest, TextEqualityComparesWholeTextsWithoutTrailingBlanks) {
    set("NOMBRE", "MADRID");
    EXPECT_TRUE(test("NOMBRE='MADRID'"));
    EXPECT_TRUE(test("NOMBRE=\"MADRID  \""));
    EXPECT_FALSE(test("NOMBRE='MADRI'"));
    EXPECT_FALSE(test("NOMBRE='MADRIDEJOS'"));
    EXPECT_FALSE(test("NOMBRE=''"));
    EXPECT_TRUE(test("NOMBRE<>'MADRI'"));
    EXPECT_TRUE(test("COD=''"));
}

TEST_F(FilterTest, TextsAreOrderedByWholeText) {
    set("NOMBRE", "MADRID");
    EXPECT_TRUE(test("NOMBRE>'MADRI'"));
    EXPECT_TRUE(test("NOMBRE<'MADRIDEJOS'"));
    EXPECT_TRUE(test("NOMBRE>='MADRID' AND NOMBRE<='MADRID'"));
}

TEST_F(FilterTest, TextEndsAtItsFirstZero) {
    set("NOMBRE", std::string_view("LUGO\0\0\0\0\0\0\0\0", 12));
    EXPECT_TRUE(test("NOMBRE='LUGO'"));
}

TEST_F(FilterTest, ContainedInIgnoresTrailingBlanksAndBlankTexts) {
    set("COD", "CL");
    EXPECT_TRUE(test("COD $ 'AV,CL,PZ'"));
    EXPECT_FALSE(test("COD $ 'AV,PZ'"));
    set("COD", "");
    EXPECT_FALSE(test("COD $ 'AV,CL,PZ'"));
}

TEST_F(FilterTest, WordsAndDottedWordsJoinConditions) {
    set("NUM", "5");
    EXPECT_TRUE(test("NUM=5 AND NOT MENOR"));
    EXPECT_TRUE(test("NUM=5 .AND. .NOT. MENOR"));
    EXPECT_TRUE(test("NUM=5.and.MENOR=False"));
    EXPECT_TRUE(test("NUM=1 or (NUM=5 and MENOR=False)"));
    EXPECT_FALSE(test("NOT (NUM=1 OR NUM=5)"));
    EXPECT_TRUE(test("NUM=1 OR NUM=5 AND MENOR=False"));
}

TEST_F(FilterTest, DatesAreComparedWithLiterals) {
    set("ALTA", "20240315");
    EXPECT_TRUE(test("ALTA={15/03/2024}"));
    EXPECT_TRUE(test("ALTA>={01/01/24} AND ALTA<{01/01/25}"));
}

TEST_F(FilterTest, FunctionsWorkAsInKeys) {
    set("NOMBRE", "madrid");
    EXPECT_TRUE(test("UPPER(NOMBRE)='MADRID'"));
    EXPECT_TRUE(test("LEFT(NOMBRE,2)='ma'"));
    EXPECT_TRUE(test("TRIM(NOMBRE)+'!'='madrid!'"));
}

TEST_F(FilterTest, BareWordIsAColumnNeverAText) { EXPECT_TRUE(mentions(refusal("NOMBRE=MADRID"), "MADRID")); }

TEST_F(FilterTest, WrongTypesAndBrokenTextsAreRefused) {
    for (const char* filter :
         {"", "NOMBRE=1", "NUM='1'", "MENOR=1", "NUM=True", "NOMBRE=[A]", "NUM=1 AND", "AND NUM=1",
          "NUM=1 NUM=2", "NOT", "FALTA=1", "NUM=1;", "(NUM=1", "NUM=1)", "NUM AND MENOR"}) {
        EXPECT_FALSE(refusal(filter).empty()) << filter;
    }
}

TEST_F(FilterTest, LongChainsAreParsedDeepNestsRefused) {
    std::string chain = "NUM=0";
    for (int i = 1; i < 300; ++i) {
        chain += " OR NUM=" + std::to_string(i);
    }
    set("NUM", "299");
    EXPECT_TRUE(test(chain));
    set("NUM", "300");
    EXPECT_FALSE(test(chain));
    std::string nots = "MENOR";
    for (int i = 0; i < 500; ++i) {
        nots.insert(0, "NOT ");
    }
    EXPECT_TRUE(mentions(refusal(nots), "niveles"));
    EXPECT_FALSE(refusal(std::string(5000, ' ') + "NUM=1").empty());
}

TEST_F(FilterTest, LeaningChainsAreBoundedToo) {
    std::string chain = "NUM";
    for (int i = 0; i < 300; ++i) {
        chain += "-1+1";
    }
    EXPECT_TRUE(mentions(refusal(chain + "=1"), "niveles"));
}

} // namespace
