// Datasets on tables written by another program: orders, bookmarks and changes of tag where equal keys are
// in no order and numbers are encoded differently.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "dbase/support/ForeignTables.h"
#include "dbase/table/towns_fixture.h"

namespace dbase {
namespace {

class DatasetOnForeignTable : public TownsTest, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        listing_ = test::listingOf(GetParam());
        test::copyForeignTable(GetParam(), folder.path());
        table_.setTable("DB", GetParam());
        table_.open();
    }
    /// The records of a tag that a dataset shows: deleted ones stay in the tag, but invisible.
    Records visible(const test::ListedTag& tag) const {
        Records records(tag.order);
        std::erase_if(records, [&](RecordNumber record) {
            return std::find(listing_.deleted.begin(), listing_.deleted.end(), record) !=
                   listing_.deleted.end();
        });
        return records;
    }

    test::Listing listing_;
    Dataset table_;
};

TEST_P(DatasetOnForeignTable, WalksEveryTagBothWays) {
    for (const test::ListedTag& tag : listing_.tags) {
        table_.setTag(tag.name);
        Records expected = visible(tag);
        EXPECT_EQ(walk(table_), expected) << tag.name;
        std::reverse(expected.begin(), expected.end());
        EXPECT_EQ(walkBack(table_), expected) << tag.name;
    }
}

TEST_P(DatasetOnForeignTable, BookmarksFindEveryRecordInEveryTag) {
    for (const test::ListedTag& tag : listing_.tags) {
        table_.setTag(tag.name);
        const Records records = visible(tag);
        for (std::size_t i = 0; i < records.size(); i += 1 + records.size() / 50) {
            ASSERT_TRUE(table_.goTo(Bookmark(records[i]))) << tag.name << " record " << records[i];
            ASSERT_EQ(table_.next(), i + 1 < records.size()) << tag.name;
            ASSERT_EQ(table_.recordNumber(), records[std::min(i + 1, records.size() - 1)]) << tag.name;
        }
    }
}

TEST_P(DatasetOnForeignTable, ChangesOfTagKeepTheRecord) {
    for (const test::ListedTag& from : listing_.tags) {
        for (const RecordNumber record : visible(from)) {
            if (record % 17 != 0) {
                continue;
            }
            for (const test::ListedTag& to : listing_.tags) {
                table_.setTag(from.name);
                ASSERT_TRUE(table_.goTo(Bookmark(record)));
                table_.setTag(to.name);
                if (!to.isUnique) {
                    ASSERT_EQ(table_.recordNumber(), record) << from.name << " to " << to.name;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Fixtures, DatasetOnForeignTable,
                         ::testing::Values("CALLES", "COLACION", "CORTAS", "ETIQ", "GRANDE", "MUNIS",
                                           "NUMEROS", "RETAG", "UNICA", "VACIA"),
                         [](const auto& test) { return std::string(test.param); });

// --- A tag whose expression the engine does not understand

TEST_F(TownsTest, TagThatIsNotUnderstoodCanBeWalkedButNotSoughtInAndLeavesTheTableReadOnly) {
    const std::string file = createTable(
        ambrel::test::defineTable("ODD", {"CODE C3"}, {"CODE", "UP=UPPER(CODE)"}), {{"b"}, {"C"}, {"a"}});
    const std::string index = file.substr(0, file.size() - 3) + "MDX";
    test::Bytes bytes = test::readFile(index);
    const std::string_view known = "UPPER", unknown = "SOUND";
    const auto at = std::search(bytes.begin(), bytes.end(), known.begin(), known.end());
    ASSERT_NE(at, bytes.end());
    std::ranges::copy(unknown, at);
    test::writeFile(index, bytes);
    leaveUnchecked();

    Dataset odd("DB", "ODD", "UP");
    odd.open();
    EXPECT_EQ(walk(odd), (Records{3, 1, 2}));
    EXPECT_EQ(walkBack(odd), (Records{2, 1, 3}));
    EXPECT_TRUE(odd.goTo(Bookmark(1)));
    odd.setTag("CODE");
    EXPECT_EQ(odd.recordNumber(), 1u);
    odd.setTag("UP");
    EXPECT_EQ(odd.recordNumber(), 1u);
    odd.refresh();
    EXPECT_TRUE(odd.next());
    EXPECT_EQ(odd.recordNumber(), 2u);
    const Error error = errorOf([&] { static_cast<void>(odd.seek({{"CODE", "a"}}, SeekMode::Nearest)); });
    EXPECT_NE(std::string(error.what()).find("SOUND(CODE)"), std::string::npos) << error.what();
    EXPECT_TRUE(odd.isReadOnly());
    EXPECT_NE(odd.readOnlyReason().find("UP"), std::string::npos);
    EXPECT_EQ(codeOf([&] { odd.edit(); }), ErrorCode::ReadOnly);
}

} // namespace
} // namespace dbase
