// Record locks: editing takes them, refusals throw, and locks taken explicitly.
#include <gtest/gtest.h>

#include "dbase/table/table.h"
#include "dbase/table/towns_fixture.h"
#include "dbase/table/workstation.h"
#include "support/LockPatience.h"

namespace dbase {
namespace {

class LocksTest : public TownsTest {
protected:
    void openBoth(RecordNumber record) {
        towns.open();
        other.open();
        place(towns, record);
        place(other, record);
    }
};

TEST_F(LocksTest, EditLocksTheRecordAgainstOtherCursors) {
    openBoth(5);
    towns.edit();
    const Error error = errorOf([&] { other.edit(); });
    EXPECT_EQ(error.code(), ErrorCode::LockRefused);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos);
    EXPECT_NE(std::string(error.what()).find("registro 5"), std::string::npos);
    EXPECT_EQ(other.state(), DatasetState::Browse);
    EXPECT_EQ(codeOf([&] { other.erase(); }), ErrorCode::LockRefused);
    EXPECT_EQ(name(other), "ALCALA") << "it can be read all the time";
    EXPECT_TRUE(other.next());
    other.edit();
}

TEST_F(LocksTest, UnlockAllKeepsTheRecordBeingEdited) {
    openBoth(5);
    ASSERT_TRUE(towns.lockCurrent());
    place(towns, 6);
    ASSERT_TRUE(towns.lockCurrent());
    towns.edit();
    towns.unlockAll();
    other.edit();
    other.cancel();
    place(other, 6);
    EXPECT_EQ(codeOf([&] { other.edit(); }), ErrorCode::LockRefused);
    EXPECT_FALSE(other.lockCurrent());
    towns.cancel();
    other.edit();
}

TEST_F(LocksTest, PostCancelAndMovesFreeTheRecord) {
    openBoth(5);
    towns.edit();
    towns.post();
    other.edit();
    other.cancel();
    towns.edit();
    towns.next();
    other.edit();
    other.close();
    towns.prior();
    towns.edit();
}

TEST_F(LocksTest, EditIsRefusedWhileAnotherProcessEdits) {
    Workstation away({[&] {
                          other.open();
                          place(other, 5);
                          other.edit();
                      },
                      [&] { other.post(); }});
    ASSERT_EQ(away.step(), "");
    towns.open();
    place(towns, 5);
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::LockRefused);
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::LockRefused);
    ASSERT_EQ(away.step(), "");
    towns.edit();
    towns.cancel();
}

TEST_F(LocksTest, OurEditIsRefusedToAnotherProcess) {
    Workstation away({[&] {
        other.open();
        place(other, 5);
        require(codeOf([&] { other.edit(); }) == ErrorCode::LockRefused, "edit");
        require(!other.lockCurrent(), "lockCurrent");
        require(other.next() && other.lockCurrent(), "another record");
    }});
    towns.open();
    place(towns, 5);
    towns.edit();
    EXPECT_EQ(away.step(), "");
}

TEST_F(LocksTest, RefusedEditLeavesNoLockBehind) {
    openBoth(5);
    change(other, {{"NAME", "COMPLUTUM"}});
    EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::RecordChanged);
    other.edit();
    other.cancel();
    change(other, {{"NAME", "AGAIN"}});
    EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::RecordChanged);
    other.edit();
}

TEST_F(LocksTest, LockCurrentHoldsThroughMovesUntilUnlockAll) {
    openBoth(5);
    EXPECT_TRUE(towns.lockCurrent());
    EXPECT_TRUE(towns.lockCurrent()) << "our own";
    EXPECT_FALSE(other.lockCurrent());
    EXPECT_EQ(codeOf([&] { other.edit(); }), ErrorCode::LockRefused);
    towns.first();
    EXPECT_TRUE(towns.lockCurrent()) << "a second record";
    EXPECT_FALSE(other.lockCurrent());
    towns.unlockAll();
    EXPECT_TRUE(other.lockCurrent());
    other.first();
    EXPECT_TRUE(other.lockCurrent());
}

TEST_F(LocksTest, EditInsideALockOfOnesOwnKeepsTheLock) {
    openBoth(5);
    ASSERT_TRUE(towns.lockCurrent());
    change(towns, {{"NAME", "COMPLUTUM"}});
    EXPECT_FALSE(other.lockCurrent());
    towns.unlockAll();
    EXPECT_TRUE(other.lockCurrent());
}

TEST_F(LocksTest, UnlockAllLeavesTheLocksOfOthers) {
    openBoth(5);
    ASSERT_TRUE(other.lockCurrent());
    towns.unlockAll();
    EXPECT_FALSE(towns.lockCurrent());
}

TEST_F(LocksTest, DeleteUnderALockOfOnesOwn) {
    openBoth(5);
    ASSERT_TRUE(towns.lockCurrent());
    towns.erase();
    EXPECT_EQ(towns.recordNumber(), 3u);
    towns.unlockAll();
}

TEST_F(LocksTest, ClosingFreesEverything) {
    openBoth(5);
    ASSERT_TRUE(towns.lockCurrent());
    towns.close();
    EXPECT_TRUE(other.lockCurrent());
    other.unlockAll();
    {
        Dataset brief("DB", "TOWNS", "CODE");
        brief.open();
        place(brief, 5);
        ASSERT_TRUE(brief.lockCurrent());
        EXPECT_FALSE(other.lockCurrent());
    }
    EXPECT_TRUE(other.lockCurrent());
}

TEST_F(LocksTest, OpeningThatFailsLeavesNoLockBehind) {
    other.open();
    towns.setAfterOpen([](Dataset& table) {
        ASSERT_TRUE(table.lockCurrent());
        throw Error(ErrorCode::BadValue, {}, "no");
    });
    EXPECT_EQ(codeOf([&] { towns.open(); }), ErrorCode::BadValue);
    for (RecordNumber record = 1; record <= 8; ++record) {
        place(other, record);
        EXPECT_TRUE(other.lockCurrent()) << record;
    }
}

TEST_F(LocksTest, LockCurrentOnAnEmptyTableTakesThePlaceOfRecord1) {
    createEmpty();
    Workstation away({[&] {
        none.open();
        require(!none.lockCurrent(), "the place is taken");
    }});
    Dataset second("DB", "NONE", "CODE");
    none.open();
    second.open();
    EXPECT_TRUE(none.lockCurrent());
    EXPECT_FALSE(second.lockCurrent());
    EXPECT_EQ(away.step(), "");
    none.append();
    none.field("CODE").setText("1");
    none.post();
    second.first();
    EXPECT_EQ(codeOf([&] { second.edit(); }), ErrorCode::LockRefused) << "it is the record's lock";
    none.unlockAll();
    second.edit();
}

TEST_F(LocksTest, StructureLockThatDoesNotComeFreeLeavesEverythingAsItWas) {
    File* index = nullptr;
    Workstation away({[&] {
                          other.open();
                          index = &other.openTable().index()->file();
                          require(index->tryLock(structureLock, LockKind::Exclusive), "lock");
                      },
                      [&] { index->unlock(structureLock); }});
    towns.open();
    place(towns, 5);
    towns.edit();
    towns.field("NAME").setText("COMPLUTUM");
    ASSERT_EQ(away.step(), "");
    {
        const ambrel::test::LockPatience noPatience(std::chrono::milliseconds(0));
        EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::LockTimeout);
        EXPECT_EQ(towns.state(), DatasetState::Edit);
        EXPECT_EQ(name(towns), "COMPLUTUM");
        EXPECT_EQ(codeOf([&] { towns.next(); }), ErrorCode::LockTimeout);
        EXPECT_EQ(name(towns), "ALCALA") << "the move has cancelled the row";
        EXPECT_EQ(codeOf([&] { towns.erase(); }), ErrorCode::LockTimeout);
        EXPECT_EQ(codeOf([&] { towns.edit(); }), ErrorCode::LockTimeout);
    }
    ASSERT_EQ(away.step(), "");
    EXPECT_EQ(towns.recordNumber(), 5u);
    change(towns, {{"NAME", "COMPLUTUM"}});
    EXPECT_TRUE(towns.next());
    EXPECT_EQ(towns.recordNumber(), 3u);
}

TEST_F(LocksTest, LockTakenByAnotherProcessIsRefusedUntilItEnds) {
    const auto lock = [&] { require(other.lockCurrent(), "lock"); };
    const std::vector<std::function<void()>> steps{[&] {
                                                       other.open();
                                                       place(other, 5);
                                                       lock();
                                                   },
                                                   [&] { other.unlockAll(); }, lock};
    auto away = std::make_unique<Workstation>(steps);
    ASSERT_EQ(away->step(), "");
    towns.open();
    place(towns, 5);
    EXPECT_FALSE(towns.lockCurrent());
    ASSERT_EQ(away->step(), "");
    EXPECT_TRUE(towns.lockCurrent());
    towns.unlockAll();
    ASSERT_EQ(away->step(), "");
    EXPECT_FALSE(towns.lockCurrent());
    away.reset();
    EXPECT_TRUE(towns.lockCurrent());
}

} // namespace
} // namespace dbase
