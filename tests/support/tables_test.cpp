// The tables that tests create from rows written inline.
#include "support/Tables.h"

#include <gtest/gtest-spi.h>

#include <filesystem>
#include <stdexcept>

#include "dbase/dataset/dataset.h"
#include "support/TableTest.h"

namespace {

using ambrel::test::defineTable;

class InlineTable : public ambrel::test::TableTest {};

TEST_F(InlineTable, HoldsTheRowsInEveryType) {
    createTable(
        defineTable("MEZCLA", {"NOMBRE C10", "GRUPO N6", "PRECIO N8.2", "MENOR L", "ALTA D"}, {"NOMBRE"}),
        {{"CÁDIZ", "-7", "3.5", "T", "20240229"}, {"", "", "", "", ""}});
    dbase::Dataset table("DB", "MEZCLA");
    table.open();
    EXPECT_EQ(table.field("NOMBRE").text(), ambrel::test::ansi("CÁDIZ"));
    EXPECT_EQ(table.field("GRUPO").integer(), -7);
    EXPECT_EQ(table.field("PRECIO").number(), 3.5);
    EXPECT_TRUE(table.field("MENOR").logical());
    EXPECT_EQ(table.field("ALTA").text(), "20240229");
    ASSERT_TRUE(table.next());
    for (const dbase::Field* const field : table.fields()) {
        EXPECT_TRUE(field->isNull()) << field->name();
    }
}

TEST_F(InlineTable, LeavesColumnsBlankThatAreNotNamed) {
    createTable(defineTable("DOS", {"UNO C5", "OTRO C5"}, {"CLAVE=UNO+OTRO"}), {"OTRO"}, {{"b"}, {"a"}});
    dbase::Dataset table("DB", "DOS", "CLAVE");
    table.open();
    EXPECT_TRUE(table.field("UNO").isNull());
    EXPECT_EQ(table.field("OTRO").text(), "a");
}

TEST_F(InlineTable, RefusesValuesThatDoNotFit) {
    const dbase::TableDefinition definition = defineTable("CORTA", {"NOMBRE C3", "GRUPO N2"});
    EXPECT_THROW(createTable(definition, {{"ABCD", "1"}}), std::invalid_argument);
    EXPECT_THROW(createTable(defineTable("OTRA", {"NOMBRE C3", "GRUPO N2"}), {{"ABC", "100"}}),
                 std::invalid_argument);
    EXPECT_THROW(createTable(defineTable("MAS", {"NOMBRE C3"}), {{"A", "B"}}), std::invalid_argument);
}

TEST_F(InlineTable, ADamagedTableFailsTheTest) {
    const std::string file = createTable(defineTable("ROTA", {"NOMBRE C3"}, {"NOMBRE"}), {{"A"}, {"B"}});
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3);
    leaveUnchecked();
    ::testing::TestPartResultArray failures;
    {
        const ::testing::ScopedFakeTestPartResultReporter reporter(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        ambrel::test::expectSound(file);
    }
    EXPECT_GT(failures.size(), 0);
}

} // namespace
