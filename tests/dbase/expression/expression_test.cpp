// The values of expressions: columns, literals, operators, functions.
#include "expression_fixture.h"

namespace {

using namespace dbase;

// --- Elements

TEST_F(ExpressionTest, CharacterColumnKeepsItsBlanks) {
    set("COD", "AB");
    EXPECT_EQ(text("COD"), "AB   ");
    EXPECT_EQ(text("cod"), "AB   ");
    EXPECT_EQ(parse("COD").width(), 5u);
}

TEST_F(ExpressionTest, NumberColumnIsItsValueAndBlankIsZero) {
    EXPECT_EQ(number("NUM"), 0);
    set("NUM", "  -12");
    set("SALDO", "   12.50");
    EXPECT_EQ(number("NUM"), -12);
    EXPECT_EQ(number("SALDO"), 12.5);
    set("NUM", "******");
    EXPECT_EQ(number("NUM"), 0);
    set("NUM", "1.5");
    EXPECT_EQ(number("NUM"), 1.5);
}

TEST_F(ExpressionTest, FloatColumnsAreNumbers) {
    schema_.columns[3].type = ColumnType::Float;
    set("SALDO", "    -1.50");
    EXPECT_EQ(number("SALDO+1"), -0.5);
}

TEST_F(ExpressionTest, DateColumnIsADayOrNull) {
    EXPECT_FALSE(parse("ALTA").evaluate(view()).hasValue);
    set("ALTA", "20240101");
    const Value value = parse("ALTA").evaluate(view());
    EXPECT_EQ(value.type, ValueType::Date);
    EXPECT_TRUE(value.hasValue);
    EXPECT_EQ(value.day, 2460311);
}

TEST_F(ExpressionTest, LogicalColumnBlankIsFalse) {
    EXPECT_FALSE(test("MENOR"));
    set("MENOR", "T");
    EXPECT_TRUE(test("MENOR"));
    set("MENOR", "?");
    EXPECT_FALSE(test("MENOR"));
}

TEST_F(ExpressionTest, TextLiteralsHaveThreeKindsOfQuotes) {
    EXPECT_EQ(text("'a b'"), "a b");
    EXPECT_EQ(text("\"it's\""), "it's");
    EXPECT_EQ(text("[\"x\"]"), "\"x\"");
    EXPECT_EQ(text("''"), "");
}

TEST_F(ExpressionTest, NumberLiterals) {
    EXPECT_EQ(number("12"), 12);
    EXPECT_EQ(number("1.5"), 1.5);
    EXPECT_EQ(number(".5"), 0.5);
    EXPECT_EQ(number("5."), 5);
    EXPECT_EQ(number("-3"), -3);
    EXPECT_EQ(number("- -3"), 3);
    EXPECT_EQ(number("+3"), 3);
}

TEST_F(ExpressionTest, LogicalLiterals) {
    for (const char* yes : {".T.", ".t.", ".Y."}) {
        EXPECT_TRUE(test(yes)) << yes;
    }
    for (const char* no : {".F.", ".f.", ".N."}) {
        EXPECT_FALSE(test(no)) << no;
    }
}

TEST_F(ExpressionTest, DateLiteralsAreDayMonthYear) {
    set("ALTA", "20240201");
    EXPECT_TRUE(test("ALTA={01/02/24}"));
    EXPECT_TRUE(test("ALTA = { 1/2/2024 }"));
    EXPECT_FALSE(test("ALTA={02/01/24}"));
    set("ALTA", "19500201");
    EXPECT_TRUE(test("ALTA={01/02/50}"));
    set("ALTA", "");
    EXPECT_TRUE(test("ALTA={}"));
    EXPECT_TRUE(test("ALTA={  /  /  }"));
}

TEST_F(ExpressionTest, DatesAreSeparatedByStrokesPointsOrDashes) {
    for (const char* written : {"{31/12/1999}", "{31-12-1999}", "{31.12.1999}", "{31/12/99}"}) {
        EXPECT_EQ(text("DTOS(" + std::string(written) + ")"), "19991231") << written;
    }
    EXPECT_FALSE(refusal("{31/12/}").empty());
    EXPECT_FALSE(refusal("{31/12}").empty());
    EXPECT_FALSE(refusal("{30/2/2024}").empty());
}

TEST_F(ExpressionTest, BlanksMayStandAnywhere) {
    set("COD", "abcde");
    EXPECT_EQ(text("  UPPER ( LEFT( COD , 2 ) )  "), "AB");
}

TEST_F(ExpressionTest, ATabSeparatesAsABlankDoes) {
    set("COD", "AB");
    EXPECT_EQ(text("COD\t+\tCOD"), "AB   AB   ");
}

// --- Texts and numbers

TEST_F(ExpressionTest, SumOfTextsKeepsAllBlanks) {
    set("COD", "AB");
    set("NOMBRE", "XYZ");
    EXPECT_EQ(text("COD+NOMBRE"), "AB   XYZ         ");
    EXPECT_EQ(parse("COD+NOMBRE").width(), 17u);
    EXPECT_EQ(text("COD + '-' + COD"), "AB   -AB   ");
}

TEST_F(ExpressionTest, DifferenceOfTextsMovesTheBlanksToTheEnd) {
    set("COD", "AB");
    set("NOMBRE", "XYZ");
    EXPECT_EQ(text("COD-NOMBRE"), "ABXYZ            ");
    EXPECT_EQ(text("COD-'/'-NOMBRE"), "AB/XYZ            ");
    EXPECT_EQ(parse("COD-NOMBRE").width(), 17u);
}

TEST_F(ExpressionTest, NumbersAreAddedAndSubtracted) {
    set("NUM", "10");
    EXPECT_EQ(number("NUM+1-3"), 8);
    EXPECT_EQ(number("NUM-(1-3)"), 12);
    EXPECT_EQ(number("-NUM+1"), -9);
}

TEST_F(ExpressionTest, TextLongerThanTheScratchAreaIsBuiltWhole) {
    set("NOMBRE", "ABCDEFGHIJKL");
    std::string expression = "NOMBRE", expected = "ABCDEFGHIJKL";
    for (int i = 0; i < 20; ++i) {
        expression += "+NOMBRE";
        expected += "ABCDEFGHIJKL";
    }
    EXPECT_EQ(text("UPPER(" + expression + ")"), expected);
    EXPECT_EQ(text("SPACE(254)+SPACE(254)+UPPER(" + expression + ")"), std::string(508, ' ') + expected);
}

// --- Functions

TEST_F(ExpressionTest, FunctionNamesMayBeCutToFourLetters) {
    set("COD", "abcde");
    EXPECT_EQ(text("SUBS(COD,2,2)"), "bc");
    EXPECT_EQ(text("uppe(COD)"), "ABCDE");
    EXPECT_EQ(text("SUBST(COD,2,2)"), "bc");
    EXPECT_FALSE(refusal("SUB(COD,2,2)").empty());
    EXPECT_FALSE(refusal("SUBSTRI(COD,2,2)").empty());
}

TEST_F(ExpressionTest, WordsAreKnownInAnyCaseAndLettersBeyondZAreNone) {
    set("COD", "ab");
    EXPECT_EQ(text("upper(cod)"), "AB   ");
    EXPECT_EQ(text("UpPeR(COD)"), "AB   ");
    EXPECT_FALSE(refusal("UPPE{(COD)").empty());
    EXPECT_TRUE(mentions(refusal("{PPER(COD)"), "{PPER"));
    EXPECT_TRUE(mentions(refusal("COD .~ND. COD"), ".~ND."));
}

TEST_F(ExpressionTest, UpperAndLowerFollowTheCodePage) {
    set("NOMBRE", "\xF1"
                  "and\xFA \xDF 1");
    EXPECT_EQ(text("UPPER(NOMBRE)"), "\xD1"
                                     "AND\xDA \xDF 1   ");
    EXPECT_EQ(text("LOWER(UPPER(NOMBRE))"), "\xF1"
                                            "and\xFA \xDF 1   ");
    EXPECT_EQ(parse("UPPER(NOMBRE)").width(), 12u);
}

TEST_F(ExpressionTest, LeftRightAndSubstrCutTexts) {
    set("COD", "ABCDE");
    EXPECT_EQ(text("LEFT(COD,2)"), "AB");
    EXPECT_EQ(text("RIGHT(COD,2)"), "DE");
    EXPECT_EQ(text("SUBSTR(COD,2,3)"), "BCD");
    EXPECT_EQ(text("SUBSTR(COD,4)"), "DE");
    EXPECT_EQ(parse("SUBSTR(COD,4)").width(), 2u);
}

TEST_F(ExpressionTest, CutsBeyondTheEndAreShorter) {
    set("COD", "ABCDE");
    EXPECT_EQ(text("LEFT(COD,9)"), "ABCDE");
    EXPECT_EQ(text("RIGHT(COD,9)"), "ABCDE");
    EXPECT_EQ(text("SUBSTR(COD,4,9)"), "DE");
    EXPECT_EQ(text("SUBSTR(COD,6,2)"), "");
    EXPECT_EQ(text("SUBSTR(COD,99)"), "");
    EXPECT_EQ(text("LEFT(COD,-1)"), "");
    EXPECT_EQ(text("SUBSTR(COD,0,2)"), "AB");
    EXPECT_EQ(parse("SUBSTR(COD,4,9)").width(), 2u);
}

TEST_F(ExpressionTest, CutsByAColumnHaveTheWidthOfTheText) {
    set("COD", "ABCDE");
    set("NUM", "2");
    const Expression expression = parse("LEFT(COD,NUM)");
    EXPECT_EQ(expression.width(), 5u);
    EXPECT_EQ(expression.evaluate(view()).text, "AB   ");
    EXPECT_EQ(text("SUBSTR(COD,NUM,NUM)"), "BC   ");
    EXPECT_EQ(text("SUBSTR(COD,2,NUM)"), "BC  ");
    EXPECT_EQ(text("SUBSTR(COD,NUM,2)"), "BC");
}

TEST_F(ExpressionTest, StrIsRightJustifiedAndRounded) {
    set("NUM", "12");
    set("SALDO", "2.675");
    EXPECT_EQ(text("STR(NUM)"), "        12");
    EXPECT_EQ(text("STR(NUM,5)"), "   12");
    EXPECT_EQ(text("STR(SALDO,6,2)"), "  2.68");
    EXPECT_EQ(text("STR(SALDO,3)"), "  3");
    EXPECT_EQ(text("STR(-NUM,5)"), "  -12");
    EXPECT_EQ(parse("STR(NUM,5)").width(), 5u);
}

TEST_F(ExpressionTest, StrThatDoesNotFitIsStars) {
    set("NUM", "12345");
    EXPECT_EQ(text("STR(NUM,3)"), "***");
    EXPECT_EQ(text("STR(NUM,6,2)"), "******");
}

TEST_F(ExpressionTest, DtosOfABlankDateIsBlank) {
    EXPECT_EQ(text("DTOS(ALTA)"), "        ");
    set("ALTA", "20240131");
    EXPECT_EQ(text("DTOS(ALTA)"), "20240131");
    set("ALTA", "20240231");
    EXPECT_EQ(text("DTOS(ALTA)"), "        ");
}

// Deliberate: the default order of the programs that write such keys.
TEST_F(ExpressionTest, DtocIsMonthDayYear) {
    set("ALTA", "20240131");
    EXPECT_EQ(text("DTOC(ALTA)"), "01/31/24");
    set("ALTA", "");
    EXPECT_EQ(text("DTOC(ALTA)"), "  /  /  ");
}

TEST_F(ExpressionTest, ValReadsTheNumberAtTheStart) {
    for (const auto& [written, value] :
         {std::pair{"  12.5abc", 12.5}, std::pair{"-3 4", -3.0}, std::pair{"abc", 0.0}, std::pair{"", 0.0},
          std::pair{"1.2.3", 1.2}, std::pair{"-", 0.0}, std::pair{"+7", 7.0}, std::pair{"1e3", 1.0}}) {
        set("NOMBRE", written);
        EXPECT_EQ(number("VAL(NOMBRE)"), value) << written;
    }
}

TEST_F(ExpressionTest, TrimmedResultsArePaddedAgainToTheirWidth) {
    set("COD", " AB");
    EXPECT_EQ(text("TRIM(COD)"), " AB  ");
    EXPECT_EQ(text("RTRIM(COD)"), " AB  ");
    EXPECT_EQ(text("LTRIM(COD)"), "AB   ");
    EXPECT_EQ(text("ALLTRIM(COD)"), "AB   ");
    EXPECT_EQ(text("ALLTRIM(COD)+'/'+TRIM(COD)"), "AB/ AB     ");
    EXPECT_EQ(text("RIGHT(TRIM(COD),2)"), "AB");
    EXPECT_EQ(parse("TRIM(COD)").width(), 5u);
}

TEST_F(ExpressionTest, ATrimmedTextHasNoFixedPlaceForWhatFollows) {
    set("COD", "A");
    set("NOMBRE", "B");
    EXPECT_EQ(text("LEFT(TRIM(COD),3)+NOMBRE"), "AB             ");
    EXPECT_EQ(text("SUBSTR(TRIM(COD),1,3)+NOMBRE"), "AB             ");
    set("MENOR", "T");
    EXPECT_EQ(text("IIF(MENOR,TRIM(COD),COD)+NOMBRE"), "AB               ");
    EXPECT_EQ(text("IIF(MENOR,COD,TRIM(COD))+NOMBRE"), "A    B           ");
    EXPECT_EQ(text("IIF(MENOR,COD,'xy')+NOMBRE"), "A    B           ");
}

TEST_F(ExpressionTest, IifChoosesAValueOfEveryType) {
    set("MENOR", "T");
    EXPECT_EQ(text("IIF(MENOR,'si','nunca')"), "si   ");
    EXPECT_EQ(number("IIF(.NOT. MENOR,1,NUM+2)"), 2);
    EXPECT_TRUE(test("IIF(MENOR,ALTA={},NUM=9)"));
    set("ALTA", "20240131");
    EXPECT_TRUE(parse("IIF(MENOR,ALTA,{})").evaluate(view()).hasValue);
}

TEST_F(ExpressionTest, AChoiceIsMadeForEachRow) {
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

TEST_F(ExpressionTest, AConstantDateIsTheSameWhicheverWayItIsChosen) {
    EXPECT_EQ(text("DTOS(IIF(.T.,{31/12/1999},{}))"), "19991231");
    EXPECT_EQ(text("DTOS(IIF(.F.,{31/12/1999},{}))"), "        ");
}

TEST_F(ExpressionTest, SpaceRecnoAndDeleted) {
    EXPECT_EQ(text("'a'+SPACE(3)+'b'"), "a   b");
    EXPECT_EQ(number("RECNO()"), 42);
    EXPECT_FALSE(test("DELETED()"));
    record_[0] = '*';
    EXPECT_TRUE(test("DELETED()"));
    EXPECT_FALSE(test(".NOT. DELETED()"));
}

TEST_F(ExpressionTest, NumbersBeyondDoubleAreHarmless) {
    EXPECT_EQ(number("VAL('" + std::string(200, '9') + "')"), 1e200);
    EXPECT_EQ(text("STR(VAL('" + std::string(190, '9') + "'),3)"), "***");
    EXPECT_EQ(text("LEFT(COD,VAL('" + std::string(190, '9') + "'))").size(), 5u);
}

} // namespace
