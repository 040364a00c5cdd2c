// Conditions as stored in index files: comparisons and logical operators.
#include "expression_fixture.h"

namespace {

using namespace dbase;

using ExpressionCondition = ExpressionTest;

TEST_F(ExpressionCondition, EqualsIsTrueWhenTheLeftTextBeginsWithTheRight) {
    set("COD", "ABC");
    EXPECT_TRUE(test("COD='AB'"));
    EXPECT_TRUE(test("COD=''"));
    EXPECT_FALSE(test("'AB'=COD"));
    EXPECT_FALSE(test("COD='AX'"));
    EXPECT_FALSE(test("COD<>'AB'"));
    EXPECT_TRUE(test("COD#'AX'"));
}

TEST_F(ExpressionCondition, TextsAreOrderedLikeTheirEquality) {
    set("COD", "ABC");
    EXPECT_TRUE(test("COD<'B'"));
    EXPECT_FALSE(test("COD<'AB'"));
    EXPECT_TRUE(test("COD<='AB'"));
    EXPECT_TRUE(test("COD>='AB'"));
    EXPECT_FALSE(test("COD>'AB'"));
    EXPECT_TRUE(test("COD>'AA'"));
}

TEST_F(ExpressionCondition, NumbersCompareByValue) {
    set("NUM", "10");
    EXPECT_TRUE(test("NUM=10"));
    EXPECT_TRUE(test("NUM>9.AND.NUM<11"));
    EXPECT_TRUE(test("NUM>=10"));
    EXPECT_FALSE(test("NUM<>10"));
    EXPECT_FALSE(test("NUM=1"));
    EXPECT_TRUE(test("NUM<=10.5"));
}

TEST_F(ExpressionCondition, BlankDatesCompareAfterAllOthers) {
    EXPECT_TRUE(test("ALTA>{31/12/9999}"));
    set("ALTA", "20240101");
    EXPECT_TRUE(test("ALTA<{}"));
    EXPECT_TRUE(test("ALTA>{31/12/2023}"));
}

TEST_F(ExpressionCondition, LogicalsCompareForEqualityOnly) {
    EXPECT_TRUE(test("MENOR=.F."));
    EXPECT_TRUE(test("MENOR<>.T."));
    EXPECT_FALSE(refusal("MENOR<.T.").empty());
}

TEST_F(ExpressionCondition, DollarMeansContainedIn) {
    set("NOMBRE", "SAN JUAN");
    EXPECT_TRUE(test("'JUAN'$NOMBRE"));
    EXPECT_FALSE(test("'juan' $ NOMBRE"));
    EXPECT_FALSE(test("NOMBRE$'SAN JUAN'")); // trailing blanks count
}

TEST_F(ExpressionCondition, NotBindsTighterThanAndAndAndTighterThanOr) {
    EXPECT_TRUE(test(".T. .OR. .F. .AND. .F."));
    EXPECT_FALSE(test("(.T. .OR. .F.) .AND. .F."));
    EXPECT_TRUE(test(".NOT. .F. .OR. .T. .AND. .F."));
    EXPECT_FALSE(test(".NOT. (.F. .OR. .T.)"));
    EXPECT_TRUE(test(".NOT..NOT.MENOR=.F."));
}

TEST_F(ExpressionCondition, WordsOfFiltersAreColumnNamesHere) {
    EXPECT_TRUE(mentions(refusal("MENOR=True"), "True"));
    EXPECT_FALSE(refusal("NUM=1 AND NUM=2").empty());
}

TEST_F(ExpressionCondition, TextsOfOtherDriversAreOrderedByByte) {
    set("COD", "\xD1");
    EXPECT_TRUE(test("COD>'O'"));
    set("COD", "a");
    EXPECT_TRUE(test("COD>'A'"));
}

// --- Drivers that order texts by weight

class CollatedCondition : public ExpressionTest, public ::testing::WithParamInterface<LanguageDriver> {
protected:
    CollatedCondition() : ExpressionTest(GetParam()) {}
};

TEST_P(CollatedCondition, TextsAreOrderedByWeight) {
    set("COD", "\xD1");
    EXPECT_TRUE(test("COD>'N'"));
    EXPECT_TRUE(test("COD<'O'"));
    set("COD", "a");
    EXPECT_TRUE(test("COD<'A'"));
    EXPECT_FALSE(test("COD='A'"));
}

TEST_P(CollatedCondition, TextsCompareByTheWeightOfTheirFirstDifference) {
    set("COD", "\xD1"
               "A"); // Ñ sorts between N and O, its byte after both
    EXPECT_TRUE(test("COD>'NZ'"));
    EXPECT_TRUE(test("COD<'OA'"));
    set("COD", "AB");
    EXPECT_TRUE(test("COD<'AC'"));
    EXPECT_FALSE(test("COD<'AB'"));
    EXPECT_TRUE(test("COD='AB'"));
}

TEST_P(CollatedCondition, ATextThatEndsFirstComesFirst) {
    set("COD", "AB");
    EXPECT_TRUE(test("TRIM(COD)<'ABC'"));
    const auto filtered = [&](const char* filter) {
        return Expression::parse(filter, schema_, Dialect::Filter).test(view());
    };
    EXPECT_TRUE(filtered("COD<'ABC'"));
    EXPECT_TRUE(filtered("COD>'A'"));
    EXPECT_FALSE(filtered("COD>'AB'"));
}

INSTANTIATE_TEST_SUITE_P(Drivers, CollatedCondition,
                         ::testing::Values(LanguageDriver::AnsiWestEurope, LanguageDriver::AnsiSpanish),
                         [](const auto& test) {
                             return std::string(test.param == LanguageDriver::AnsiSpanish ? "Spanish"
                                                                                          : "WestEurope");
                         });

} // namespace
