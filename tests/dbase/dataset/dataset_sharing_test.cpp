// Several cursors on one table: the others' changes show at the next move or refresh, and are never
// overwritten.
#include <gtest/gtest.h>

#include "dbase/mdx/update_stamp.h"
#include "dbase/table/table.h"
#include "dbase/table/towns_fixture.h"
#include "dbase/table/workstation.h"

namespace dbase {
namespace {

// --- Another cursor of this process

class SharingTest : public TownsTest {
protected:
    SharingTest() {
        towns.open();
        other.open();
    }
};

TEST_F(SharingTest, SecondCursorSharesTheOpenTable) {
    EXPECT_EQ(&towns.openTable(), &other.openTable());
    Dataset third("DB", "towns.dbf");
    third.open();
    EXPECT_EQ(&towns.openTable(), &third.openTable());
}

TEST_F(SharingTest, CursorsMoveByThemselves) {
    towns.last();
    other.setTag("NAME");
    other.setFilter("MINOR=True");
    EXPECT_EQ(towns.recordNumber(), 6u);
    EXPECT_TRUE(towns.eof());
    EXPECT_EQ(walk(towns).size(), 8u);
}

TEST_F(SharingTest, ChangedRowShowsAtRefresh) {
    place(towns, 5);
    place(other, 5);
    change(other, {{"NAME", "COMPLUTUM"}});
    EXPECT_EQ(name(towns), "ALCALA") << "as it was shown";
    towns.refresh();
    EXPECT_EQ(name(towns), "COMPLUTUM");
    EXPECT_EQ(towns.recordNumber(), 5u);
}

TEST_F(SharingTest, DeletedRowGoesAtRefresh) {
    place(towns, 5);
    place(other, 5);
    other.erase();
    towns.refresh();
    EXPECT_EQ(towns.recordNumber(), 3u);
    towns.last();
    other.last();
    other.erase();
    towns.refresh();
    EXPECT_EQ(towns.recordNumber(), 1u) << "nothing follows: the last";
}

TEST_F(SharingTest, StepsGoOnFromTheOldPlaceOfARowThatMovedAway) {
    place(towns, 5);
    place(other, 5);
    change(other, {{"CODE", "99999"}});
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 3u);
    place(towns, 3);
    place(other, 3);
    change(other, {{"CODE", "00000"}});
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(towns.recordNumber(), 8u);
}

TEST_F(SharingTest, StepsGoOnFromTheOldPlaceOfADeletedRow) {
    place(towns, 3);
    place(other, 3);
    other.erase();
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 7u);
    place(towns, 8);
    place(other, 8);
    other.erase();
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(towns.recordNumber(), 4u);
}

TEST_F(SharingTest, StepThatFindsNothingFurtherShowsTheRowAsItIsNow) {
    towns.last();
    other.last();
    change(other, {{"NAME", "VALENCIA II"}});
    EXPECT_FALSE(towns.next());
    EXPECT_EQ(name(towns), "VALENCIA II");
    EXPECT_TRUE(towns.eof());
    other.erase();
    EXPECT_FALSE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 1u) << "the row is gone; the last one shows";
    EXPECT_TRUE(towns.eof());
}

TEST_F(SharingTest, StepsSeeRowsThatCame) {
    place(towns, 5);
    append(other, {{"CODE", "28006"}, {"NAME", "ALCOBENDAS"}});
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(name(towns), "ALCOBENDAS");
    append(other, {{"CODE", "28005"}, {"NAME", "ALCORCON"}});
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(name(towns), "ALCORCON") << "equal key, larger record number";
}

TEST_F(SharingTest, EditOfARowThatAnotherChangedRaisesAndShowsTheTruth) {
    place(towns, 5);
    place(other, 5);
    change(other, {{"NAME", "COMPLUTUM"}});
    const Error error = errorOf([&] { towns.edit(); });
    EXPECT_EQ(error.code(), ErrorCode::RecordChanged);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos);
    EXPECT_EQ(towns.state(), DatasetState::Browse);
    EXPECT_EQ(name(towns), "COMPLUTUM");
    change(towns, {{"NAME", "ALCALA"}});
    other.refresh();
    EXPECT_EQ(name(other), "ALCALA");
}

TEST_F(SharingTest, EditOrDeleteOfARowThatAnotherDeletedRaises) {
    place(towns, 5);
    place(other, 5);
    other.erase();
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::RecordChanged);
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::RecordChanged);
    EXPECT_EQ(towns.recordNumber(), 3u);
}

TEST_F(SharingTest, DeleteOfARowThatAnotherChangedRaisesAndKeepsIt) {
    place(towns, 5);
    place(other, 5);
    change(other, {{"NAME", "COMPLUTUM"}});
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::RecordChanged);
    other.refresh();
    EXPECT_EQ(name(other), "COMPLUTUM");
    change(other, {{"NAME", "ALCALA"}}); // and its lock is free
}

TEST_F(SharingTest, SavingOverARowThatAStrangerWroteFailsAndLeavesTheRowPending) {
    place(towns, 5);
    towns.edit();
    towns.field("NAME").setText("MINE");
    { // a program that takes no locks writes meanwhile
        Table& table = towns.openTable();
        std::vector<char> record(table.records().record(5).bytes.begin(),
                                 table.records().record(5).bytes.end());
        record[static_cast<std::size_t>(table.schema().columns.at(6).offset)] = 'T';
        table.records().file().write(table.records().offsetOf(5), record);
    }
    EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::RecordChanged);
    EXPECT_EQ(towns.state(), DatasetState::Edit);
    EXPECT_EQ(name(towns), "MINE");
    towns.cancel();
    towns.refresh();
    EXPECT_EQ(name(towns), "ALCALA");
    EXPECT_TRUE(towns.field("MINOR").logical());
}

TEST_F(SharingTest, StepsGoOnRightAfterAProgramThatDoesNotCountItsChanges) {
    place(towns, 5);
    const IndexFile& index = *towns.openTable().index();
    const UpdateStamp before = index.stamp();
    place(other, 6);
    change(other, {{"CODE", "00000"}}); // every entry moves on by one place
    index.file().write(mdx::stamp, encodeStamp(before));
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 3u);
}

// --- Another process

using SharingBetweenProcesses = TownsTest;

TEST_F(SharingBetweenProcesses, ChangesShowAtTheNextMoveOrRefresh) {
    Workstation away({[&] {
                          other.open();
                          place(other, 5);
                          change(other, {{"NAME", "COMPLUTUM"}});
                      },
                      [&] { other.erase(); },
                      [&] {
                          append(other, {{"CODE", "28006"}, {"NAME", "ALCOBENDAS"}});
                      }});
    towns.open();
    place(towns, 5);
    ASSERT_EQ(away.step(), "");
    EXPECT_EQ(name(towns), "ALCALA");
    towns.refresh();
    EXPECT_EQ(name(towns), "COMPLUTUM");
    ASSERT_EQ(away.step(), "");
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::RecordChanged);
    EXPECT_EQ(towns.recordNumber(), 3u);
    ASSERT_EQ(away.step(), "");
    EXPECT_TRUE(towns.prior());
    EXPECT_EQ(name(towns), "ALCOBENDAS");
}

TEST_F(SharingBetweenProcesses, BothAppend) {
    Workstation away({[&] {
                          other.open();
                          append(other, {{"CODE", "00002"}});
                      },
                      [&] {
                          append(other, {{"CODE", "00004"}});
                      }});
    towns.open();
    append(towns, {{"CODE", "00001"}});
    ASSERT_EQ(away.step(), "");
    append(towns, {{"CODE", "00003"}});
    ASSERT_EQ(away.step(), "");
    towns.setRange({{"CODE", "00000"}}, {{"CODE", "00009"}});
    EXPECT_EQ(walk(towns), (Records{9, 10, 11, 12}));
}

TEST_F(SharingBetweenProcesses, DeadWriterLeavesNothingLocked) {
    {
        Workstation away({[&] {
            other.open();
            place(other, 5);
            other.edit();
        }});
        ASSERT_EQ(away.step(), "");
        towns.open();
        place(towns, 5);
        EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::LockRefused);
    }
    towns.edit();
    towns.cancel();
}

} // namespace
} // namespace dbase
