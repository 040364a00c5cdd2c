// Several processes, and several owners in one process, on one table.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <set>
#include <thread>
#include <vector>

#include "dbase/lock/locks.h"

#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::LockPatience;

class ParallelTest : public ::testing::Test {
protected:
    ParallelTest() {
        createTable(
            folder_.path(),
            {.name = "COMUN",
             .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
             .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}});
    }
    ~ParallelTest() override { EXPECT_EQ(findings(path()), ""); }

    [[nodiscard]] std::string path() const { return folder_ / "COMUN.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "COMUN.MDX"; }
    static Bytes row(const Table& table, int i) {
        return makeRecord(table.schema(), {"CALLE " + std::to_string(i * 7919 % 1000), std::to_string(i)});
    }

    TemporaryFolder folder_;
};

TEST_F(ParallelTest, ThreadsHaveATableEachAndLoseNoRow) {
    constexpr int each = 100;
    std::array<const Table*, 4> tables{};
    std::barrier together(tables.size());
    const auto work = [&](std::size_t thread) {
        const auto table = Table::open(path());
        tables.at(thread) = table.get();
        together.arrive_and_wait();
        for (int i = 0; i < each; ++i) {
            const int number = static_cast<int>(thread) * each + i;
            const RecordNumber record = table->append(row(*table, number));
            EXPECT_EQ(valueOf(table->schema(), storedRecord(*table, record), "NUM"), std::to_string(number));
        }
        together.arrive_and_wait(); // no other table takes the place of one that has ended
    };
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < tables.size(); ++thread) {
            threads.emplace_back(work, thread);
        }
    }
    EXPECT_EQ(std::set(tables.begin(), tables.end()).size(), tables.size());
    EXPECT_EQ(order(*Table::open(path()), "NUM").size(), tables.size() * each);
}

TEST_F(ParallelTest, TwoProcessesThatAppendLoseNoRow) {
    constexpr int each = 150;
    const auto work = [&](int first) {
        return [this, first](const ChildProcess::Link& link) {
            const auto table = Table::open(path());
            link.tell();
            link.await();
            for (int i = 0; i < each; ++i) {
                table->append(row(*table, first + i));
            }
            return 0;
        };
    };
    ChildProcess one(work(0)), two(work(1000));
    one.await();
    two.await();
    one.tell();
    two.tell();
    EXPECT_EQ(one.join(), 0);
    EXPECT_EQ(two.join(), 0);
    const auto table = Table::open(path());
    EXPECT_EQ(table->records().recordCount(), 2U * each);
    std::vector<bool> seen(2000);
    for (const RecordNumber number : order(*table, "NUM")) {
        seen[static_cast<std::size_t>(
            std::stoi(valueOf(table->schema(), storedRecord(*table, number), "NUM")))] = true;
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 2 * each);
    EXPECT_EQ(findings(path()), "");
}

TEST_F(ParallelTest, AReaderSeesEachRowWholeWhileAnotherProcessWrites) {
    ChildProcess writer([&](const ChildProcess::Link& link) {
        const auto table = Table::open(path());
        link.tell();
        for (int i = 0; i < 200; ++i) {
            table->append(row(*table, i));
        }
        return 0;
    });
    writer.await();
    const auto table = Table::open(path());
    for (int i = 0; i < 100; ++i) {
        const std::vector<RecordNumber> numbers = order(*table, "NOMBRE");
        EXPECT_LE(numbers.size(), 200U);
        for (const RecordNumber number : numbers) {
            ASSERT_EQ(storedRecord(*table, number), row(*table, static_cast<int>(number - 1)));
        }
    }
    EXPECT_EQ(writer.join(), 0);
    EXPECT_EQ(order(*table, "NOMBRE").size(), 200U);
}

TEST_F(ParallelTest, AReaderWaitsForARebuild) {
    {
        const auto table = Table::open(path());
        for (int i = 0; i < 50; ++i) {
            table->append(row(*table, i));
        }
    }
    const auto table = Table::open(path());
    const std::uint64_t counter = table->changeCounter();
    ChildProcess rebuilder([&](const ChildProcess::Link& link) {
        // A fork shares the open files and locks of its parent; only an opening of its own has its own locks.
        Table own(openFile(path(), OpenMode::ReadWrite), openFile(indexPath(), OpenMode::ReadWrite));
        own.rebuildTags();
        ExclusiveUse use(own);
        link.tell();
        link.await();
        use.rebuildTags({});
        return 0;
    });
    rebuilder.await();
    {
        const LockPatience noPatience(std::chrono::milliseconds(0));
        EXPECT_EQ(errorOf([&] { (void)order(*table, "NOMBRE"); }).code(), ErrorCode::LockTimeout);
    }
    rebuilder.tell();
    EXPECT_EQ(order(*table, "NOMBRE").size(), 50U);
    EXPECT_EQ(rebuilder.join(), 0);
    EXPECT_EQ(table->changeCounter(), counter + 4) << "two rebuilds of the other process and none of ours";
}

TEST_F(ParallelTest, ARecordLockExcludesOtherProcesses) {
    const auto table = Table::open(path());
    table->append(row(*table, 1));
    int owner = 0;
    ASSERT_TRUE(table->tryLockRecord(1, &owner));
    const auto tryInChild = [&] {
        ChildProcess child([&](const ChildProcess::Link&) {
            Table own(openFile(path(), OpenMode::ReadWrite), openFile(indexPath(), OpenMode::ReadWrite));
            return own.tryLockRecord(1, &owner) ? 1 : 0;
        });
        return child.join();
    };
    EXPECT_EQ(tryInChild(), 0);
    table->unlockRecord(1, &owner);
    EXPECT_EQ(tryInChild(), 1);
}

TEST_F(ParallelTest, OwnersInOneProcessExcludeEachOther) {
    const auto table = Table::open(path());
    int one = 0, two = 0;
    EXPECT_TRUE(table->tryLockRecord(5, &one));
    EXPECT_TRUE(table->tryLockRecord(5, &one)) << "its own";
    EXPECT_FALSE(table->tryLockRecord(5, &two));
    EXPECT_TRUE(table->tryLockRecord(6, &two));
    table->unlockRecord(5, &two); // not the owner
    EXPECT_FALSE(table->tryLockRecord(5, &two));
    table->unlockRecords(&one);
    EXPECT_TRUE(table->tryLockRecord(5, &two));
    EXPECT_FALSE(table->tryLockRecord(6, &one));
}

TEST_F(ParallelTest, AnotherOpeningOfTheFileDoesNotDropTheLocks) {
    const auto table = Table::open(path());
    int owner = 0;
    ASSERT_TRUE(table->tryLockRecord(1, &owner));
    { const auto another = openFile(path(), OpenMode::ReadWrite); }
    const auto stranger = openFile(path(), OpenMode::ReadWrite);
    EXPECT_FALSE(stranger->tryLock(recordLock(1), LockKind::Exclusive));
}

TEST_F(ParallelTest, OpeningTwiceGivesOneTable) { EXPECT_EQ(Table::open(path()), Table::open(path())); }

TEST_F(ParallelTest, AStructureLockThatIsNeverFreeIsReportedWithTheFile) {
    const auto table = Table::open(path());
    const auto stranger = openFile(indexPath(), OpenMode::ReadWrite);
    ASSERT_TRUE(stranger->tryLock(structureLock, LockKind::Exclusive));
    const LockPatience noPatience(std::chrono::milliseconds(0));
    const Error error = errorOf([&] { table->append(row(*table, 1)); });
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_EQ(error.file(), indexPath());
    stranger->unlock(structureLock);
    table->append(row(*table, 1));
}

TEST_F(ParallelTest, AReadInsideAReadKeepsTheLock) {
    const auto table = Table::open(path());
    table->append(row(*table, 1));
    const auto stranger = openFile(indexPath(), OpenMode::ReadWrite);
    EXPECT_FALSE(table->read([&] {
        (void)order(*table, "NOMBRE");
        return stranger->tryLock(structureLock, LockKind::Exclusive);
    }));
    EXPECT_TRUE(stranger->tryLock(structureLock, LockKind::Exclusive));
}

TEST_F(ParallelTest, AChangeInsideAReadIsRefused) {
    const auto table = Table::open(path());
    table->append(row(*table, 1));
    EXPECT_EQ(errorOf([&] {
                  table->read([&] {
                      table->append(row(*table, 2));
                      return 0;
                  });
              }).code(),
              ErrorCode::LockTimeout);
    EXPECT_EQ(table->records().recordCount(), 1U);
}

TEST_F(ParallelTest, ReadersDoNotExcludeEachOther) {
    const auto table = Table::open(path());
    const auto stranger = openFile(indexPath(), OpenMode::ReadWrite);
    ASSERT_TRUE(stranger->tryLock(structureLock, LockKind::Shared));
    const LockPatience noPatience(std::chrono::milliseconds(0));
    EXPECT_TRUE(order(*table, "NOMBRE").empty());
    EXPECT_EQ(errorOf([&] { table->append(row(*table, 1)); }).code(), ErrorCode::LockTimeout);
}

} // namespace
