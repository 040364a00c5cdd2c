// Several reads under one lock: how long it is kept, what ends it, and that no change is overlooked
// afterwards.
#include <optional>
#include <stdexcept>
#include <thread>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/check.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table_claim.h"
#include "read_scope_fixture.h"
#include "support/LockPatience.h"

namespace dbase {
namespace {

using std::chrono::milliseconds;
using test::errorOf;

// --- How long

TEST_F(ReadScopeTest, AReadByItselfLeavesNoLock) {
    one_.open();
    EXPECT_TRUE(find(one_, codeOf(7)));
    EXPECT_FALSE(isLocked());
}

TEST_F(ReadScopeTest, TheLockStaysFromOneReadToTheNextAndGoesWithTheScope) {
    one_.open();
    {
        const ReadScope scope;
        EXPECT_FALSE(isLocked());
        EXPECT_TRUE(find(one_, codeOf(7)));
        EXPECT_TRUE(isLocked());
        const std::uint64_t first = hold();
        EXPECT_TRUE(find(one_, codeOf(8)));
        EXPECT_TRUE(one_.next());
        EXPECT_EQ(hold(), first);
    }
    EXPECT_FALSE(isLocked());
}

TEST_F(ReadScopeTest, TheOutermostScopeCounts) {
    one_.open();
    {
        const ReadScope outer;
        {
            const ReadScope inner;
            EXPECT_TRUE(find(one_, codeOf(7)));
        }
        EXPECT_TRUE(isLocked());
    }
    EXPECT_FALSE(isLocked());
}

TEST_F(ReadScopeTest, AfterTwentyMillisecondsTheNextReadTakesTheLockAnew) {
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    const std::uint64_t first = hold();
    OwnClock::now += milliseconds(19);
    EXPECT_TRUE(find(one_, codeOf(8)));
    EXPECT_EQ(hold(), first);
    OwnClock::now += milliseconds(1);
    EXPECT_TRUE(find(one_, codeOf(9)));
    EXPECT_NE(hold(), first);
    EXPECT_TRUE(isLocked());
}

TEST_F(ReadScopeTest, RowsReadAheadDoNotKeepItLonger) {
    one_.open();
    const ReadScope scope;
    one_.first();
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(one_.next());
    }
    EXPECT_TRUE(isLocked());
    OwnClock::now += longestHold;
    EXPECT_TRUE(one_.next());
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(5));
}

TEST_F(ReadScopeTest, ATableThatIsReadNoLongerIsLetGoAsWell) {
    one_.open();
    two_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    EXPECT_TRUE(find(two_, codeOf(7)));
    EXPECT_TRUE(isLocked("ONE"));
    EXPECT_TRUE(isLocked("TWO"));
    OwnClock::now += longestHold;
    EXPECT_TRUE(find(two_, codeOf(8)));
    EXPECT_FALSE(isLocked("ONE"));
    EXPECT_TRUE(isLocked("TWO"));
}

TEST_F(ReadScopeTest, TwoDatasetsOfOneTableShareTheHold) {
    Dataset other("DB", "ONE");
    one_.open();
    other.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    const std::uint64_t first = hold();
    other.first();
    EXPECT_TRUE(other.next());
    EXPECT_EQ(hold(), first);
    other.close();
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(hold(), first);
}

TEST_F(ReadScopeTest, AScopeOfAnotherThreadKeepsNothingHere) {
    one_.open();
    const ReadScope scope;
    std::thread([&] {
        EXPECT_TRUE(find(one_, codeOf(7)));
        EXPECT_FALSE(isLocked());
    }).join();
    EXPECT_TRUE(find(one_, codeOf(7)));
    EXPECT_TRUE(isLocked());
}

// --- Writers that wait

/// Another program waits for the exclusive lock until its turn comes on the test's clock, which advances by a
/// millisecond whenever it is read.
class WaitingWriterTest : public ReadScopeTest {
protected:
    WaitingWriterTest() {
        writer_ = openFile(folder / "ONE.MDX", OpenMode::ReadWrite);
        one_.open();
        EXPECT_TRUE(find(one_, codeOf(1)));
        EXPECT_TRUE(writer_->tryLock(waitingLock, LockKind::Shared));
        begin_ = OwnClock::now;
        setHoldClock([] {
            OwnClock::now += milliseconds(1);
            if (turn_ == 0 && OwnClock::now - begin_ > milliseconds(60)) {
                turn_ = writer_->tryLock(structureLock, LockKind::Exclusive) ? reads_ : -1;
                writer_->unlock(everyLock);
            }
            return OwnClock::now;
        });
    }
    ~WaitingWriterTest() override { writer_.reset(); }
    /// Reads until the writer's turn has come. Returns how many reads came before it, -1 if it came in vain.
    int readsBeforeItsTurn() {
        for (reads_ = 1; turn_ == 0; ++reads_) {
            EXPECT_TRUE(find(one_, codeOf(reads_ % 300)));
        }
        return turn_;
    }

    static inline std::unique_ptr<File> writer_;
    static inline std::chrono::nanoseconds begin_;
    static inline int reads_, turn_;
};

TEST_F(WaitingWriterTest, ReadsByThemselvesLetItGoFirstAfterAFewMilliseconds) {
    reads_ = turn_ = 0;
    const int reads = readsBeforeItsTurn();
    EXPECT_GT(reads, 0);
    EXPECT_LE(reads, longestRun / milliseconds(1) + 1);
}

TEST_F(WaitingWriterTest, ReadsInAScopeLetItGoFirstWhenTheirTimeIsUp) {
    reads_ = turn_ = 0;
    const ReadScope scope;
    const int reads = readsBeforeItsTurn();
    EXPECT_GT(reads, 0);
    EXPECT_LE(reads, longestHold / milliseconds(1) + 1);
}

TEST_F(WaitingWriterTest, AWriterThatWaitsInVainDoesNotStopReaders) {
    reads_ = 0;
    turn_ = 1; // never comes
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(find(one_, codeOf(i)));
    }
    EXPECT_GT(OwnClock::now - begin_, longestPause);
    EXPECT_LT(OwnClock::now - begin_, 100 / (longestRun / milliseconds(1)) * 2 * longestPause);
}

// --- What ends it

TEST_F(ReadScopeTest, AChangeEndsTheHoldAndTheScopeGoesOn) {
    one_.open();
    two_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    EXPECT_TRUE(find(two_, codeOf(7)));
    const std::uint64_t first = hold();
    insert(two_, "1071");
    EXPECT_FALSE(isLocked("ONE")) << "else two processes could each wait for what the other keeps";
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(8));
    EXPECT_NE(hold(), first);
    EXPECT_TRUE(isLocked("ONE"));
}

TEST_F(ReadScopeTest, AChangeThroughAnotherCursorIsSeenByTheNextStep) {
    Dataset other("DB", "ONE", "CODE");
    one_.open();
    other.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    insert(other, "1071");
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), "1071");
    EXPECT_TRUE(find(other, "1071"));
    other.erase();
    EXPECT_TRUE(one_.next());
    EXPECT_TRUE(one_.prior());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(7));
    EXPECT_TRUE(one_.next());
    EXPECT_EQ(one_.field("CODE").text(), codeOf(8));
}

TEST_F(ReadScopeTest, EditAndPostInsideAreWholeAndKeepNothing) {
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    one_.edit();
    one_.field("CODE").setText("1071");
    one_.post();
    EXPECT_FALSE(find(one_, codeOf(7)));
    EXPECT_TRUE(find(one_, "1071"));
    one_.erase();
    EXPECT_FALSE(find(one_, "1071"));
}

TEST_F(ReadScopeTest, ARecordLockEndsTheHold) {
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    EXPECT_TRUE(one_.lockCurrent());
    EXPECT_FALSE(isLocked());
}

TEST_F(ReadScopeTest, AnotherOpeningOfTheFileIsNotLockedOutByOurOwnHold) {
    const ambrel::test::LockPatience brief(milliseconds(50));
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    reindexTable(folder / "ONE.DBF");
    EXPECT_TRUE(find(one_, codeOf(8)));
    {
        BulkLoader loader(folder / "ONE.DBF", BulkLoader::Mode::Append);
        loader.add(test::makeRecord(loader.schema(), {"0999"}));
        loader.finish();
    }
    one_.first();
    EXPECT_EQ(one_.field("CODE").text(), "0999");
}

TEST_F(ReadScopeTest, ATableCanBeReplacedInsideOnceItIsClosed) {
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    one_.close();
    EXPECT_FALSE(isLocked());
    BulkLoader loader(folder / "ONE.DBF", BulkLoader::Mode::Replace);
    loader.add(test::makeRecord(loader.schema(), {"5"}));
    loader.finish();
    one_.open();
    EXPECT_EQ(one_.field("CODE").text(), "5");
}

TEST_F(ReadScopeTest, ClaimingATableLetsGoOfThoseThatAreRead) {
    one_.open();
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    ASSERT_TRUE(isLocked());
    const TableClaim claim(folder / "TWO.DBF");
    EXPECT_FALSE(isLocked());
}

TEST_F(ReadScopeTest, ADatasetThatGoesFirstLeavesNothing) {
    std::optional<Dataset> table(std::in_place, "DB", "ONE", "CODE");
    table->open();
    const ReadScope scope;
    EXPECT_TRUE(find(*table, codeOf(7)));
    table.reset();
    EXPECT_FALSE(isLocked());
    two_.open();
    EXPECT_TRUE(find(two_, codeOf(7)));
}

TEST_F(ReadScopeTest, AnExceptionLeavesNoLock) {
    one_.open();
    try {
        const ReadScope scope;
        EXPECT_TRUE(find(one_, codeOf(7)));
        throw std::runtime_error("in the middle");
    } catch (const std::runtime_error&) {
        EXPECT_FALSE(isLocked());
    }
}

TEST_F(ReadScopeTest, ARefusedReadInsideLeavesTheScopeUsable) {
    one_.open();
    const ReadScope scope;
    EXPECT_EQ(errorOf([&] {
                  static_cast<void>(one_.openTable().read(
                      []() -> bool { throw Error(ErrorCode::BadIndex, {}, "a page that lies"); }));
              }).code(),
              ErrorCode::BadIndex);
    EXPECT_TRUE(find(one_, codeOf(7)));
    ReadScope::letGo();
    EXPECT_FALSE(isLocked());
    EXPECT_TRUE(find(one_, codeOf(8)));
}

TEST_F(ReadScopeTest, WaitingForOneTableLetsGoOfTheOthers) {
    const ambrel::test::LockPatience none(milliseconds(0));
    one_.open();
    two_.open();
    const auto other = openFile(folder / "TWO.MDX", OpenMode::ReadWrite);
    const ReadScope scope;
    EXPECT_TRUE(find(one_, codeOf(7)));
    ASSERT_TRUE(other->tryLock(structureLock, LockKind::Exclusive));
    EXPECT_EQ(errorOf([&] { static_cast<void>(find(two_, codeOf(7))); }).code(), ErrorCode::LockTimeout);
    EXPECT_FALSE(isLocked("ONE"));
    other->unlock(structureLock);
    EXPECT_TRUE(find(two_, codeOf(7)));
    EXPECT_TRUE(find(one_, codeOf(8)));
}

} // namespace
} // namespace dbase
