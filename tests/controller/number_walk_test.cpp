// The walk to the stretch that holds a house number.
#include "controller/NumberWalk.h"

#include "controller/StreetTables.h"

namespace {

using namespace ambrel;
using namespace postal_tests;

class NumberWalk : public StreetTables {
protected:
    void SetUp() override {
        addStreets({{"1", "ARENAL", "CL", "28013"},
                    {"10", "MAYOR", "CL", "28001", {1, 11}, {2, 12}},
                    {"11", "MAYOR", "CL", "28013", {13, 21}, {14, 14}},
                    {"12", "MAYOR", "CL", "28005", {23, 31}, {16, 30}},
                    {"20", "MAYOR", "PZ", "28012"},
                    {"30", "TOLEDO", "CL", "28005", {1, 9}, {2, 8}},
                    {"31", "TOLEDO", "CL", "28006", {11, 19}, {10, 18}}});
    }
};

TEST_F(NumberWalk, GoesToTheRowWhoseRangeHoldsTheNumber) {
    TDMCodPostales& tables = openIn("MADRID");
    for (const auto& [number, row] :
         {std::pair{1, "10"}, {11, "10"}, {12, "10"}, {13, "11"}, {25, "12"}, {30, "12"}}) {
        goToRow("10");
        EXPECT_TRUE(walkToNumber(tables, number)) << number;
        EXPECT_EQ(currentRow(), row) << number;
    }
}

TEST_F(NumberWalk, RangeOfOneNumberMatches) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("10");
    EXPECT_TRUE(walkToNumber(tables, 14));
    EXPECT_EQ(currentRow(), "11");
}

TEST_F(NumberWalk, BeginsAtTheCurrentRow) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("11");
    EXPECT_FALSE(walkToNumber(tables, 5)) << "number 5 is on a row before the current one";
}

TEST_F(NumberWalk, RowOfAnotherTypeEndsTheWalkOneRowBack) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("10");
    EXPECT_FALSE(walkToNumber(tables, 99)) << "the PZ row would hold 99";
    EXPECT_EQ(currentRow(), "12");
}

TEST_F(NumberWalk, RowOfAnotherStreetEndsTheWalkOneRowBack) {
    addStreets({{"13", "MAYOR", "ZZ", "28099", {1, 3}, {2, 4}}});
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("13");
    EXPECT_FALSE(walkToNumber(tables, 5));
    EXPECT_EQ(currentRow(), "13");
}

TEST_F(NumberWalk, WithoutEndOfTableTestStaysOnTheLastRow) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("30");
    EXPECT_FALSE(walkToNumber(tables, 99));
    EXPECT_EQ(currentRow(), "31");
}

TEST_F(NumberWalk, ZeroTriesTheEvenRangesOnly) {
    addStreets({{"40", "VELAZQUEZ", "CL", "28028", {-1, 1}, {2, 8}},
                {"41", "VELAZQUEZ", "CL", "28006", {3, 5}, {0, 0}}});
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("40");
    EXPECT_TRUE(walkToNumber(tables, 0));
    EXPECT_EQ(currentRow(), "41");
}

TEST_F(NumberWalk, EmptyTableHoldsNoNumber) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbPostal.setFilter("VIA = \"NADA\"");
    ASSERT_TRUE(tables.tbPostal.isEmpty());
    EXPECT_FALSE(walkToNumber(tables, 0));
    EXPECT_FALSE(walkToNumberWithoutType(tables, 0));
}

/// The variant for rows without type; in the order of NOMBREVIA, rows with and without type are mixed.
class NumberWalkWithoutType : public StreetTables {
protected:
    void SetUp() override {
        addStreets({{"10", "MAYOR", "", "28001", {1, 11}, {2, 12}},
                    {"11", "MAYOR", "CL", "28002"},
                    {"12", "MAYOR", "", "28003", {13, 21}, {14, 22}},
                    {"13", "MAYOR", "CL", "28004", {1, 99}, {2, 98}},
                    {"20", "TOLEDO", "", "28005"}});
    }
};

TEST_F(NumberWalkWithoutType, RowsWithATypeAreSkipped) {
    TDMCodPostales& tables = openIn("MADRID");
    tables.tbPostal.setTag("NOMBREVIA");
    goToRow("10");
    EXPECT_TRUE(walkToNumberWithoutType(tables, 15));
    EXPECT_EQ(currentRow(), "12") << "row 11 holds 15, too, but has a type";
}

TEST_F(NumberWalkWithoutType, OnlyRowsWithoutTypeAreTriedEvenWhenTheWalkBeginsOnATypedRow) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("11");
    EXPECT_FALSE(walkToNumberWithoutType(tables, 5)) << "row 11 itself holds 5";
    EXPECT_EQ(currentRow(), "11");
}

TEST_F(NumberWalkWithoutType, RowOfAnotherStreetEndsTheWalkAndItReturns) {
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("10");
    EXPECT_FALSE(walkToNumberWithoutType(tables, 77)) << "TOLEDO holds 77";
    EXPECT_EQ(currentRow(), "10");
}

TEST_F(NumberWalkWithoutType, EndOfTableEndsTheWalkAndItReturns) {
    addStreets(
        {{"30", "ZURBANO", "", "28010", {1, 3}, {2, 4}}, {"31", "ZURBANO", "", "28003", {5, 7}, {6, 8}}});
    TDMCodPostales& tables = openIn("MADRID");
    goToRow("30");
    EXPECT_FALSE(walkToNumberWithoutType(tables, 99));
    EXPECT_EQ(currentRow(), "30");
}

TEST_F(NumberWalkWithoutType, BothBoundsAreIncluded) {
    TDMCodPostales& tables = openIn("MADRID");
    for (const auto& [number, row] : {std::pair{11, "10"}, {2, "10"}, {13, "12"}, {22, "12"}}) {
        goToRow("10");
        EXPECT_TRUE(walkToNumberWithoutType(tables, number)) << number;
        EXPECT_EQ(currentRow(), row) << number;
    }
}

} // namespace
