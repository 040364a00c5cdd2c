// What an index asks of its key expression: its columns, and how much of a key the values of some of them
// determine.
#include "expression_fixture.h"

namespace {

using namespace dbase;

using ExpressionOfAKey = ExpressionTest;

TEST_F(ExpressionOfAKey, SegmentsAreTheColumnsSideBySide) {
    const auto single = parse("NUM").segments();
    ASSERT_EQ(single.size(), 1u);
    EXPECT_EQ(single[0].column, 2u);
    EXPECT_EQ(single[0].offset, 18);
    EXPECT_EQ(single[0].width, 6);
    EXPECT_EQ(parse("COD+NOMBRE+COD").segments().size(), 3u);
    EXPECT_EQ(parse("(COD+(NOMBRE+COD))").segments().size(), 3u);
}

TEST_F(ExpressionOfAKey, AnythingButColumnsHasNoSegments) {
    for (const char* expression :
         {"COD-NOMBRE", "COD+'x'", "UPPER(COD)", "COD+UPPER(NOMBRE)", "NUM+SALDO", "'x'", "NUM=1"}) {
        EXPECT_TRUE(parse(expression).segments().empty()) << expression;
    }
}

TEST_F(ExpressionOfAKey, PlainColumnIsExactlyOneColumn) {
    EXPECT_TRUE(parse("COD").isPlainColumn());
    EXPECT_TRUE(parse("(ALTA)").isPlainColumn());
    EXPECT_FALSE(parse("COD+COD").isPlainColumn());
    EXPECT_FALSE(parse("UPPER(COD)").isPlainColumn());
}

// --- How much of the key the given columns determine

TEST_F(ExpressionOfAKey, CoveredWidthCountsTheLeadingGivenColumns) {
    EXPECT_EQ(covered("COD+NOMBRE+STR(NUM,4)", {"COD"}), 5u);
    EXPECT_EQ(covered("COD+NOMBRE+STR(NUM,4)", {"COD", "NOMBRE"}), 17u);
    EXPECT_EQ(covered("COD+NOMBRE+STR(NUM,4)", {"COD", "NOMBRE", "NUM"}), 21u);
    EXPECT_EQ(covered("COD+NOMBRE+STR(NUM,4)", {"NOMBRE", "NUM"}), 0u);
    EXPECT_EQ(covered("COD+NOMBRE+STR(NUM,4)", {"COD", "NUM"}), 5u);
    EXPECT_EQ(covered("COD+NOMBRE", {}), 0u);
}

TEST_F(ExpressionOfAKey, CoveredWidthLooksThroughFunctionsThatKeepPositions) {
    EXPECT_EQ(covered("UPPER(COD+NOMBRE)", {"COD"}), 5u);
    EXPECT_EQ(covered("LEFT(COD+NOMBRE,3)", {"COD"}), 3u);
    EXPECT_EQ(covered("LEFT(COD+NOMBRE,9)", {"COD"}), 5u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,3,9)", {"COD"}), 3u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,7)", {"COD"}), 0u);
    EXPECT_EQ(covered("'x'+COD+NOMBRE", {"COD"}), 6u);
}

TEST_F(ExpressionOfAKey, LettersOfEitherCaseAreSettledByTheirColumn) {
    EXPECT_EQ(covered("LOWER(COD+NOMBRE)", {"COD"}), 5u);
}

TEST_F(ExpressionOfAKey, CoveredWidthStopsAtTextsOfVaryingLength) {
    EXPECT_EQ(covered("COD+TRIM(NOMBRE)+COD", {"COD"}), 5u);
    EXPECT_EQ(covered("TRIM(COD)+NOMBRE", {"COD"}), 0u);
    EXPECT_EQ(covered("TRIM(COD)+NOMBRE", {"COD", "NOMBRE"}), 17u);
    EXPECT_EQ(covered("COD-NOMBRE", {"COD"}), 0u);
    EXPECT_EQ(covered("COD-NOMBRE", {"COD", "NOMBRE"}), 17u);
    EXPECT_EQ(covered("IIF(MENOR,COD,NOMBRE)", {"COD", "NOMBRE"}), 0u);
}

TEST_F(ExpressionOfAKey, ALengthTakenFromAColumnSettlesNothing) {
    EXPECT_EQ(covered("LEFT(COD+NOMBRE,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,2,NUM)", {"COD"}), 0u);
    EXPECT_EQ(covered("SUBSTR(COD+NOMBRE,2,3)", {"COD"}), 3u);
}

TEST_F(ExpressionOfAKey, CoveredWidthNeverIncludesTheRecordNumber) {
    EXPECT_EQ(covered("COD+STR(RECNO(),5)", {"COD"}), 5u);
    EXPECT_EQ(covered("STR(RECNO(),5)", {}), 0u);
}

TEST_F(ExpressionOfAKey, OnlyTextsHaveASettledPart) {
    EXPECT_EQ(covered("NUM", {"NUM"}), 0u);
    EXPECT_EQ(parse("NUM").width(), 0u);
    EXPECT_EQ(covered("IIF(DELETED(),COD,NOMBRE)", {"COD", "NOMBRE"}), 0u);
}

TEST_F(ExpressionOfAKey, ColumnsThatNobodySpeaksOfAreNotGiven) {
    EXPECT_EQ(parse("COD+NOMBRE").coveredWidth({true}), 5u);
    EXPECT_EQ(parse("COD+NOMBRE").coveredWidth({}), 0u);
}

} // namespace
