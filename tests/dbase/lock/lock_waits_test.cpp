// An operation waits ten seconds for all its locks together, beside a program that releases one of them late
// and another one never. Time is that of the test's own clock.
#include <gtest/gtest.h>

#include <functional>

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds patience{100};

/// A clock that advances by a millisecond whenever it is read.
class LockWaitsTest : public ::testing::Test {
protected:
    LockWaitsTest() {
        now_ = nanoseconds{0};
        at_ = nanoseconds::max();
        setLockClock([] {
            now_ += milliseconds(1);
            if (now_ >= at_) {
                at_ = nanoseconds::max();
                event_();
            }
            return now_;
        });
        createTable(folder_.path(), {.name = "CALLES",
                                     .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}},
                                     .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
        records_ = openFile(folder_ / "CALLES.DBF", OpenMode::ReadWrite);
        index_ = openFile(folder_ / "CALLES.MDX", OpenMode::ReadWrite);
    }
    ~LockWaitsTest() override { setLockClock(nullptr); }

    /// Another program holds a lock, and releases it late.
    void holdLate(File& file, LockRange range) {
        ASSERT_TRUE(file.tryLock(range, LockKind::Exclusive));
        now_ = nanoseconds{0};
        at_ = patience * 8 / 10;
        event_ = [&file, range] { file.unlock(range); };
    }
    static void expectOneDeadline(const std::function<void()>& operation) {
        EXPECT_EQ(errorOf(operation).code(), ErrorCode::LockTimeout);
        EXPECT_GE(now_, patience);
        EXPECT_LT(now_, patience * 12 / 10);
    }
    [[nodiscard]] std::string path() const { return folder_ / "CALLES.DBF"; }
    [[nodiscard]] static Bytes row(const Table& table) { return makeRecord(table.schema(), {"MAYOR"}); }

    ambrel::test::LockPatience patience_{patience};
    TemporaryFolder folder_;
    std::unique_ptr<File> records_, index_;

    static inline nanoseconds now_, at_;
    static inline std::function<void()> event_;
};

TEST_F(LockWaitsTest, AddingARowWaitsOnceForTheStructureAndTheAppendLock) {
    const auto table = Table::open(path());
    ASSERT_TRUE(records_->tryLock(appendLock, LockKind::Exclusive));
    holdLate(*index_, structureLock);
    expectOneDeadline([&] { table->append(row(*table)); });
    EXPECT_EQ(table->records().recordCount(), 0U);
    records_->unlock(appendLock);
    EXPECT_EQ(table->append(row(*table)), 1U) << "the next operation waits anew";
}

TEST_F(LockWaitsTest, AReaderThatMustRecoverTheTableFirstWaitsOnceForBoth) {
    const auto table = Table::open(path());
    UpdateStamp stamp = table->index()->stamp();
    stamp.inUpdate = true;
    index_->write(mdx::stamp, encodeStamp(stamp));
    holdLate(*index_, structureLock);
    event_ = [this] { // another reader, which stays
        index_->unlock(structureLock);
        ASSERT_TRUE(index_->tryLock(structureLock, LockKind::Shared));
    };
    expectOneDeadline([&] { (void)storedRecord(*table, 1); });
}

TEST_F(LockWaitsTest, OpeningATableWaitsOnceForItsTurnAndForItsStructure) {
    ASSERT_TRUE(index_->tryLock(structureLock, LockKind::Exclusive));
    holdLate(*records_, openingLock);
    expectOneDeadline([&] { (void)Table::open(path()); });
}

TEST_F(LockWaitsTest, ALoadWaitsOnceForTheTableAndTheAppendLock) {
    ASSERT_TRUE(records_->tryLock(appendLock, LockKind::Exclusive));
    holdLate(*index_, structureLock);
    expectOneDeadline([&] { BulkLoader(path(), BulkLoader::Mode::Append); });
}

TEST_F(LockWaitsTest, AWriterShowsThatItWaitsForReadersAndNotThatItWaitsForALoad) {
    const auto isShownBeside = [&](const std::function<void()>& wait) {
        bool isShown = false;
        now_ = nanoseconds{0};
        at_ = patience / 2;
        event_ = [&] { isShown = index_->isLockedByOthers(waitingLock); };
        EXPECT_EQ(errorOf(wait).code(), ErrorCode::LockTimeout);
        EXPECT_FALSE(index_->isLockedByOthers(waitingLock));
        return isShown;
    };
    Table writer(openFile(path(), OpenMode::ReadWrite),
                 openFile(folder_ / "CALLES.MDX", OpenMode::ReadWrite));
    ASSERT_TRUE(index_->tryLock(structureLock, LockKind::Shared));
    EXPECT_TRUE(isShownBeside([&] { writer.append(row(writer)); }));
    index_->unlock(structureLock);
    const BulkLoader loader(path(), BulkLoader::Mode::Append);
    EXPECT_FALSE(isShownBeside([&] { writer.append(row(writer)); }));
}

TEST_F(LockWaitsTest, ReindexingWaitsOnceForItsTurnAndForTheStructure) {
    ASSERT_TRUE(index_->tryLock(structureLock, LockKind::Exclusive));
    holdLate(*records_, openingLock);
    expectOneDeadline([&] { reindexTable(path()); });
}

} // namespace
