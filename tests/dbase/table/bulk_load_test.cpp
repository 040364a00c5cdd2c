// Loads many rows at once: all of them or none.
#include "dbase/table/bulk_loader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <unistd.h>

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/FaultyFile.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/file_pieces.h"
#include "dbase/table/check.h"
#include "dbase/table/exclusive_use.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "support/FileSizeLimit.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using Mode = BulkLoader::Mode;

class BulkLoadTest : public ::testing::Test {
protected:
    explicit BulkLoadTest(std::vector<TagDefinition> tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                                                             {.name = "NUM", .expression = "NUM"}}) {
        createTable(folder_.path(), {.name = "CARGA",
                                     .columns = {{"NOMBRE", ColumnType::Character, 60, 0, 0},
                                                 {"NUM", ColumnType::Numeric, 6, 0, 0}},
                                     .tags = std::move(tags)});
        const auto table = Table::open(path());
        for (int i = 0; i < 10; ++i) {
            table->append(row(table->schema(), i));
        }
    }

    [[nodiscard]] std::string path() const { return folder_ / "CARGA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CARGA.MDX"; }
    /// The index without its session, which is another one with each journal.
    [[nodiscard]] Bytes indexBytes() const {
        Bytes bytes = readFile(indexPath());
        store64(bytes.data() + mdx::stamp + mdx::stampSession, 0);
        return bytes;
    }
    static Bytes row(const Schema& schema, int i) {
        return makeRecord(schema, {"CALLE " + std::to_string(i * 7919 % 10007), std::to_string(i)});
    }
    static void add(BulkLoader& loader, int from, int to) {
        for (int i = from; i < to; ++i) {
            loader.add(row(loader.schema(), i));
        }
    }
    void expectRows(RecordNumber rows) const {
        const auto table = Table::open(path());
        EXPECT_EQ(table->records().recordCount(), rows);
        for (RecordNumber number = 1; number <= rows; number += 97) {
            EXPECT_EQ(storedRecord(*table, number), row(table->schema(), static_cast<int>(number - 1)))
                << number;
        }
    }
    void expectSound() const { EXPECT_EQ(findings(path()), ""); }
    /// Whatever became of the load, the table is sound; the next program to open it may have to recover it.
    void TearDown() override {
        if (isChecked_) {
            (void)Table::open(path());
            expectSound();
        }
    }

    TemporaryFolder folder_;
    bool isChecked_ = true;
};

TEST_F(BulkLoadTest, RowsAreAddedBehindTheOthers) {
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 2000);
    loader.finish();
    expectRows(2000);
    expectSound();
}

TEST_F(BulkLoadTest, MoreRowsThanAreHeldInMemoryAreAddedInPieces) {
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 70000); // 4.7 MB
    loader.finish();
    expectRows(70000);
    expectSound();
}

TEST_F(BulkLoadTest, PiecesEndAtTheirMultiplesInTheFileEvenInsideARow) {
    BulkLoader loader(path(), Mode::Append);
    const std::uint64_t rows = pieceBytes / loader.schema().recordLength;
    ASSERT_NE((pieceBytes - loader.schema().headerLength) % loader.schema().recordLength, 0U);
    add(loader, 10, static_cast<int>(rows * 3 / 2));
    EXPECT_EQ(std::filesystem::file_size(path()), pieceBytes);
    add(loader, static_cast<int>(rows * 3 / 2), static_cast<int>(rows * 9 / 4));
    EXPECT_EQ(std::filesystem::file_size(path()), 2 * pieceBytes);
}

TEST_F(BulkLoadTest, NothingIsVisibleBeforeTheEnd) {
    const Bytes index = indexBytes();
    const auto reader = Table::open(path());
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 40000);
    EXPECT_EQ(reader->records().recordCount(), 10U);
    EXPECT_EQ(indexBytes(), index);
    loader.finish();
    EXPECT_EQ(reader->records().recordCount(), 40000U);
    EXPECT_EQ(order(*reader, "NUM").size(), 40000U);
}

TEST_F(BulkLoadTest, WithoutFinishTheTableIsAsItWas) {
    const Bytes table = readFile(path()), index = indexBytes();
    {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10, 40000);
    }
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(BulkLoadTest, RedoesTheChangeAtWhichAWriterDied) {
    const auto table = Table::open(path()); // no read comes between the death and the load
    const Bytes before = row(table->schema(), 4), after = row(table->schema(), 400);
    ChildProcess writer([&](const ChildProcess::Link&) {
        const auto faults = std::make_shared<Faults>();
        faults->failingWrite = 2; // of the mark and the record
        faults->tearsWrite = true;
        faults->insteadOfFailing = [] { _exit(0); };
        const auto opened = [&](const std::string& file) {
            return std::make_unique<FaultyFile>(openFile(file, OpenMode::ReadWrite), faults);
        };
        Table own(opened(path()), opened(indexPath()), {}, journalBeside(path()));
        own.overwrite(5, before, after);
        return 1;
    });
    ASSERT_EQ(writer.join(), 0);
    {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10, 20);
        loader.finish();
    }
    const Bytes stored = storedRecord(*table, 5);
    EXPECT_TRUE(stored == before || stored == after) << "half of each";
}

TEST_F(BulkLoadTest, NoRowsChangeNothing) {
    const Bytes table = readFile(path()), index = indexBytes();
    {
        BulkLoader loader(path(), Mode::Append);
        loader.finish();
    }
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(BulkLoadTest, ARecordOfAnotherLengthIsRefused) {
    BulkLoader loader(path(), Mode::Append);
    EXPECT_EQ(errorOf([&] { loader.add(Bytes(5)); }).code(), ErrorCode::BadValue);
}

TEST_F(BulkLoadTest, AReadOnlyTableIsRefused) {
    isChecked_ = false; // its index is gone
    std::filesystem::remove(indexPath());
    EXPECT_EQ(errorOf([&] { BulkLoader loader(path(), Mode::Append); }).code(), ErrorCode::ReadOnly);
}

TEST_F(BulkLoadTest, OtherWritersWaitMeanwhileAndReadersDoNot) {
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 20);
    const auto table = openFile(path(), OpenMode::ReadWrite),
               index = openFile(indexPath(), OpenMode::ReadWrite);
    EXPECT_FALSE(index->tryLock(structureLock, LockKind::Exclusive));
    EXPECT_TRUE(index->tryLock(structureLock, LockKind::Shared));
    index->unlock(structureLock);
    EXPECT_FALSE(table->tryLock(appendLock, LockKind::Exclusive))
        << "programs that lock the table's own bytes";
    loader.finish();
    EXPECT_TRUE(index->tryLock(structureLock, LockKind::Exclusive));
    EXPECT_TRUE(table->tryLock(appendLock, LockKind::Exclusive));
}

TEST_F(BulkLoadTest, WithoutAnIndexReadersDoNotWaitEither) {
    createTable(folder_.path(),
                {.name = "SUELTA", .columns = {{"NUM", ColumnType::Numeric, 6, 0, 0}}, .tags = {}});
    const auto table = Table::open(folder_ / "SUELTA.DBF");
    const auto file = openFile(folder_ / "SUELTA.DBF", OpenMode::ReadWrite);
    BulkLoader loader(folder_ / "SUELTA.DBF", Mode::Append);
    loader.add(makeRecord(loader.schema(), {"1"}));
    EXPECT_TRUE(file->tryLock(structureLock, LockKind::Shared));
    file->unlock(structureLock);
    EXPECT_FALSE(file->tryLock(structureLock, LockKind::Exclusive));
    loader.finish();
    EXPECT_EQ(table->records().recordCount(), 1U);
    EXPECT_EQ(findings(folder_ / "SUELTA.DBF"), "");
}

TEST_F(BulkLoadTest, AReaderSeesTheOldTableUntilAllRowsCount) {
    const auto table = Table::open(path());
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 20000);
    int calls = 0;
    loader.finish([&](std::uint64_t, std::uint64_t) {
        EXPECT_EQ(order(*table, "NUM").size(), 10U);
        ++calls;
    });
    EXPECT_GT(calls, 2);
    EXPECT_EQ(order(*table, "NUM").size(), 20000U);
}

TEST_F(BulkLoadTest, WritingFromTheProgressIsRefusedAndHarmless) {
    const auto table = Table::open(path());
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 20000);
    int calls = 0;
    loader.finish([&](std::uint64_t done, std::uint64_t total) {
        if (done < total) {
            EXPECT_EQ(errorOf([&] { table->append(row(table->schema(), 1)); }).code(),
                      ErrorCode::LockTimeout);
            ++calls;
        }
    });
    EXPECT_GT(calls, 0);
    EXPECT_EQ(order(*table, "NUM").size(), 20000U);
}

/// Counts what is written to a file while its table's structure is locked for everybody else.
class ExclusiveWrites final : public File {
public:
    ExclusiveWrites(std::unique_ptr<File> file, std::string locked, std::size_t& writes)
        : file_(std::move(file)), locked_(openFile(locked, OpenMode::ReadWrite)), writes_(writes) {}

    const std::string& path() const override { return file_->path(); }
    bool isWritable() const override { return true; }
    std::uint64_t size() const override { return file_->size(); }
    FileStatus status() const override { return file_->status(); }
    void read(std::uint64_t offset, std::span<char> bytes) const override { file_->read(offset, bytes); }
    void write(std::uint64_t offset, std::span<const char> bytes) override {
        if (locked_->tryLock(structureLock, LockKind::Shared)) {
            locked_->unlock(structureLock);
        } else {
            ++writes_;
        }
        file_->write(offset, bytes);
    }
    void resize(std::uint64_t size) override { file_->resize(size); }
    void sync() override { file_->sync(); }
    bool tryLock(LockRange range, LockKind kind) override { return file_->tryLock(range, kind); }
    void unlock(LockRange range) noexcept override { file_->unlock(range); }
    bool isLockedByOthers(LockRange range) const override { return file_->isLockedByOthers(range); }

private:
    std::unique_ptr<File> file_, locked_;
    std::size_t& writes_;
};

TEST_F(BulkLoadTest, ReadersAreExcludedForAsManyWritesHoweverManyRowsAreLoaded) {
    const auto writesOf = [&](int rows) {
        std::size_t writes = 0;
        const auto watched = [&](const std::string& file) {
            return std::make_unique<ExclusiveWrites>(openFile(file, OpenMode::ReadWrite), indexPath(),
                                                     writes);
        };
        Table table(watched(path()), watched(indexPath()), {}, journalBeside(path()));
        ExclusiveUse use(table);
        use.beginLoad();
        use.shareLoad();
        writes = 0;
        const RecordNumber count = use.records().recordCount();
        Bytes bytes;
        for (int i = 0; i < rows; ++i) {
            const Bytes record = row(table.schema(), i);
            bytes.insert(bytes.end(), record.begin(), record.end());
        }
        bytes.front() = endMark;
        bytes.push_back(endMark);
        use.records().writeTailPiece(use.records().offsetOf(count + 1), bytes);
        use.addRows(count + static_cast<RecordNumber>(rows), ' ', {});
        EXPECT_EQ(use.records().recordCount(), count + static_cast<RecordNumber>(rows));
        return writes;
    };
    const std::size_t few = writesOf(10), many = writesOf(30000);
    EXPECT_GT(few, 0U);
    EXPECT_EQ(many, few);
}

TEST_F(BulkLoadTest, NewTreesTakeTheRoomOfTheOldestOnes) {
    for (int load = 0; load < 6; ++load) {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10 + load * 1000, 1010 + load * 1000);
        loader.finish();
    }
    expectRows(6010);
    const auto size = std::filesystem::file_size(indexPath());
    Table::open(path())->rebuildTags();
    EXPECT_LT(size, 5 * std::filesystem::file_size(indexPath()) / 2);
}

TEST_F(BulkLoadTest, DamagedTreesAreRebuiltInPlace) {
    {
        const auto table = Table::open(path());
        const Tag& tag = *table->findTag("NOMBRE");
        const auto file = openFile(indexPath(), OpenMode::ReadWrite);
        Bytes nowhere(4);
        store32(nowhere.data(), 1'000'000);
        file->write(tag.headerPage * pageBytes + mdx::root, nowhere);
    }
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 2000);
    loader.finish();
    expectRows(2000);
    expectSound();
}

TEST_F(BulkLoadTest, AnExceptionFromTheProgressLeavesTheTableAsItWas) {
    const Bytes table = readFile(path()), index = indexBytes();
    {
        BulkLoader loader(path(), Mode::Append);
        add(loader, 10, 20000);
        EXPECT_THROW(loader.finish([](std::uint64_t, std::uint64_t) { throw std::runtime_error("enough"); }),
                     std::runtime_error);
    }
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(BulkLoadTest, IsCheckedOnlyOnceItHasEnded) {
    const ambrel::test::LockPatience none(std::chrono::milliseconds(0));
    BulkLoader loader(path(), Mode::Append);
    add(loader, 10, 70000);
    EXPECT_EQ(errorOf([&] { (void)checkTable(path()); }).code(), ErrorCode::LockTimeout);
    loader.finish();
}

TEST_F(BulkLoadTest, ReplacingLeavesOnlyTheNewRows) {
    {
        BulkLoader loader(path(), Mode::Replace);
        add(loader, 0, 500);
        loader.finish();
    }
    expectRows(500);
    expectSound();
}

TEST_F(BulkLoadTest, AReplacedIndexNamesItsTable) {
    {
        BulkLoader loader(path(), Mode::Replace);
        add(loader, 0, 5);
        loader.finish();
    }
    const Bytes index = indexBytes();
    EXPECT_EQ(std::string(index.data() + mdx::tableName), "CARGA");
}

TEST_F(BulkLoadTest, ReplacingByNothingEmptiesTheTable) {
    {
        BulkLoader loader(path(), Mode::Replace);
        loader.finish();
    }
    expectRows(0);
    expectSound();
}

TEST_F(BulkLoadTest, ReplacingWithoutFinishLeavesTheOldTableAndNoOtherFiles) {
    const Bytes table = readFile(path()), index = indexBytes();
    {
        BulkLoader loader(path(), Mode::Replace);
        add(loader, 0, 500);
    }
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(indexBytes(), index);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2);
}

TEST_F(BulkLoadTest, ReplacingAnOpenTableIsRefused) {
    const auto open = Table::open(path());
    EXPECT_EQ(errorOf([&] { BulkLoader loader(path(), Mode::Replace); }).code(), ErrorCode::LockTimeout);
    EXPECT_EQ(order(*open, "NUM").size(), 10U);
}

TEST_F(BulkLoadTest, ReplacingWhatAnotherProcessHasOpenIsRefused) {
    const auto other = openInAnotherProcess(path());
    EXPECT_EQ(errorOf([&] { BulkLoader loader(path(), Mode::Replace); }).code(), ErrorCode::LockTimeout);
    other->tell();
    EXPECT_EQ(other->join(), 0);
    expectRows(10);
}

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

/// Tags whose entries cannot be counted: only the mark shows that they are wrong.
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
