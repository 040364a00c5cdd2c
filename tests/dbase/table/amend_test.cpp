// Changes many neighbouring records as one change.
#include <gtest/gtest.h>

#include "dbase/dbf/codec.h"
#include "dbase/table/table.h"
#include "towns_fixture.h"
#include "workstation.h"

namespace dbase {
namespace {

class AmendTest : public TownsTest {
protected:
    /// Writes a text into a column of every record passed to it.
    static Amendment write(const Table& table, std::string_view name, std::string text) {
        const Column& column = table.schema().columns[*table.schema().find(name)];
        return [&column, text = std::move(text)](const RecordView&, std::span<char> after) {
            encodeText(after.subspan(column.offset, column.width), text);
        };
    }
    [[nodiscard]] std::vector<std::string> names() {
        std::vector<std::string> found;
        other.setTag("");
        other.refresh();
        other.first();
        for (bool on = !other.isEmpty(); on; on = other.next()) {
            found.push_back(name(other));
        }
        return found;
    }
};

TEST_F(AmendTest, ChangesAtMostSoManyRecordsAndSaysWhereToGoOn) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    EXPECT_EQ(table.amend(2, 3, write(table, "NAME", "X")), 5u);
    EXPECT_EQ(names(), (std::vector<std::string>{"MADRID", "X", "X", "X", "ALCALA", "VALENCIA", "APEADERO",
                                                 "CORUNA"}));
    EXPECT_EQ(table.amend(5, 100, write(table, "NAME", "Y")), 0u);
    EXPECT_EQ(table.amend(9, 1, write(table, "NAME", "Z")), 0u);
    EXPECT_EQ(names().back(), "Y");
}

TEST_F(AmendTest, TheRecordBeforeTheLastIsAmendedWithoutIt) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    EXPECT_EQ(table.amend(7, 1, write(table, "NAME", "X")), 8u);
    EXPECT_EQ(names()[6], "X");
    EXPECT_EQ(names()[7], "CORUNA");
    EXPECT_EQ(table.amend(6, 2, write(table, "NAME", "Y")), 8u);
    EXPECT_EQ(names()[7], "CORUNA");
}

TEST_F(AmendTest, WhoAsksIsNotifiedOfEachRecordThatSomebodyHoldsSaveDeletedOnes) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    place(towns, 4);
    towns.erase();
    for (const RecordNumber held : {2u, 4u, 6u}) {
        ASSERT_TRUE(table.tryLockRecord(held, this));
    }
    std::vector<RecordNumber> amended, leftOut;
    static_cast<void>(table.amend(
        1, 7, [&](const RecordView& record, std::span<char>) { amended.push_back(record.number); },
        Durability::Process, [&](const RecordView& held) { leftOut.push_back(held.number); }));
    EXPECT_EQ(amended, (std::vector<RecordNumber>{1, 3, 5, 7}));
    EXPECT_EQ(leftOut, (std::vector<RecordNumber>{2, 6}));
    table.unlockRecords(this);
}

TEST_F(AmendTest, NothingIsAmendedFromNowhereOrUpToNothing) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    const std::vector<std::string> before = names();
    EXPECT_EQ(table.amend(0, 3, write(table, "NAME", "X")), 0u);
    EXPECT_EQ(table.amend(3, 0, write(table, "NAME", "X")), 0u);
    EXPECT_EQ(names(), before);
}

TEST_F(AmendTest, RecordsHeldOutsideTheRangeAreLeftInPeace) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    for (const RecordNumber held : {2u, 8u}) {
        ASSERT_TRUE(table.tryLockRecord(held, this));
        EXPECT_EQ(table.amend(4, 3, write(table, "NAME", "X" + std::to_string(held))), 7u);
        EXPECT_EQ(names()[4], "X" + std::to_string(held));
        Workstation away({[&] {
            other.open();
            place(other, held);
            require(codeOf([&] { other.edit(); }) == ErrorCode::LockRefused, "it is held still");
        }});
        EXPECT_EQ(away.step(), "");
        table.unlockRecord(held, this);
    }
}

TEST_F(AmendTest, TagsFollowTheChange) {
    towns.open();
    other.open();
    Table& table = towns.openTable();
    static_cast<void>(table.amend(1, 8, write(table, "PROV", "50")));
    other.setTag("PROVNAME");
    EXPECT_TRUE(other.seek({{"PROV", "50"}, {"NAME", "VALENCIA"}}, SeekMode::Exact));
    EXPECT_FALSE(other.seek({{"PROV", "46"}, {"NAME", "VALENCIA"}}, SeekMode::Exact));
    EXPECT_EQ(walk(other).size(), 8u);
}

TEST_F(AmendTest, RecordsThatTheFunctionLeavesAloneAreNotWritten) {
    towns.open();
    Table& table = towns.openTable();
    const std::uint64_t before = table.changeCounter();
    int seen = 0;
    static_cast<void>(table.amend(1, 8, [&](const RecordView&, std::span<char>) { ++seen; }));
    EXPECT_EQ(seen, 8);
    EXPECT_EQ(table.changeCounter(), before);
}

TEST_F(AmendTest, DeletedRecordsAreLeftOut) {
    towns.open();
    place(towns, 2);
    towns.erase();
    Table& table = towns.openTable();
    std::vector<RecordNumber> seen;
    static_cast<void>(
        table.amend(1, 3, [&](const RecordView& record, std::span<char>) { seen.push_back(record.number); }));
    EXPECT_EQ(seen, (std::vector<RecordNumber>{1, 3}));
}

TEST_F(AmendTest, RecordThatACursorOfThisProcessHoldsIsLeftOutAndStaysHeld) {
    towns.open();
    other.open();
    place(towns, 5);
    towns.edit();
    Table& table = towns.openTable();
    static_cast<void>(table.amend(1, 8, write(table, "NAME", "X")));
    EXPECT_EQ(names()[4], "ALCALA");
    EXPECT_EQ(names()[3], "X");
    EXPECT_EQ(names()[5], "X");
    towns.field("NAME").setText("COMPLUTUM");
    towns.post();
    EXPECT_EQ(names()[4], "COMPLUTUM");
}

TEST_F(AmendTest, RecordThatAnotherProcessHoldsIsLeftOutAndCanBePostedThere) {
    Workstation away({[&] {
                          other.open();
                          place(other, 5);
                          other.edit();
                          other.field("NAME").setText("COMPLUTUM");
                      },
                      [&] { other.post(); }});
    ASSERT_EQ(away.step(), "");
    towns.open();
    Table& table = towns.openTable();
    static_cast<void>(table.amend(1, 8, write(table, "NAME", "X")));
    EXPECT_EQ(away.step(), "");
    EXPECT_EQ(walk(towns).size(), 8u);
    place(towns, 5);
    EXPECT_EQ(name(towns), "COMPLUTUM");
    place(towns, 6);
    EXPECT_EQ(name(towns), "X");
}

TEST_F(AmendTest, RecordsAreFreeAfterwards) {
    Workstation away({[&] {
        other.open();
        place(other, 5);
        other.edit();
        other.cancel();
    }});
    towns.open();
    Table& table = towns.openTable();
    static_cast<void>(table.amend(1, 8, write(table, "NAME", "X")));
    EXPECT_EQ(away.step(), "");
}

TEST_F(AmendTest, FunctionThatThrowsChangesNothing) {
    createTable(ambrel::test::defineTable("PLAIN", {"NAME C12"}, {"NAME"}), {{"A"}, {"B"}, {"C"}});
    Dataset plain("DB", "PLAIN");
    plain.open();
    Table& table = plain.openTable();
    const Amendment change = write(table, "NAME", "X");
    EXPECT_THROW(static_cast<void>(table.amend(1, 3,
                                               [&](const RecordView& record, std::span<char> after) {
                                                   change(record, after);
                                                   if (record.number == 3) {
                                                       throw std::runtime_error("enough");
                                                   }
                                               })),
                 std::runtime_error);
    for (const char* name : {"A", "B", "C"}) {
        EXPECT_EQ(plain.field("NAME").text(), name);
        plain.edit(); // neither changed nor held
        plain.next();
    }
}

// The first record with a key represents all others in such a tag; when it leaves, the next one takes over.
TEST_F(AmendTest, UniqueTagsMeetNoRecordWhoseChangeIsOnTheWay) {
    towns.open();
    Table& table = towns.openTable();
    static_cast<void>(table.amend(1, 5, write(table, "PROV", "50")));
    towns.setTag("ONCE");
    std::vector<std::string> provinces;
    for (bool on = true; on; on = towns.next()) {
        provinces.push_back(towns.field("PROV").text());
    }
    EXPECT_EQ(provinces, (std::vector<std::string>{"15", "28", "46", "50"}));
}

} // namespace
} // namespace dbase
