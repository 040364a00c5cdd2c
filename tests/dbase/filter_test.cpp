// Filters: the conditions that a program gives.
#include <gtest/gtest.h>

#include "dbase/error.h"
#include "dbase/expression.h"

namespace {

using namespace dbase;

class FilterTest : public ::testing::Test {
protected:
    FilterTest() {
        schema_.columns = {{"ENT_MENOR", ColumnType::Logical, 1, 0, 0},
                           {"GRUPO", ColumnType::Numeric, 6, 0, 0},
                           {"NOMBRE", ColumnType::Character, 12, 0, 0},
                           {"ALTA", ColumnType::Date, 8, 0, 0},
                           {"TIPO", ColumnType::Character, 3, 0, 0}};
        completeLayout(schema_, "T.DBF");
        record_.assign(schema_.recordLength, ' ');
    }

    void set(const char* column, std::string_view text) {
        const Column& target = schema_.columns[schema_.find(column).value()];
        encodeText(std::span(record_).subspan(target.offset, target.width), text);
    }

    [[nodiscard]] bool test(std::string_view filter) const {
        return Expression::parse(filter, schema_, Dialect::Filter).test({&schema_, record_, 1});
    }

    [[nodiscard]] std::string refusal(std::string_view filter) const {
        try {
            (void)Expression::parse(filter, schema_, Dialect::Filter);
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::BadExpression);
            return error.what();
        }
        return {};
    }

    Schema schema_;
    std::vector<char> record_;
};

TEST_F(FilterTest, LogicalColumnIsComparedWithTrueAndFalse) {
    set("ENT_MENOR", "F");
    EXPECT_TRUE(test("ENT_MENOR=False"));
    EXPECT_FALSE(test("ENT_MENOR=True"));
    EXPECT_TRUE(test("ent_menor = FALSE"));
    set("ENT_MENOR", "T");
    EXPECT_FALSE(test("ENT_MENOR=False"));
    EXPECT_TRUE(test("ENT_MENOR<>False"));
    EXPECT_TRUE(test("ENT_MENOR"));
    EXPECT_TRUE(test("ENT_MENOR=.T."));
}

TEST_F(FilterTest, BlankLogicalIsFalse) {
    EXPECT_TRUE(test("ENT_MENOR=False"));
    set("ENT_MENOR", "?");
    EXPECT_TRUE(test("ENT_MENOR=False"));
}

TEST_F(FilterTest, NumberColumnIsComparedByValue) {
    set("GRUPO", "     1");
    EXPECT_TRUE(test("GRUPO=1"));
    EXPECT_TRUE(test("GRUPO = 1"));
    EXPECT_FALSE(test("GRUPO = 11"));
    EXPECT_TRUE(test("GRUPO > -1"));
    set("GRUPO", "    -2");
    EXPECT_TRUE(test("GRUPO=-2"));
}

TEST_F(FilterTest, TextEqualityComparesWholeTextsWithoutTrailingBlanks) {
    set("NOMBRE", "MADRID");
    EXPECT_TRUE(test("NOMBRE='MADRID'"));
    EXPECT_TRUE(test("NOMBRE=\"MADRID  \""));
    EXPECT_FALSE(test("NOMBRE='MADRI'"));
    EXPECT_FALSE(test("NOMBRE='MADRIDEJOS'"));
    EXPECT_FALSE(test("NOMBRE=''"));
    EXPECT_TRUE(test("NOMBRE<>'MADRI'"));
    EXPECT_TRUE(test("TIPO=''"));
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
    set("TIPO", "CL");
    EXPECT_TRUE(test("TIPO $ 'AV,CL,PZ'"));
    set("TIPO", "");
    EXPECT_FALSE(test("TIPO $ 'AV,CL,PZ'"));
}

TEST_F(FilterTest, WordsAndDottedWordsJoinConditions) {
    set("GRUPO", "5");
    EXPECT_TRUE(test("GRUPO=5 AND NOT ENT_MENOR"));
    EXPECT_TRUE(test("GRUPO=5 .AND. .NOT. ENT_MENOR"));
    EXPECT_TRUE(test("GRUPO=5.and.ENT_MENOR=False"));
    EXPECT_TRUE(test("GRUPO=1 or (GRUPO=5 and ENT_MENOR=False)"));
    EXPECT_FALSE(test("NOT (GRUPO=1 OR GRUPO=5)"));
    EXPECT_TRUE(test("GRUPO=1 OR GRUPO=5 AND ENT_MENOR=False"));
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

TEST_F(FilterTest, BareWordIsAColumnNeverAText) {
    EXPECT_NE(refusal("NOMBRE=MADRID").find("MADRID"), std::string::npos);
}

TEST_F(FilterTest, WrongTypesAndBrokenTextsAreRefused) {
    for (const char* filter : {"", "NOMBRE=1", "GRUPO='1'", "ENT_MENOR=1", "GRUPO=True", "NOMBRE=[A]",
                               "GRUPO=1 AND", "AND GRUPO=1", "GRUPO=1 GRUPO=2", "NOT", "FALTA=1", "GRUPO=1;",
                               "(GRUPO=1", "GRUPO=1)", "GRUPO AND ENT_MENOR"})
        EXPECT_FALSE(refusal(filter).empty()) << filter;
}

TEST_F(FilterTest, LongChainsAreParsedDeepNestsRefused) {
    std::string chain = "GRUPO=0";
    for (int i = 1; i < 300; ++i)
        chain += " OR GRUPO=" + std::to_string(i);
    set("GRUPO", "299");
    EXPECT_TRUE(test(chain));
    set("GRUPO", "300");
    EXPECT_FALSE(test(chain));
    std::string nots = "ENT_MENOR";
    for (int i = 0; i < 500; ++i)
        nots.insert(0, "NOT ");
    EXPECT_NE(refusal(nots).find("niveles"), std::string::npos);
    EXPECT_FALSE(refusal(std::string(5000, ' ') + "GRUPO=1").empty());
}

TEST_F(FilterTest, LeaningChainsAreBoundedToo) {
    std::string chain = "GRUPO";
    for (int i = 0; i < 300; ++i)
        chain += "-1+1";
    EXPECT_NE(refusal(chain + "=1").find("niveles"), std::string::npos);
}

} // namespace
