// A writer that dies at any of its writes leaves the change whole or not made, and sound tags.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include <unistd.h>

#include "dbase/journal/journal_place.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/table/table.h"
#include "recovery_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// A process that dies at each of its writes in turn.
class DyingWriter : public RecoveryTest {
protected:
    [[nodiscard]] std::string path() const { return folder_ / "RECUPERA.DBF"; }
    void putOnDisk() const {
        writeFile(path(), tableBytes());
        writeFile(folder_ / "RECUPERA.MDX", indexBytes());
    }
    /// True when the work ended before that write.
    [[nodiscard]] bool dieAt(std::size_t write, const std::function<void(Table&)>& work,
                             bool keepsJournal = false) const {
        ChildProcess child([&](const ChildProcess::Link&) {
            const auto faults = std::make_shared<Faults>();
            faults->failingWrite = write;
            faults->insteadOfFailing = [] { _exit(1); };
            const auto opened = [&](const std::string& file) {
                return std::make_unique<FaultyFile>(openFile(file, OpenMode::ReadWrite), faults);
            };
            Table table(opened(path()), opened(folder_ / "RECUPERA.MDX"), {},
                        keepsJournal ? journalBeside(path()) : nullptr);
            work(table);
            return 0;
        });
        const int code = child.join();
        EXPECT_TRUE(code == 0 || code == 1) << code;
        return code == 0;
    }
    void dieEverywhere(const std::function<void(Table&)>& work,
                       const std::function<void(Table&)>& judge) const {
        for (std::size_t write = 1; write < 100; ++write) {
            putOnDisk();
            const bool isOver = dieAt(write, work);
            {
                const auto table = Table::open(path());
                judge(*table);
                EXPECT_EQ(order(*table, "NOMBRE").size(), table->records().recordCount());
            }
            ASSERT_EQ(findings(path()), "") << write;
            if (isOver) {
                EXPECT_GT(write, 1U) << "nobody died";
                return;
            }
        }
        FAIL() << "the work never came to its end";
    }

    TemporaryFolder folder_;
};

TEST_F(DyingWriter, InAnAppend) {
    dieEverywhere([&](Table& table) { table.append(row(500)); },
                  [&](Table& table) {
                      const RecordNumber count = table.records().recordCount();
                      EXPECT_TRUE(count == 100 || storedRecord(table, 101) == row(500));
                  });
}

// A counter that is odd without a mark would never again prove what was read.
TEST_F(DyingWriter, NeverLeavesAnOddCounterWithoutTheMark) {
    bool isOver = false;
    for (std::size_t write = 1; !isOver && write < 100; ++write) {
        putOnDisk();
        isOver = dieAt(write, [&](Table& table) { table.append(row(500)); });
        StampBytes bytes;
        openFile(folder_ / "RECUPERA.MDX", OpenMode::ReadOnly)->read(mdx::stamp, bytes);
        const UpdateStamp left = decodeStamp(bytes);
        EXPECT_TRUE(left.inUpdate || left.counter % 2 == 0) << write;
        EXPECT_TRUE(left.inUpdate || left.records == (isOver ? 101U : 100U)) << write;
    }
    EXPECT_TRUE(isOver);
}

TEST_F(DyingWriter, InAnOverwrite) {
    dieEverywhere([&](Table& table) { table.overwrite(50, row(49), row(500)); },
                  [&](Table& table) {
                      const Bytes stored = storedRecord(table, 50);
                      EXPECT_TRUE(stored == row(49) || stored == row(500));
                  });
}

TEST_F(DyingWriter, InAChangeOfManyRecordsThatReindexingRedoes) {
    const auto renumber = [&](const RecordView& record, std::span<char> after) {
        std::ranges::copy(row(500 + static_cast<int>(record.number)), after.begin());
    };
    const auto isChanged = [&](Table& table, int number) {
        return storedRecord(table, static_cast<RecordNumber>(number)) == row(500 + number);
    };
    for (std::size_t write = 1; write < 100; ++write) {
        putOnDisk();
        const bool isOver = dieAt(
            write,
            [&](Table& table) {
                ASSERT_TRUE(table.tryLockRecord(50, this)); // splits the change into two writes
                table.amend(49, 3, renumber);
            },
            true);
        reindexTable(path());
        ASSERT_EQ(findings(path()), "") << write;
        {
            const auto table = Table::open(path());
            EXPECT_EQ(isChanged(*table, 49), isChanged(*table, 51)) << write;
        }
        if (isOver) {
            EXPECT_GT(write, 1U) << "nobody died";
            return;
        }
    }
    FAIL() << "the work never came to its end";
}

TEST_F(DyingWriter, InARebuild) {
    dieEverywhere([&](Table& table) { table.rebuildTags(); }, [](Table&) {});
}

} // namespace
