// Values as messages show them.
#include "dbase/system/quoted.h"

#include <gtest/gtest.h>

#include <functional>

#include "dbase/dbf/table_header.h"
#include "dbase/expression/expression.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/databases.h"

namespace dbase {
namespace {

TEST(Quoted, ShowsOneLineWhateverTheValueHolds) {
    EXPECT_EQ(inQuotes("Peñíscola"), "«Peñíscola»");
    EXPECT_EQ(inQuotes(""), "«»");
    EXPECT_EQ(inQuotes(std::string_view("a\nb\0c\x7F", 6)), "«a�b�c�»");
    EXPECT_EQ(inQuotes("A\xD1O"), "«A�O»");
}

TEST(Quoted, CutsALongValueBetweenCharacters) {
    std::string sixty, sixtyOne;
    for (int i = 0; i < 60; ++i) {
        sixty += "ñ";
    }
    sixtyOne = sixty + "ñ";
    EXPECT_EQ(inQuotes(sixty), "«" + sixty + "»");
    EXPECT_EQ(inQuotes(sixtyOne), "«" + sixty + "…»");
}

TEST(Quoted, ErrorsOfTheEngineAreShortWhateverTheyAreGiven) {
    const std::string endless(100'000, 'X');
    Schema schema;
    schema.columns = {{"C", ColumnType::Character, 5, 0, 0}};
    completeLayout(schema, {});
    Schema named = schema;
    named.columns.front().name = endless;
    const std::function<void()> operations[] = {
        [&] { static_cast<void>(databaseFolder(endless)); }, [&] { completeLayout(named, {}); },
        [&] { IndexFile::checkTags({}, schema, {{.name = endless, .expression = "C"}}); },
        [&] { IndexFile::checkTags({}, schema, {{.name = "T", .expression = endless}}); },
        [&] { static_cast<void>(Expression::parse(endless, schema, Dialect::Filter)); }};
    for (const auto& operation : operations) {
        try {
            operation();
            ADD_FAILURE() << "nothing was raised";
        } catch (const Error& error) {
            EXPECT_LT(std::string_view(error.what()).size(), 400U) << error.what();
            EXPECT_GT(std::string_view(error.what()).size(), 10U);
        }
    }
}

} // namespace
} // namespace dbase
