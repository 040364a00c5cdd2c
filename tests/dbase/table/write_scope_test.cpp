// Several changes under one hold of the locks: what cursors see meanwhile, what others see, what a failure
// leaves, and when others get their turn.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/table/check.h"
#include "dbase/table/table.h"
#include "dbase/table/write_scope.h"
#include "support/LockPatience.h"
#include "towns_fixture.h"
#include "workstation.h"

namespace dbase {
namespace {

using std::chrono::milliseconds;
using test::Bytes;
using Writing = WriteScope::Writing;

/// A clock that the test moves.
struct OwnClock {
    OwnClock() {
        setWriteClock([] { return now; });
        now += std::chrono::hours(1); // long after the last test
    }
    ~OwnClock() { setWriteClock(nullptr); }
    OwnClock(const OwnClock&) = delete;
    OwnClock& operator=(const OwnClock&) = delete;

    static inline std::chrono::nanoseconds now = std::chrono::hours(1);
};

class WriteScopeTest : public TownsTest {
protected:
    /// Opens both cursors of this program.
    void openBoth() {
        towns.open();
        other.open();
    }
    [[nodiscard]] WriteScope together() { return WriteScope(towns.openTable(), Writing::Together); }
    /// Of all rows, in the order of a tag, as another opening of the files sees them.
    [[nodiscard]] std::vector<std::string> stored(const char* tag = "") const {
        std::vector<std::string> names;
        std::thread([&] { // a thread has open tables of its own
            Dataset table("DB", "TOWNS", tag);
            table.open();
            for (bool on = !table.isEmpty(); on; on = table.next()) {
                names.push_back(name(table));
            }
        })
            .join();
        return names;
    }
    /// As another program sees it.
    [[nodiscard]] bool isLocked() const {
        return openFile(folder / "TOWNS.MDX", OpenMode::ReadOnly)->isLockedByOthers(structureLock);
    }
    [[nodiscard]] bool isRecordLocked(RecordNumber number) const {
        return openFile(folder / "TOWNS.DBF", OpenMode::ReadOnly)->isLockedByOthers(recordLock(number));
    }
    [[nodiscard]] Bytes files() const {
        Bytes all = test::readFile(folder / "TOWNS.DBF");
        const Bytes index = test::readFile(folder / "TOWNS.MDX");
        all.insert(all.end(), index.begin(), index.end());
        return all;
    }

    const std::vector<std::string> all_{"MADRID", "BARCELONA", "ARANJUEZ", "HOSPITALET",
                                        "ALCALA", "VALENCIA",  "APEADERO", "CORUNA"};
    OwnClock clock_;
};

// --- One by one

/// Locks of the table's records that another program finds held.
class AddingScopeTest : public WriteScopeTest {
protected:
    AddingScopeTest() { openBoth(); }

    [[nodiscard]] bool isAppendLocked() const {
        return openFile(folder / "TOWNS.DBF", OpenMode::ReadOnly)->isLockedByOthers(appendLock);
    }
    [[nodiscard]] Table& table() const { return towns.openTable(); }

    std::unique_ptr<File> away_ = openFile(folder / "TOWNS.DBF", OpenMode::ReadWrite);
};

TEST_F(AddingScopeTest, HeaderAndAppendStayLockedFromTheFirstAdditionToTheEnd) {
    {
        const WriteScope scope(table(), Writing::AtOnce);
        EXPECT_FALSE(isAppendLocked());
        append(towns, {{"NAME", "AVILA"}});
        EXPECT_TRUE(isAppendLocked());
        append(towns, {{"NAME", "SORIA"}});
        EXPECT_TRUE(isAppendLocked());
    }
    EXPECT_FALSE(isAppendLocked());
    EXPECT_EQ(stored().size(), 10U);
}

TEST_F(AddingScopeTest, TheFirstRowsLockTakesHeaderAndAppendAlongUntilTheEnd) {
    {
        const WriteScope scope(table(), Writing::AtOnce);
        ASSERT_TRUE(table().tryLockRecord(1, this));
        EXPECT_TRUE(isRecordLocked(1));
        EXPECT_TRUE(isAppendLocked());
        EXPECT_FALSE(isRecordLocked(2));
        EXPECT_FALSE(table().tryLockRecord(1, &other));
        append(towns, {{"NAME", "AVILA"}});
        table().unlockRecord(1, this);
        EXPECT_TRUE(isRecordLocked(1));
        EXPECT_TRUE(table().tryLockRecord(1, &other));
        table().unlockRecords(&other);
        EXPECT_TRUE(isAppendLocked());
    }
    EXPECT_FALSE(isRecordLocked(1));
    EXPECT_FALSE(isAppendLocked());
    EXPECT_TRUE(table().tryLockRecord(1, &other));
    table().unlockRecords(&other);
}

TEST_F(AddingScopeTest, TheFirstRowStaysLockedForAnOwnerWhoKeepsItLonger) {
    {
        const WriteScope scope(table(), Writing::AtOnce);
        ASSERT_TRUE(table().tryLockRecord(1, this));
    }
    EXPECT_TRUE(isRecordLocked(1));
    EXPECT_FALSE(isAppendLocked());
    table().unlockRecord(1, this);
    EXPECT_FALSE(isRecordLocked(1));
}

TEST_F(AddingScopeTest, BesideAProgramThatIsAddingTheFirstRowIsLockedAlone) {
    ASSERT_TRUE(away_->tryLock(appendLock, LockKind::Exclusive));
    {
        const WriteScope scope(table(), Writing::AtOnce);
        ASSERT_TRUE(table().tryLockRecord(1, this));
        EXPECT_TRUE(isRecordLocked(1));
        away_->unlock(appendLock);
        EXPECT_FALSE(isAppendLocked());
        append(towns, {{"NAME", "AVILA"}});
        EXPECT_TRUE(isAppendLocked());
        table().unlockRecord(1, this);
        EXPECT_FALSE(isRecordLocked(1));
    }
    EXPECT_FALSE(isAppendLocked());
}

TEST_F(AddingScopeTest, WhereAnotherProgramHoldsTheFirstRowNothingIsLocked) {
    ASSERT_TRUE(away_->tryLock(recordLock(1), LockKind::Exclusive));
    const WriteScope scope(table(), Writing::AtOnce);
    EXPECT_FALSE(table().tryLockRecord(1, this));
    EXPECT_FALSE(isAppendLocked());
    away_->unlock(recordLock(1));
    EXPECT_TRUE(table().tryLockRecord(1, this));
    table().unlockRecords(this);
}

// --- Together

TEST_F(WriteScopeTest, RowsGatheredAreSeenByEveryCursorOfTheProgramAndByNobodyElse) {
    openBoth();
    const Bytes before = files();
    {
        WriteScope scope = together();
        append(towns, {{"CODE", "00001"}, {"NAME", "AVILA"}, {"PROV", "05"}});
        append(towns, {{"CODE", "00002"}, {"NAME", "ZAMORA"}, {"PROV", "49"}});
        EXPECT_EQ(towns.recordNumber(), 10u);
        EXPECT_EQ(name(towns), "ZAMORA");
        EXPECT_TRUE(exact(other, {{"CODE", "00001"}}));
        EXPECT_EQ(name(other), "AVILA");
        other.setTag("NAME");
        other.last();
        EXPECT_EQ(name(other), "ZAMORA");
        EXPECT_EQ(walk(other).size(), 10u);
        EXPECT_EQ(files(), before) << "written before commit()";
        scope.commit();
    }
    std::vector<std::string> now = all_;
    now.insert(now.end(), {"AVILA", "ZAMORA"});
    EXPECT_EQ(stored(), now);
    EXPECT_EQ(stored("CODE").front(), "AVILA");
    EXPECT_EQ(name(other), "ZAMORA");
}

TEST_F(WriteScopeTest, ChangesAdditionsAndDeletionsAreStoredAsOneChange) {
    openBoth();
    const std::uint64_t before = towns.openTable().changeCounter();
    {
        WriteScope scope = together();
        place(towns, 3);
        change(towns, {{"NAME", "TOLEDO"}});
        append(towns, {{"NAME", "AVILA"}});
        change(towns, {{"NAME", "SORIA"}}); // the row just added
        place(towns, 3);
        change(towns, {{"NAME", "CUENCA"}}); // once more
        place(towns, 6);
        towns.erase();
        place(towns, 8);
        change(towns, {{"GROUP", "77"}}); // the last record of the file, beside the first one added
        scope.commit();
    }
    EXPECT_EQ(towns.openTable().changeCounter(), before + 2);
    EXPECT_EQ(stored(), (std::vector<std::string>{"MADRID", "BARCELONA", "CUENCA", "HOSPITALET", "ALCALA",
                                                  "APEADERO", "CORUNA", "SORIA"}));
    EXPECT_EQ(stored("NAME"), (std::vector<std::string>{"ALCALA", "APEADERO", "BARCELONA", "CORUNA", "CUENCA",
                                                        "HOSPITALET", "MADRID", "SORIA"}));
    EXPECT_EQ(stored("BIG"), (std::vector<std::string>{"BARCELONA", "CORUNA", "MADRID"}));
    EXPECT_EQ(stored("ONCE").size(), 4u) << "one each of none, 08, 15 and 28; that of 46 is deleted";
}

TEST_F(WriteScopeTest, WithoutCommitNothingIsStoredAndCursorsFindTheirWayBack) {
    openBoth();
    const Bytes before = files();
    {
        const WriteScope scope = together();
        append(towns, {{"CODE", "00001"}, {"NAME", "AVILA"}});
        place(other, 3);
        change(other, {{"NAME", "TOLEDO"}});
        EXPECT_TRUE(nearest(other, {{"CODE", "00000"}}));
    }
    EXPECT_EQ(files(), before);
    towns.refresh();
    other.refresh();
    EXPECT_EQ(walk(towns), walk(other));
    EXPECT_EQ(walk(towns).size(), all_.size());
    append(towns, {{"CODE", "00009"}, {"NAME", "HUELVA"}}); // the number of the row that was dropped
    EXPECT_EQ(towns.recordNumber(), 9u);
    EXPECT_TRUE(exact(other, {{"CODE", "00009"}}));
    EXPECT_EQ(name(other), "HUELVA");
    EXPECT_FALSE(exact(other, {{"CODE", "00001"}}));
}

TEST_F(WriteScopeTest, DeletedRowsThatACursorHasSteppedOverDoNotHideARowOfTheScope) {
    openBoth();
    for (int i = 0; i < 300; ++i) {
        append(towns, {{"CODE", "50000"}, {"NAME", "X"}});
        towns.erase();
    }
    other.setTag("CODE");
    const auto last = [&] {
        other.last();
        return other.field("CODE").text();
    };
    EXPECT_EQ(last(), "46250"); // past the deleted rows, which it now remembers
    WriteScope scope = together();
    append(towns, {{"CODE", "50000"}, {"NAME", "VISIBLE"}});
    EXPECT_EQ(last(), "50000");
    append(towns, {{"CODE", "49999"}, {"NAME", "BEFORE"}});
    EXPECT_TRUE(other.prior());
    EXPECT_EQ(name(other), "BEFORE");
    scope.commit();
    EXPECT_EQ(last(), "50000");
}

TEST_F(WriteScopeTest, AFailedChangeEndsTheScopeWithNothingStored) {
    openBoth();
    const Bytes before = files();
    const Bytes row = test::storedRecord(towns.openTable(), 1);
    {
        WriteScope scope = together();
        Table& table = towns.openTable();
        static_cast<void>(table.append(row));
        EXPECT_EQ(codeOf([&] { table.overwrite(2, row, row); }), ErrorCode::RecordChanged);
        static_cast<void>(table.append(row)); // that one leaves the scope as it is
        EXPECT_EQ(codeOf([&] { static_cast<void>(table.append({})); }), ErrorCode::BadValue);
        EXPECT_EQ(codeOf([&] { static_cast<void>(table.amend(1, 2, {})); }), ErrorCode::LockTimeout);
        EXPECT_EQ(codeOf([&] { table.rebuildTags(); }), ErrorCode::LockTimeout);
        EXPECT_EQ(codeOf([&] { WriteScope(table, Writing::AtOnce); }), ErrorCode::LockTimeout);
        const auto append = openFile(folder / "TOWNS.DBF", OpenMode::ReadWrite);
        EXPECT_FALSE(append->tryLock(appendLock, LockKind::Exclusive)) << "from the first addition on";
        scope.commit();
        EXPECT_EQ(codeOf([&] { static_cast<void>(table.append(row)); }), ErrorCode::BadState);
        EXPECT_EQ(codeOf([&] { scope.commit(); }), ErrorCode::BadState);
    }
    EXPECT_EQ(stored().size(), 10u);
    EXPECT_NE(files(), before);
}

TEST_F(WriteScopeTest, AddingWhileAnotherProgramAddsFailsAndDropsWhatWasGathered) {
    const ambrel::test::LockPatience patience(milliseconds(30));
    openBoth();
    const Bytes before = files();
    const auto foreign = openFile(folder / "TOWNS.DBF", OpenMode::ReadWrite);
    {
        WriteScope scope = together();
        place(towns, 3);
        change(towns, {{"NAME", "TOLEDO"}});
        ASSERT_TRUE(foreign->tryLock(appendLock, LockKind::Exclusive));
        towns.append();
        EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::LockTimeout);
        EXPECT_EQ(codeOf([&] { scope.commit(); }), ErrorCode::BadState);
        towns.cancel();
        place(other, 3);
        EXPECT_EQ(name(other), "ARANJUEZ");
    }
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(isLocked());
}

TEST_F(WriteScopeTest, AfterAFailedChangeACursorShowsNothingThatItReadAheadOfIt) {
    const ambrel::test::LockPatience patience(milliseconds(1));
    openBoth();
    other.setTag("NAME");
    const auto foreign = openFile(folder / "TOWNS.DBF", OpenMode::ReadWrite);
    const WriteScope scope = together();
    place(towns, 3);
    change(towns, {{"NAME", "TOLEDO"}});
    other.first();
    while (name(other) != "MADRID") {
        ASSERT_TRUE(other.next());
    }
    ASSERT_TRUE(foreign->tryLock(appendLock, LockKind::Exclusive));
    towns.append();
    EXPECT_EQ(codeOf([&] { towns.post(); }), ErrorCode::LockTimeout);
    EXPECT_TRUE(other.next());
    EXPECT_EQ(name(other), "VALENCIA");
    towns.cancel();
}

TEST_F(WriteScopeTest, ARecordChangedStaysLockedForProgramsThatKnowOnlyRecordLocks) {
    openBoth();
    {
        WriteScope scope = together();
        place(towns, 3);
        change(towns, {{"NAME", "TOLEDO"}});
        EXPECT_TRUE(isRecordLocked(3));
        place(other, 3);
        change(other, {{"NAME", "CUENCA"}}); // cursors of this program may go on
        EXPECT_TRUE(isRecordLocked(3));
        scope.commit();
    }
    EXPECT_FALSE(isRecordLocked(3));
    EXPECT_EQ(stored()[2], "CUENCA");
}

TEST_F(WriteScopeTest, AnEmptyScopeStoresNothing) {
    openBoth();
    const Bytes before = files();
    {
        WriteScope scope = together();
        EXPECT_TRUE(isLocked());
        scope.commit();
    }
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(isLocked());
}

TEST_F(WriteScopeTest, ATableWithoutIndexIsWrittenTogetherToo) {
    createTable(ambrel::test::defineTable("PLAIN", {"NAME C12"}, {}), {{"ONE"}, {"TWO"}});
    Dataset plain("DB", "PLAIN");
    plain.open();
    {
        WriteScope scope(plain.openTable(), Writing::Together);
        change(plain, {{"NAME", "FIRST"}});
        append(plain, {{"NAME", "THREE"}});
        EXPECT_EQ(walk(plain).size(), 3u);
        scope.commit();
    }
    EXPECT_EQ(walk(plain).size(), 3u);
    place(plain, 1);
    EXPECT_EQ(name(plain), "FIRST");
}

// --- At once

TEST_F(WriteScopeTest, AtOnceEachChangeIsInTheFilesAndTheLocksStay) {
    openBoth();
    {
        const WriteScope scope(towns.openTable(), Writing::AtOnce);
        Bytes before = files();
        append(towns, {{"CODE", "00001"}, {"NAME", "AVILA"}});
        EXPECT_NE(files(), before);
        EXPECT_TRUE(isLocked());
        EXPECT_TRUE(exact(other, {{"CODE", "00001"}}));
        before = files();
        change(other, {{"NAME", "TOLEDO"}});
        EXPECT_NE(files(), before);
        EXPECT_TRUE(isLocked());
    }
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(stored().back(), "TOLEDO");
}

// --- Turns

TEST_F(WriteScopeTest, ScopesThatFollowOneAnotherCountAsOne) {
    openBoth();
    {
        const WriteScope scope = together();
        EXPECT_FALSE(scope.isDue());
        OwnClock::now += WriteScope::longest - milliseconds(2);
        EXPECT_FALSE(scope.isDue());
    }
    OwnClock::now += milliseconds(2);
    {
        const WriteScope scope = together();
        EXPECT_TRUE(scope.isDue());
    } // lets others in
    {
        const WriteScope scope = together();
        EXPECT_FALSE(scope.isDue());
        OwnClock::now += WriteScope::longest / 2;
    }
    OwnClock::now += milliseconds(6);
    EXPECT_FALSE(together().isDue()) << "others had their turn meanwhile";
}

TEST_F(WriteScopeTest, IsDueAlsoOnceItHoldsHalfOfWhatMayBeStoredAtOnce) {
    createTable(ambrel::test::defineTable("WIDE", {"CODE C6", "A C250", "B C250", "C C250"}, {"CODE"}), {});
    Dataset wide("DB", "WIDE");
    wide.open();
    Table& table = wide.openTable();
    const WriteScope scope(table, Writing::Together);
    std::size_t gathered = 0;
    while (!scope.isDue() && gathered < largestChange) {
        const Bytes row = test::makeRecord(table.schema(), {std::to_string(gathered % 999'983)});
        table.append(row, Durability::Process);
        gathered += row.size();
    }
    EXPECT_LT(gathered, largestChange * 3 / 4);
    EXPECT_GT(gathered, largestChange / 4);
}

/// Reads and writes of another program, while this one stores group after group without a pause: each waits
/// for little more than the group at work.
TEST_F(WriteScopeTest, AnotherProgramGetsItsTurnAfterEachGroup) {
    setWriteClock(nullptr);
    constexpr int operations = 20, mostGroups = operations * 5;
    Dataset there("DB", "TOWNS", "CODE");
    test::ChildProcess station([&](const test::ChildProcess::Link& link) {
        there.open();
        link.tell();
        link.await();
        for (int i = 0; i < operations / 2; ++i) {
            there.refresh();
            append(there, {{"CODE", "77777"}, {"NAME", "THERE"}});
        }
        link.tell();
        link.await();
        return 0;
    });
    station.await();
    towns.open();
    station.tell();
    std::atomic<bool> isOver = false;
    std::thread waiting([&] {
        station.await();
        isOver = true;
    });
    int groups = 0;
    std::size_t rows = all_.size() + operations / 2;
    for (; !isOver && groups < mostGroups; ++groups) {
        WriteScope scope = together();
        for (int i = 0; i < 5000 && !scope.isDue(); ++i, ++rows) {
            append(towns, {{"CODE", std::to_string(10000 + rows % 50000).c_str()}, {"NAME", "HERE"}});
        }
        scope.commit();
    }
    EXPECT_LT(groups, mostGroups);
    waiting.join();
    station.tell();
    towns.refresh();
    EXPECT_EQ(towns.openTable().read([&] { return towns.openTable().records().recordCount(); }), rows);
}

} // namespace
} // namespace dbase
