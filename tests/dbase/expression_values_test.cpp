// Expressions whose parts change from row to row: choices, lengths taken from columns, keys by weight; and
// how much of a key some columns settle.
#include "expression_fixture.h"

namespace {

using namespace dbase;

using ExpressionValues = ExpressionTest;

TEST_F(ExpressionValues, AChoiceIsMadeForEachRow) {
    set("COD", "AB");
    set("NUM", "7");
    set("ALTA", "20240101");
    for (const char* minor : {"T", "F"}) {
        set("MENOR", minor);
        const bool isMinor = *minor == 'T';
        EXPECT_EQ(text("IIF(MENOR,COD,'nada ')"), isMinor ? "AB   " : "nada ");
        EXPECT_EQ(number("IIF(MENOR,NUM,-NUM)"), isMinor ? 7 : -7);
        EXPECT_EQ(parse("IIF(MENOR,ALTA,{})").evaluate(view()).hasValue, isMinor);
        EXPECT_EQ(test("IIF(MENOR,NUM=7,NUM=8)"), isMinor);
        EXPECT_EQ(test("IIF(MENOR,.F.,.T.)"), !isMinor);
    }
}

TEST_F(ExpressionValues, AConstantDateIsTheSameWhicheverWayItIsChosen) {
    EXPECT_EQ(text("DTOS(IIF(.T.,{31/12/1999},{}))"), "19991231");
    EXPECT_EQ(text("DTOS(IIF(.F.,{31/12/1999},{}))"), "        ");
}

TEST_F(ExpressionValues, DatesAreSeparatedByStrokesPointsOrDashes) {
    for (const char* written : {"{31/12/1999}", "{31-12-1999}", "{31.12.1999}", "{31/12/99}"})
        EXPECT_EQ(text("DTOS(" + std::string(written) + ")"), "19991231") << written;
    EXPECT_FALSE(refusal("{31/12/}").empty());
    EXPECT_FALSE(refusal("{31/12}").empty());
    EXPECT_FALSE(refusal("{30/2/2024}").empty());
}

TEST_F(ExpressionValues, ATabSeparatesAsABlankDoes) {
    set("COD", "AB");
    EXPECT_EQ(text("COD\t+\tCOD"), "AB   AB   ");
}

TEST_F(ExpressionValues, WordsAreKnownInAnyCaseAndLettersBeyondZAreNone) {
    set("COD", "ab");
    EXPECT_EQ(text("upper(cod)"), "AB   ");
    EXPECT_EQ(text("UpPeR(COD)"), "AB   ");
    EXPECT_FALSE(refusal("UPPE{(COD)").empty());
    EXPECT_TRUE(mentions(refusal("{PPER(COD)"), "{PPER"));
    EXPECT_TRUE(mentions(refusal("COD .~ND. COD"), ".~ND."));
}

TEST_F(ExpressionValues, ALengthMayComeFromAColumn) {
    set("NOMBRE", "MADRID");
    set("NUM", "3");
    EXPECT_EQ(text("LEFT(NOMBRE,NUM)"), "MAD         ");
    EXPECT_EQ(text("SUBSTR(NOMBRE,NUM,2)"), "DR");
    EXPECT_EQ(text("SUBSTR(NOMBRE,2,NUM)"), "ADR        ");
    EXPECT_EQ(text("RIGHT(TRIM(NOMBRE),2)"), "ID");
}

TEST_F(ExpressionValues, ATrimmedTextHasNoFixedPlaceForWhatFollows) {
    set("COD", "A");
    set("NOMBRE", "B");
    EXPECT_EQ(text("LEFT(TRIM(COD),3)+NOMBRE"), "AB             ");
    EXPECT_EQ(text("SUBSTR(TRIM(COD),1,3)+NOMBRE"), "AB             ");
    set("MENOR", "T");
    EXPECT_EQ(text("IIF(MENOR,TRIM(COD),COD)+NOMBRE"), "AB               ");
    EXPECT_EQ(text("IIF(MENOR,COD,TRIM(COD))+NOMBRE"), "A    B           ");
    EXPECT_EQ(text("IIF(MENOR,COD,'xy')+NOMBRE"), "A    B           ");
}

TEST_F(ExpressionValues, TextsNumbersAndDatesDoNotMix) {
    for (const char* expression : {"ALTA-ALTA", "ALTA+ALTA", "MENOR-MENOR", "COD$NUM", "NUM$COD", "COD>NUM"})
        EXPECT_FALSE(refusal(expression).empty()) << expression;
    EXPECT_TRUE(mentions(refusal("MENOR+MENOR"), "lógico"));
}

TEST_F(ExpressionValues, OperatorsWithoutAValueAreToldAsSuch) {
    for (const char* expression : {"MENOR .AND. .OR. MENOR", ".OR. MENOR", "COD = .NOT. MENOR", "(.AND.)"})
        EXPECT_TRUE(mentions(refusal(expression), "falta un valor")) << refusal(expression);
}

TEST_F(ExpressionValues, AControlCharacterIsShownAsAQuestionMark) {
    EXPECT_TRUE(mentions(refusal("COD+\x7F"), "COD+?"));
}

TEST_F(ExpressionValues, FloatColumnsAreNumbers) {
    schema_.columns[3].type = ColumnType::Float;
    set("SALDO", "    -1.50");
    EXPECT_EQ(number("SALDO+1"), -0.5);
}

// --- How much of the key the given columns settle

TEST_F(ExpressionValues, LettersOfEitherCaseAreSettledByTheirColumn) {
    EXPECT_EQ(covered("LOWER(COD+NOMBRE)", {"COD"}), 5u);
}

TEST_F(ExpressionValues, ALengthTakenFromAColumnSettlesNothing) {
    EXPECT_EQ(covered("LEFT(COD+NOMBRE,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,2,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,2,3)", {"COD"}), 3u);
}

TEST_F(ExpressionValues, OnlyTextsHaveASettledPart) {
    EXPECT_EQ(covered("NUM", {"NUM"}), 0u);
    EXPECT_EQ(parse("NUM").width(), 0u);
    EXPECT_EQ(covered("IIF(DELETED(),COD,NOMBRE)", {"COD", "NOMBRE"}), 0u);
}

TEST_F(ExpressionValues, ColumnsThatNobodySpeaksOfAreNotGiven) {
    EXPECT_EQ(parse("COD+NOMBRE").coveredWidth({true}), 5u);
    EXPECT_EQ(parse("COD+NOMBRE").coveredWidth({}), 0u);
}

// --- Where the driver orders texts by weight

class CollatedExpression : public ExpressionTest {
protected:
    CollatedExpression() : ExpressionTest(0x58) {}
};

TEST_F(CollatedExpression, TextsCompareByTheWeightOfTheirFirstDifference) {
    set("COD", "\xD1"
               "A"); // Ñ stands between N and O, its byte behind both
    EXPECT_TRUE(test("COD>'NZ'"));
    EXPECT_TRUE(test("COD<'OA'"));
    set("COD", "AB");
    EXPECT_TRUE(test("COD<'AC'"));
    EXPECT_FALSE(test("COD<'AB'"));
    EXPECT_TRUE(test("COD='AB'"));
}

TEST_F(CollatedExpression, ATextThatEndsFirstComesFirst) {
    set("COD", "AB");
    EXPECT_TRUE(test("TRIM(COD)<'ABC'"));
    const auto filtered = [&](const char* filter) {
        return Expression::parse(filter, schema_, Dialect::Filter).test(view());
    };
    EXPECT_TRUE(filtered("COD<'ABC'"));
    EXPECT_TRUE(filtered("COD>'A'"));
    EXPECT_FALSE(filtered("COD>'AB'"));
}

// --- Lists of words in a filter

TEST_F(ExpressionValues, ABlankWordIsInNoListAndAWordOnlyInItsOwn) {
    const auto filtered = [&](const char* filter) {
        return Expression::parse(filter, schema_, Dialect::Filter).test(view());
    };
    EXPECT_FALSE(filtered("COD$'AB CD'"));
    set("COD", "CD");
    EXPECT_TRUE(filtered("COD$'AB CD'"));
    EXPECT_FALSE(filtered("COD$'AB EF'"));
}

} // namespace
