// Loads that are cut short by the death of their program or a full disk.
#include <filesystem>
#include <functional>
#include <memory>

#include <unistd.h>

#include "bulk_load_fixture.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/FaultyFile.h"
#include "dbase/system/error.h"
#include "dbase/table/exclusive_use.h"
#include "support/FileSizeLimit.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using Mode = BulkLoader::Mode;

TEST_F(BulkLoadTest, AProcessThatDiesWhileAddingLeavesTheTableAsItWas) {
    ChildProcess dying([&](const ChildProcess::Link&) {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10, 40000);
        _exit(1);
        return 0;
    });
    EXPECT_EQ(dying.join(), 1);
    expectRows(10);
    Table::open(path())->append(row(Table::open(path())->schema(), 10));
    expectRows(11);
    expectSound(); // the rows that never counted are gone
}

TEST_F(BulkLoadTest, AProcessThatDiesWhileItBuildsTagsLeavesTheTableAsItWas) {
    const auto size = std::filesystem::file_size(indexPath());
    ChildProcess dying([&](const ChildProcess::Link&) {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10, 60000);
        loader.finish([](std::uint64_t done, std::uint64_t) {
            if (done > 60000) { // the trees of the first tag are written
                _exit(1);
            }
        });
        return 0;
    });
    EXPECT_EQ(dying.join(), 1);
    EXPECT_GT(std::filesystem::file_size(indexPath()), size);
    expectRows(10);
    EXPECT_EQ(std::filesystem::file_size(indexPath()), size);
    expectSound();
}

TEST_F(BulkLoadTest, AProcessThatDiesWhileTheRowsAreCountedInLeavesAllOfThemOrNone) {
    for (std::size_t write = 1;; ++write) {
        ChildProcess dying([&](const ChildProcess::Link&) {
            const auto faults = std::make_shared<Faults>();
            faults->failingWrite = write;
            faults->tearsWrite = true;
            faults->insteadOfFailing = [] { _exit(1); };
            const auto opened = [&](const std::string& file) {
                return std::make_unique<FaultyFile>(openFile(file, OpenMode::ReadWrite), faults);
            };
            Table table(opened(path()), opened(indexPath()), {}, journalBeside(path()));
            ExclusiveUse use(table);
            use.beginLoad();
            use.shareLoad();
            const RecordNumber count = use.records().recordCount();
            Bytes bytes;
            for (int i = 0; i < 100; ++i) {
                const Bytes record = row(table.schema(), static_cast<int>(count) + i);
                bytes.insert(bytes.end(), record.begin(), record.end());
            }
            bytes.front() = endMark;
            bytes.push_back(endMark);
            use.records().writeTailPiece(use.records().offsetOf(count + 1), bytes);
            use.addRows(count + 100, ' ', {});
            return 0;
        });
        const int end = dying.join();
        const RecordNumber count = Table::open(path())->records().recordCount();
        EXPECT_EQ(count % 100, 10U) << write;
        expectRows(count);
        expectSound();
        if (end == 0) {
            EXPECT_GT(write, 5U);
            break;
        }
    }
}

/// No file can grow beyond the given size: 0 when the load reports that.
int finishWithFullDisk(const std::string& path, std::uint64_t largestFile,
                       const std::function<void(BulkLoader&)>& fill) {
    const ambrel::test::FileSizeLimit limit(largestFile);
    try {
        BulkLoader loader(path, Mode::Append);
        fill(loader);
        loader.finish();
    } catch (const Error& error) {
        return error.code() == ErrorCode::DiskFull ? 0 : 1;
    }
    return 2;
}

TEST_F(BulkLoadTest, AFullDiskWhileAddingLeavesTheTableAsItWas) {
    const Bytes table = readFile(path()), index = indexBytes();
    ChildProcess child([&](const ChildProcess::Link&) {
        return finishWithFullDisk(path(), 500000, [](BulkLoader& loader) { add(loader, 10, 40000); });
    });
    EXPECT_EQ(child.join(), 0);
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(BulkLoadTest, AFullDiskWhileRebuildingLeavesTheTableAsItWas) {
    ChildProcess child([&](const ChildProcess::Link&) {
        return finishWithFullDisk(path(), 1400000, [](BulkLoader& loader) { add(loader, 10, 20000); });
    });
    EXPECT_EQ(child.join(), 0);
    expectRows(10);
    expectSound();
}

TEST_F(BulkLoadTest, AReplacementThatHasNoRoomNamesTheTableAndNotItsTemporaryFile) {
    const ambrel::test::FileSizeLimit limit(20'000);
    const Error full = errorOf([&] {
        BulkLoader loader(path(), BulkLoader::Mode::Replace);
        add(loader, 0, 1000);
        loader.finish();
    });
    EXPECT_EQ(full.code(), ErrorCode::DiskFull);
    EXPECT_EQ(full.file(), path());
    EXPECT_EQ(std::string(full.what()).find(".nuevo"), std::string::npos) << full.what();
}

/// Tags whose entries cannot be counted: only the mark shows that they are wrong.
class UncountableLoadTest : public BulkLoadTest {
protected:
    UncountableLoadTest() : BulkLoadTest({{.name = "SOLO", .expression = "NOMBRE", .unique = true}}) {}
};

TEST_F(UncountableLoadTest, AFullDiskWhileRebuildingLeavesTheTableAsItWas) {
    ChildProcess child([&](const ChildProcess::Link&) {
        return finishWithFullDisk(path(), 700000, [](BulkLoader& loader) { add(loader, 10, 10000); });
    });
    EXPECT_EQ(child.join(), 0);
    expectRows(10);
    expectSound();
}

} // namespace
