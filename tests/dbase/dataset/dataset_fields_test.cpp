// Fields: values by type, what a column holds and refuses, and layouts that do not match the bound fields.
#include <gtest/gtest.h>

#include <algorithm>

#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class FieldsTest : public TownsTest {
protected:
    FieldsTest() { towns.open(); }

    void postAndReread() {
        towns.post();
        towns.refresh();
    }
    static std::optional<ErrorCode> setting(Field& field, const char* text) {
        return codeOf([&] { field.setText(text); });
    }
};

TEST_F(FieldsTest, EachKindReadsAsItsTypeAndAsText) {
    place(towns, 1);
    EXPECT_EQ(towns.field("CODE").kind(), FieldKind::Character);
    EXPECT_EQ(towns.field("CODE").text(), "28079");
    EXPECT_EQ(towns.field("CODE").integer(), 28079) << "a decimal text has a number";
    EXPECT_EQ(towns.field("GROUP").kind(), FieldKind::Integer);
    EXPECT_EQ(towns.field("GROUP").text(), "10");
    EXPECT_EQ(towns.field("GROUP").integer(), 10);
    EXPECT_EQ(towns.field("BALANCE").kind(), FieldKind::Number);
    EXPECT_EQ(towns.field("BALANCE").text(), "100.50");
    EXPECT_DOUBLE_EQ(towns.field("BALANCE").number(), 100.5);
    EXPECT_EQ(towns.field("SINCE").kind(), FieldKind::Date);
    EXPECT_EQ(towns.field("SINCE").text(), "20200115");
    EXPECT_EQ(towns.field("MINOR").kind(), FieldKind::Logical);
    EXPECT_EQ(towns.field("MINOR").text(), "False");
    EXPECT_FALSE(towns.field("MINOR").logical());
    EXPECT_EQ(towns.field("NAME").integer(), 0);
}

TEST_F(FieldsTest, BlankIsNullWhateverTheType) {
    append(towns, {{"CODE", "00000"}});
    for (const char* column : {"NAME", "GROUP", "BALANCE", "SINCE", "MINOR"}) {
        const Field& field = towns.field(column);
        EXPECT_TRUE(field.isNull()) << column;
        EXPECT_EQ(field.text(), "") << column;
        EXPECT_EQ(field.integer(), 0) << column;
        EXPECT_EQ(field.number(), 0) << column;
        EXPECT_FALSE(field.logical()) << column;
    }
    EXPECT_FALSE(towns.field("CODE").isNull());
}

TEST_F(FieldsTest, ReadingDropsTrailingBlanksOnly) {
    append(towns, {{"NAME", "  EL ESCORIAL   "}});
    towns.refresh();
    EXPECT_EQ(name(towns), "  EL ESCORIA") << "cut to 12 and not trimmed in front";
    append(towns, {{"NAME", " A B  "}});
    EXPECT_EQ(name(towns), " A B");
    EXPECT_EQ(towns.field("NAME").view(), " A B");
}

TEST_F(FieldsTest, TextLongerThanTheColumnIsCut) {
    place(towns, 5);
    change(towns, {{"NAME", "ALCALA DE HENARES"}, {"CODE", "2800599"}});
    towns.refresh();
    EXPECT_EQ(name(towns), "ALCALA DE HE");
    EXPECT_EQ(towns.field("CODE").text(), "28005");
}

TEST_F(FieldsTest, AssignedValuesOfEachKind) {
    towns.append();
    set(towns, {{"GROUP", "-12"}, {"BALANCE", "3.5"}, {"SINCE", "20240229"}, {"MINOR", "True"}});
    towns.field("CODE").setInteger(77);
    postAndReread();
    EXPECT_EQ(towns.field("GROUP").integer(), -12);
    EXPECT_EQ(towns.field("BALANCE").text(), "3.50");
    EXPECT_EQ(towns.field("SINCE").text(), "20240229");
    EXPECT_TRUE(towns.field("MINOR").logical());
    EXPECT_EQ(towns.field("CODE").text(), "77");
    towns.edit();
    towns.field("MINOR").setLogical(false);
    towns.field("GROUP").setInteger(5);
    towns.field("BALANCE").setInteger(-4);
    towns.field("SINCE").clear();
    towns.field("CODE").setText("");
    postAndReread();
    EXPECT_EQ(towns.field("MINOR").text(), "False");
    EXPECT_EQ(towns.field("GROUP").integer(), 5);
    EXPECT_EQ(towns.field("BALANCE").text(), "-4.00");
    EXPECT_TRUE(towns.field("SINCE").isNull());
    EXPECT_TRUE(towns.field("CODE").isNull());
}

TEST_F(FieldsTest, ValueThatTheTypeCannotHoldIsRefusedAndChangesNothing) {
    place(towns, 1);
    towns.edit();
    EXPECT_EQ(setting(towns.field("GROUP"), "ten"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("GROUP"), "1.5"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("GROUP"), "1234567"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("BALANCE"), "1234567.00"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("SINCE"), "20230229"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("SINCE"), "yesterday"), ErrorCode::BadValue);
    EXPECT_EQ(setting(towns.field("MINOR"), "perhaps"), ErrorCode::BadValue);
    EXPECT_EQ(codeOf([&] { towns.field("SINCE").setInteger(1); }), ErrorCode::BadValue);
    EXPECT_EQ(codeOf([&] { towns.field("NAME").setLogical(true); }), ErrorCode::BadValue);
    EXPECT_EQ(codeOf([&] { towns.field("PROV").setInteger(123); }), ErrorCode::BadValue)
        << "digits are not cut: they would be another number";
    EXPECT_FALSE(towns.isModified());
    EXPECT_EQ(towns.field("GROUP").integer(), 10);
    EXPECT_EQ(towns.field("SINCE").text(), "20200115");
}

TEST_F(FieldsTest, RefusalNamesTableValueAndField) {
    towns.edit();
    const Error error = errorOf([&] { towns.field("GROUP").setText("ten"); });
    const std::string text = error.what();
    EXPECT_NE(text.find("TOWNS"), std::string::npos);
    EXPECT_NE(text.find("ten"), std::string::npos);
    EXPECT_NE(text.find("GROUP"), std::string::npos);
}

TEST_F(FieldsTest, ByNameInAnyCaseElseNotFound) {
    EXPECT_EQ(towns.field("name").name(), "NAME");
    EXPECT_EQ(towns.findField("NOSUCH"), nullptr);
    const Error error = errorOf([&] { static_cast<void>(towns.field("NOSUCH")); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_NE(std::string(error.what()).find("NOSUCH"), std::string::npos);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos);
}

TEST_F(FieldsTest, FieldsComeInTheOrderOfTheFileCalculatedOnesAfterThem) {
    Dataset table("DB", "TOWNS");
    table.addCalculated("WHOLE", 20);
    table.bindInteger("GROUP");
    table.bindCharacter("NAME", 12);
    table.open();
    std::vector<std::string> names;
    for (const Field* field : table.fields()) {
        names.push_back(field->name());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"CODE", "PROV", "NAME", "GROUP", "BALANCE", "SINCE", "MINOR",
                                               "WHOLE"}));
    EXPECT_EQ(table.field("NAME").width(), 12u);
    EXPECT_EQ(table.field("WHOLE").width(), 20u);
}

TEST_F(FieldsTest, ClosedTableReadsBlank) {
    Field& field = towns.field("NAME");
    towns.close();
    EXPECT_EQ(field.text(), "");
    EXPECT_TRUE(field.isNull());
    EXPECT_TRUE(towns.bof() && towns.eof());
    towns.open();
    EXPECT_EQ(field.text(), "BARCELONA") << "the reference outlives the closing";
}

TEST_F(FieldsTest, AnotherTableBringsItsOwnFields) {
    createTable(ambrel::test::defineTable("STREETS", {"GROUP C3", "STREET C10"}), {{"ABC", "MAYOR"}});
    towns.close();
    towns.setTag("");
    towns.setTable("DB", "STREETS");
    towns.open();
    EXPECT_EQ(towns.fields().size(), 2u);
    EXPECT_EQ(towns.findField("NAME"), nullptr);
    EXPECT_EQ(towns.field("GROUP").kind(), FieldKind::Character);
    EXPECT_EQ(towns.field("GROUP").text(), "ABC");
    EXPECT_EQ(codeOf([&] { towns.setTable("DB", "TOWNS"); }), ErrorCode::BadState) << "it is open";
}

// --- 16-bit integers

TEST_F(FieldsTest, BoundIntegerTakes16BitsAndNoMore) {
    Dataset table("DB", "TOWNS", "CODE");
    Field& group = table.bindInteger("GROUP");
    table.open();
    table.edit();
    group.setInteger(32767);
    EXPECT_EQ(group.integer(), 32767);
    group.setInteger(-32768);
    EXPECT_EQ(group.integer(), -32768);
    EXPECT_EQ(codeOf([&] { group.setInteger(32768); }), ErrorCode::BadValue);
    EXPECT_EQ(codeOf([&] { group.setInteger(-32769); }), ErrorCode::BadValue);
    EXPECT_EQ(setting(group, "32768"), ErrorCode::BadValue);
    EXPECT_EQ(group.integer(), -32768);
    table.post();
    EXPECT_EQ(group.text(), "-32768");
}

TEST_F(FieldsTest, ALogicalColumnTakesTheWordsOfBothWritings) {
    place(towns, 1);
    towns.edit();
    Field& minor = towns.field("MINOR");
    for (const char* word : {"True", "T", "true", "1"}) {
        minor.setLogical(false);
        minor.setText(word);
        EXPECT_EQ(minor.text(), "True") << word;
        EXPECT_TRUE(minor.logical()) << word;
    }
    for (const char* word : {"False", "F", "false", "0"}) {
        minor.setLogical(true);
        minor.setText(word);
        EXPECT_EQ(minor.text(), "False") << word;
    }
    EXPECT_EQ(setting(minor, "sí"), ErrorCode::BadValue);
    EXPECT_EQ(codeOf([&] { towns.field("NAME").setLogical(false); }), ErrorCode::BadValue);
}

TEST_F(FieldsTest, BlanksMakeAnyColumnNull) {
    place(towns, 1);
    towns.edit();
    for (const char* column : {"GROUP", "BALANCE", "SINCE", "MINOR"}) {
        towns.field(column).setText("   ");
        EXPECT_TRUE(towns.field(column).isNull()) << column;
    }
}

TEST_F(FieldsTest, ANumberBeyondAnIntIsNoInt) {
    createTable(ambrel::test::defineTable("LARGE", {"N N12"}),
                {{"99999999999"}, {"-9999999999"}, {"2147483647"}});
    Dataset large("DB", "LARGE");
    large.open();
    EXPECT_EQ(large.field("N").integer(), 0);
    EXPECT_EQ(large.field("N").number(), 99999999999.0);
    EXPECT_TRUE(large.next());
    EXPECT_EQ(large.field("N").integer(), 0);
    EXPECT_TRUE(large.next());
    EXPECT_EQ(large.field("N").integer(), 2147483647);
}

TEST_F(FieldsTest, AFieldOfAClosedTableHasNoValueAndItsDeclaredWidth) {
    Dataset bound("DB", "TOWNS");
    Field& code = bound.bindCharacter("CODE", 5);
    bound.open();
    EXPECT_FALSE(code.isNull());
    bound.close();
    EXPECT_TRUE(code.isNull());
    EXPECT_EQ(code.text(), "");
    EXPECT_EQ(code.width(), 5U);
    EXPECT_EQ(codeOf([&] { code.setText("1"); }), ErrorCode::BadState);
    EXPECT_FALSE(bound.isReadOnly());
    EXPECT_EQ(bound.readOnlyReason(), "");
    const Error missing = errorOf([&] { (void)Dataset("DB", "TOWNS").field("STREET"); });
    EXPECT_EQ(missing.file(), "TOWNS") << "a table that is not open has no path";
}

TEST_F(FieldsTest, AColumnThatTheNextTableLacksIsNullAndCannotBeSet) {
    Field& balance = towns.field("BALANCE");
    towns.close();
    createTable(ambrel::test::defineTable("SHORT", {"CODE C5"}, {"CODE"}), {{"1"}});
    towns.setTable("DB", "SHORT");
    towns.open();
    EXPECT_TRUE(balance.isNull());
    EXPECT_EQ(balance.text(), "");
    EXPECT_EQ(towns.findField("BALANCE"), nullptr);
    EXPECT_EQ(towns.findField("code{"), nullptr);
    towns.edit();
    EXPECT_EQ(setting(balance, "1"), ErrorCode::BadState);
}

TEST_F(FieldsTest, AFloatColumnReadsAsANumber) {
    TableDefinition definition = ambrel::test::defineTable("FLOATS", {"F N8.2", "G N6", "H N10"});
    for (Column& column : definition.columns) {
        column.type = ColumnType::Float;
    }
    createTable(definition, {{"1.5", "7", "8"}});
    Dataset floats("DB", "FLOATS");
    floats.open();
    EXPECT_EQ(floats.field("F").kind(), FieldKind::Number);
    EXPECT_EQ(floats.field("F").number(), 1.5);
    EXPECT_EQ(floats.field("G").kind(), FieldKind::Integer);
    EXPECT_EQ(floats.field("H").kind(), FieldKind::Number) << "ten digits do not fit an int";
}

class IntegerWidths : public TownsTest, public ::testing::WithParamInterface<int> {};

TEST_P(IntegerWidths, AnyWidthBindsAndRefusesWhatItCannotHold) {
    const std::string width = std::to_string(GetParam());
    createTable(ambrel::test::defineTable("WIDE", {"N N" + width}, {"N"}), {{"7"}, {""}});
    Dataset table("DB", "WIDE", "N");
    Field& number = table.bindInteger("N");
    table.open();
    EXPECT_EQ(walk(table), (Records{2, 1}));
    EXPECT_EQ(number.integer(), 7);
    int largest = 1;
    for (int digit = 0; digit < std::min(GetParam(), 5); ++digit) {
        largest *= 10;
    }
    largest = std::min(largest - 1, 32767);
    table.edit();
    number.setInteger(largest);
    EXPECT_EQ(codeOf([&] { number.setInteger(largest + 1); }), ErrorCode::BadValue);
    table.post();
    EXPECT_EQ(number.integer(), largest);
    EXPECT_TRUE(exact(table, {{"N", largest}}));
}

INSTANTIATE_TEST_SUITE_P(Widths, IntegerWidths, ::testing::Values(1, 2, 4, 5, 6, 9, 10, 11, 20));

// --- Layouts that do not match

struct Misfit {
    const char* name;
    void (*bind)(Dataset&);
    const char* column;
};
void PrintTo(const Misfit& misfit, std::ostream* out) { *out << misfit.name; }

class MisfitTest : public TownsTest, public ::testing::WithParamInterface<Misfit> {};

TEST_P(MisfitTest, NamesFileAndColumnAndStaysClosed) {
    GetParam().bind(towns);
    const Error error = errorOf([&] { towns.open(); });
    EXPECT_EQ(error.code(), ErrorCode::BadLayout);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find(GetParam().column), std::string::npos) << error.what();
    EXPECT_FALSE(towns.isOpen());
    EXPECT_EQ(towns.state(), DatasetState::Closed);
}

INSTANTIATE_TEST_SUITE_P(
    Each, MisfitTest,
    ::testing::Values(
        Misfit{"NoSuchColumn", [](Dataset& table) { table.bindCharacter("STREET", 5); }, "STREET"},
        Misfit{"NarrowerThanTheFile", [](Dataset& table) { table.bindCharacter("NAME", 11); }, "NAME"},
        Misfit{"WiderThanTheFile", [](Dataset& table) { table.bindCharacter("NAME", 53); }, "NAME"},
        Misfit{"IntegerOnText", [](Dataset& table) { table.bindInteger("CODE"); }, "CODE"},
        Misfit{"IntegerOnDecimals", [](Dataset& table) { table.bindInteger("BALANCE"); }, "BALANCE"},
        Misfit{"TextOnNumber", [](Dataset& table) { table.bindCharacter("GROUP", 6); }, "GROUP"},
        Misfit{"LogicalOnText", [](Dataset& table) { table.bindLogical("NAME"); }, "NAME"},
        Misfit{"TextOnLogical", [](Dataset& table) { table.bindCharacter("MINOR", 1); }, "MINOR"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(TownsTest, FieldsAreBoundBeforeOpening) {
    towns.open();
    EXPECT_EQ(codeOf([&] { towns.bindCharacter("NAME", 12); }), ErrorCode::BadState);
    EXPECT_EQ(codeOf([&] { towns.addCalculated("WHOLE", 12); }), ErrorCode::BadState);
}

TEST_F(TownsTest, LaterFileThatDoesNotFitIsRefusedThoughAnEarlierOneDid) {
    towns.bindCharacter("NAME", 12);
    towns.open();
    towns.close();
    createTable(ambrel::test::defineTable("SHORT", {"CODE C5", "NAME C9"}, {"CODE"}), {});
    towns.setTable("DB", "SHORT");
    EXPECT_EQ(codeOf([&] { towns.open(); }), ErrorCode::BadLayout);
    towns.setTable("DB", "TOWNS");
    towns.open();
    EXPECT_EQ(name(towns), "BARCELONA");
}

} // namespace
} // namespace dbase
