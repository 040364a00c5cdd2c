// Loads many rows at once: all of them or none.
#include "dbase/table/bulk_loader.h"

#include <filesystem>

#include <unistd.h>

#include "bulk_load_fixture.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/FaultyFile.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/file_pieces.h"
#include "dbase/table/check.h"
#include "dbase/table/exclusive_use.h"
#include "support/LockPatience.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using Mode = BulkLoader::Mode;

TEST_F(BulkLoadTest, RowsAreAddedAfterTheOthers) {
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

} // namespace
