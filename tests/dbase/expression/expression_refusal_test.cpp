// Expression texts that are not understood, or that are malicious.
#include "expression_fixture.h"

namespace {

using namespace dbase;

using ExpressionRefusal = ExpressionTest;

TEST_F(ExpressionRefusal, RefusalNamesTextAndPosition) {
    const std::string refused = refusal("COD+FALTA");
    EXPECT_TRUE(mentions(refused, "COD+FALTA")) << refused;
    EXPECT_TRUE(mentions(refused, "posición 5")) << refused;
    EXPECT_TRUE(refused.ends_with("FALTA")) << refused;
}

TEST_F(ExpressionRefusal, RefusalIsUtf8WhateverTheTextHolds) {
    const std::string refused = refusal("A\xD1O\x01");
    EXPECT_TRUE(mentions(refused, "AÑO?")) << refused;
}

TEST_F(ExpressionRefusal, AControlCharacterIsShownAsAQuestionMark) {
    EXPECT_TRUE(mentions(refusal("COD+\x7F"), "COD+?"));
}

TEST_F(ExpressionRefusal, UnknownFunctionsAreRefusedByName) {
    EXPECT_TRUE(mentions(refusal("DESCEND(COD)"), "DESCEND"));
    EXPECT_TRUE(mentions(refusal("SOUNDEX(COD)"), "SOUNDEX"));
    EXPECT_TRUE(mentions(refusal("COD(1)"), "COD"));
}

TEST_F(ExpressionRefusal, MixedTypesAreRefused) {
    for (const char* expression :
         {"COD+NUM",     "NUM-COD",   "ALTA+1",   "ALTA+ALTA",     "ALTA-ALTA",       "MENOR+MENOR",
          "MENOR-MENOR", "COD=NUM",   "COD>NUM",  "NUM='1'",       "ALTA='20240101'", "NUM$COD",
          "COD$NUM",     "-COD",      "+COD",     ".NOT. COD",     "COD .AND. MENOR", "UPPER(NUM)",
          "STR(COD)",    "DTOS(COD)", "VAL(NUM)", "LEFT(COD,COD)", "IIF(COD,1,2)",    "IIF(MENOR,1,'a')"}) {
        EXPECT_FALSE(refusal(expression).empty()) << expression;
    }
    EXPECT_TRUE(mentions(refusal("MENOR+MENOR"), "lógico"));
}

TEST_F(ExpressionRefusal, WrongArgumentsAreRefused) {
    for (const char* expression :
         {"UPPER()", "UPPER(COD,COD)", "LEFT(COD)", "STR(NUM,5,1,1)", "RECNO(1)", "SPACE()", "SPACE(NUM)",
          "SPACE(255)", "SPACE(-1)", "STR(NUM,NUM)", "STR(NUM,0)", "STR(NUM,255)", "STR(NUM,5,-1)",
          "IIF(MENOR,1)", "UPPER(COD,)", "UPPER(,COD)"}) {
        EXPECT_FALSE(refusal(expression).empty()) << expression;
    }
}

TEST_F(ExpressionRefusal, OperatorsWithoutAValueAreReportedAsSuch) {
    for (const char* expression : {"MENOR .AND. .OR. MENOR", ".OR. MENOR", "COD = .NOT. MENOR", "(.AND.)"}) {
        EXPECT_TRUE(mentions(refusal(expression), "falta un valor")) << refusal(expression);
    }
}

TEST_F(ExpressionRefusal, DateLiteralThatDoesNotExistIsRefused) {
    for (const char* expression : {"ALTA={31/02/24}", "ALTA={1/2}", "ALTA={x}", "ALTA={1/2/3/4}",
                                   "ALTA={1/2/20245}", "ALTA={01/02/24"}) {
        EXPECT_FALSE(refusal(expression).empty()) << expression;
    }
}

TEST_F(ExpressionRefusal, BrokenTextsAreRefused) {
    for (const char* expression :
         {"",      "   ",  "COD+", "+",    "(COD",     "COD)",        "()",    "COD COD",     "'abc",
          "\"abc", "[abc", "COD=", "=COD", "COD==COD", "COD=COD=COD", ".AND.", "MENOR .AND.", ".NOT.",
          ".X.",   ".",    "..",   "COD;", "COD*2",    "NUM/2",       "1A",    "1.2.3",       "COD!",
          "A->B",  "{",    "}",    "@",    "\\",       "\xFF"}) {
        EXPECT_FALSE(refusal(expression).empty()) << expression;
    }
    EXPECT_FALSE(refusal(std::string_view("COD\0+COD", 8)).empty());
}

TEST_F(ExpressionRefusal, MemoColumnsAreRefused) {
    schema_.columns[0].type = ColumnType::Memo;
    EXPECT_TRUE(mentions(refusal("COD"), "memo"));
}

TEST_F(ExpressionRefusal, TextsLongerThanTheIndexHoldsAreRefused) {
    std::string expression = "COD";
    while (expression.size() < 220) {
        expression += ' ';
    }
    EXPECT_EQ(refusal(expression), "");
    EXPECT_TRUE(mentions(refusal(expression + ' '), "220"));
}

TEST_F(ExpressionRefusal, DeepNestingIsRefusedNotFollowed) {
    EXPECT_EQ(refusal(std::string(90, '(') + "1" + std::string(90, ')')), "");
    EXPECT_TRUE(mentions(refusal(std::string(109, '(') + "1" + std::string(109, ')')), "niveles"));
    EXPECT_TRUE(mentions(refusal(std::string(150, '-') + "1"), "niveles"));
    EXPECT_FALSE(refusal(std::string(220, '(')).empty());
}

} // namespace
