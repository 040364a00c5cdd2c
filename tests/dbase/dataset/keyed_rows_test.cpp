// Rows looked up by their key, as seeking and walking would show them.
#include "dbase/dataset/keyed_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <random>

#include "dbase/lock/read_scope.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/table/towns_fixture.h"
#include "support/Seed.h"

namespace dbase {
namespace {

class KeyedRowsTest : public TownsTest {
protected:
    KeyedRowsTest() { towns.open(); }

    static Records recordsOf(std::span<const RecordView> rows) {
        Records records;
        for (const RecordView& row : rows) {
            records.push_back(row.number);
        }
        return records;
    }
    /// The rows with a key, by seeking and then walking while the fields have the values.
    static Records walked(Dataset& table, const Key& key) {
        Records records;
        for (bool on = exact(table, key); on; on = table.next()) {
            const bool isEqual = std::ranges::all_of(key, [&](const KeyPart& part) {
                return table.field(part.field).text() == std::get<std::string>(part.value);
            });
            if (!isEqual) {
                break;
            }
            records.push_back(table.recordNumber());
        }
        return records;
    }
};

TEST_F(KeyedRowsTest, AllRowsWithTheKeyAreFoundInTheOrderOfTheTag) {
    KeyedRows byCode(towns, {"CODE"});
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
    EXPECT_EQ(recordsOf(byCode.find({"28079"})), (Records{1}));
    EXPECT_EQ(recordsOf(byCode.find({"28014"})), Records());
    EXPECT_EQ(recordsOf(byCode.find({"99999"})), Records()) << "after the last one";
}

TEST_F(KeyedRowsTest, TheyHaveTheBytesOfTheRecords) {
    KeyedRows byCode(towns, {"code"});
    const std::span<const RecordView> rows = byCode.find({"28013"});
    ASSERT_EQ(rows.size(), 2U);
    const Column& name = towns.schema().columns[*towns.schema().find("NAME")];
    EXPECT_EQ(rows[0].raw(name), "ARANJUEZ    ");
    EXPECT_EQ(rows[1].raw(name), "APEADERO    ");
}

TEST_F(KeyedRowsTest, LeadingFieldsFindEveryKeyThatBeginsWithThem) {
    towns.setTag("THREE");
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"PROV"}).find({"28"})), walked(towns, {{"PROV", "28"}}));
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"PROV"}).find({"28"})), (Records{5, 7, 3, 1}));
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"PROV", "NAME"}).find({"28", "ALCALA"})), (Records{5}));
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"PROV", "NAME"}).find({"28", "ALC"})), Records())
        << "values are whole";
}

TEST_F(KeyedRowsTest, ADescendingTagAndOneWithAConditionAreSearchedToo) {
    towns.setTag("FALLING");
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"NAME"}).find({"MADRID"})), (Records{1}));
    towns.setTag("BIG");
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"NAME"}).find({"MADRID"})), (Records{1}));
    EXPECT_EQ(recordsOf(KeyedRows(towns, {"NAME"}).find({"ALCALA"})), Records());
}

TEST_F(KeyedRowsTest, TheDatasetStaysWhereItIsAndItsRangeAndFilterHideNothing) {
    KeyedRows byCode(towns, {"CODE"});
    towns.setRange({{"CODE", "08019"}}, {{"CODE", "08101"}});
    towns.setFilter("MINOR=False");
    place(towns, 4);
    int told = 0;
    const auto subscription = towns.listen([&](DatasetChange) { ++told; });
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
    EXPECT_EQ(towns.recordNumber(), 4U);
    EXPECT_EQ(told, 0);
}

TEST_F(KeyedRowsTest, WhatOthersAddChangeAndDeleteIsSeen) {
    KeyedRows byCode(towns, {"CODE"});
    other.open();
    append(other, {{"CODE", "28013"}, {"NAME", "NUEVA"}});
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7, 9}));
    place(other, 3);
    other.erase();
    place(other, 7);
    change(other, {{"CODE", "28014"}});
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{9}));
    EXPECT_EQ(recordsOf(byCode.find({"28014"})), (Records{7}));
}

TEST_F(KeyedRowsTest, ATableWithoutTagAndAMissingColumnAreRefused) {
    EXPECT_EQ(codeOf([&] { KeyedRows(towns, {"NOTHING"}); }), ErrorCode::NotFound);
    towns.setTag({});
    EXPECT_EQ(codeOf([&] { KeyedRows(towns, {"CODE"}); }), ErrorCode::BadState);
}

TEST_F(KeyedRowsTest, ManyEqualKeysOverManyBlocksAreFoundAsWalkingShowsThem) {
    std::mt19937 engine(ambrel::test::seedOfThisRun());
    const auto random = [&] { return static_cast<unsigned>(engine()); };
    std::vector<Row> rows;
    for (int i = 0; i < 3000; ++i) {
        // A few names have hundreds of rows, most have some.
        const unsigned name = random() % 3 == 0 ? random() % 4 : random() % 700;
        rows.push_back({std::to_string(10000 + random() % 90000), std::to_string(10 + random() % 3),
                        "N" + std::to_string(name), "1", "1", "", "F"});
    }
    createTable(layout("MANY"), rows);
    Dataset many("DB", "MANY", "PROVNAME");
    many.open();
    KeyedRows byName(many, {"PROV", "NAME"}), together(many, {"PROV", "NAME"});
    std::size_t found = 0;
    for (int i = 0; i < 2000; ++i) {
        if (i % 10 == 0 && many.goTo(Bookmark(1 + random() % 3000))) {
            many.erase();
        }
        const std::string province = std::to_string(10 + random() % 3),
                          name = "N" + std::to_string(random() % 710);
        const Records expected = walked(many, {{"PROV", province}, {"NAME", name}});
        ASSERT_EQ(recordsOf(byName.find({province, name})), expected) << province << ' ' << name;
        found += expected.size();
        const ReadScope scope;
        for (unsigned more = random() % 20; more > 0; --more) {
            together.expect({std::to_string(10 + random() % 3), "N" + std::to_string(random() % 710)});
        }
        together.expect({province, name});
        ASSERT_EQ(recordsOf(together.find({province, name})), expected) << province << ' ' << name;
    }
    EXPECT_GT(found, 1000U);
}

TEST_F(KeyedRowsTest, SearchesThatWereAnnouncedFindTheSameInAnyOrderAndWithoutAScope) {
    for (const bool hasScope : {true, false}) {
        std::optional<ReadScope> scope;
        if (hasScope) {
            scope.emplace();
        }
        KeyedRows byCode(towns, {"CODE"});
        for (const char* code : {"28013", "28014", "28079", "28013"}) {
            byCode.expect({code});
        }
        EXPECT_EQ(recordsOf(byCode.find({"28079"})), (Records{1}));
        EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
        EXPECT_EQ(recordsOf(byCode.find({"28014"})), Records());
        EXPECT_EQ(recordsOf(byCode.find({"99999"})), Records()) << "not announced";
        EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7})) << "once more";
        byCode.expect({"28013"});
        EXPECT_EQ(recordsOf(byCode.find({"28079"})), (Records{1})) << "not in the second lot";
        EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
    }
}

TEST_F(KeyedRowsTest, AnAnnouncedSearchSeesWhatWasChangedAfterItWasMade) {
    KeyedRows byCode(towns, {"CODE"});
    other.open();
    const ReadScope scope;
    byCode.expect({"28013"});
    byCode.expect({"28014"});
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
    place(other, 7);
    change(other, {{"CODE", "28014"}});
    EXPECT_EQ(recordsOf(byCode.find({"28014"})), (Records{7}));
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3}));
}

TEST_F(KeyedRowsTest, AnnouncedSearchesThatFailLeaveNothingToTheNextOnes) {
    KeyedRows byCode(towns, {"CODE"});
    const IndexFile& index = *towns.openTable().index();
    std::fstream file(index.path(), std::ios::in | std::ios::out | std::ios::binary);
    const auto root = static_cast<std::streamoff>(index.findTag("CODE")->headerPage * pageBytes + mdx::root);
    std::array<char, 4> sound{};
    file.seekg(root).read(sound.data(), sound.size());
    file.seekp(root).write("\xFF\xFF\xFF\x0F", sound.size()).flush();
    const ReadScope scope;
    byCode.expect({"28013"});
    EXPECT_EQ(codeOf([&] { static_cast<void>(byCode.find({"28013"})); }), ErrorCode::BadIndex);
    file.seekp(root).write(sound.data(), sound.size()).flush();
    byCode.expect({"28079"});
    EXPECT_EQ(recordsOf(byCode.find({"28079"})), (Records{1}));
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
}

TEST_F(KeyedRowsTest, MoreAnnouncementsThanAreKeptDoNoHarm) {
    KeyedRows byCode(towns, {"CODE"});
    const ReadScope scope;
    for (int i = 0; i < 1000; ++i) {
        byCode.expect({std::to_string(10000 + i)});
    }
    byCode.expect({"28013"});
    EXPECT_EQ(recordsOf(byCode.find({"10999"})), Records());
    EXPECT_EQ(recordsOf(byCode.find({"28013"})), (Records{3, 7}));
}

} // namespace
} // namespace dbase
