// Indexes in need of recovery: after a writer's death, a program that knows no index, a truncated file.
#include <gtest/gtest.h>

#include <algorithm>

#include <unistd.h>

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table.h"
#include "recovery_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

TEST_F(RecoveryTest, AMarkLeftBehindIsRecoveredAtOpening) {
    setMark();
    spoilTree();
    expectSound(100);
    EXPECT_FALSE(stamp().inUpdate);
}

TEST_F(RecoveryTest, AMarkLeftBehindIsRecoveredByAnOpenTableBeforeItAnswers) {
    const auto table = stored_.open();
    setMark();
    spoilTree();
    EXPECT_EQ(order(*table, "NOMBRE").size(), 100U);
    EXPECT_EQ(stored_.findings(), "");
}

TEST_F(RecoveryTest, AMarkLeftBehindIsRecoveredBeforeAChange) {
    const auto table = stored_.open();
    setMark();
    spoilTree();
    table->append(row(100));
    expectSound(101);
}

TEST_F(RecoveryTest, AMarkOnAReadOnlyTableIsRefused) {
    setMark();
    const Bytes table = tableBytes(), index = indexBytes();
    const Error error = errorOf([&] { (void)stored_.openReadOnly(); });
    EXPECT_EQ(error.code(), ErrorCode::StaleIndex);
    EXPECT_EQ(error.file(), "MEMORIA.MDX");
    EXPECT_NE(std::string(error.what()).find("reindexar"), std::string::npos) << error.what();
    EXPECT_EQ(tableBytes(), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(RecoveryTest, AMarkThatAppearsOnAReadOnlyTableIsRefusedAtTheNextRead) {
    const auto table = stored_.openReadOnly();
    EXPECT_EQ(order(*table, "NOMBRE").size(), 100U);
    setMark();
    EXPECT_EQ(errorOf([&] { (void)order(*table, "NOMBRE"); }).code(), ErrorCode::StaleIndex);
}

TEST_F(RecoveryTest, RowsOfAProgramWithoutIndexAreRecognisedByTheirCount) {
    appendWithoutIndex(100);
    expectSound(101);
}

TEST_F(RecoveryTest, RowsOfAProgramWithoutIndexAreSeenByAnOpenTable) {
    const auto table = stored_.open();
    appendWithoutIndex(100);
    EXPECT_EQ(order(*table, "NOMBRE").size(), 101U);
    EXPECT_EQ(stored_.findings(), "");
}

TEST_F(RecoveryTest, RowsOfAProgramWithoutIndexOnAReadOnlyTableAreRefused) {
    appendWithoutIndex(100);
    EXPECT_EQ(errorOf([&] { (void)stored_.openReadOnly(); }).code(), ErrorCode::StaleIndex);
}

TEST_F(RecoveryTest, RowsOfAProgramThatKeepsTheIndexAreAccepted) {
    const UpdateStamp before = stamp();
    const Bytes stampBytes(indexBytes().begin() + mdx::stamp,
                           indexBytes().begin() + mdx::stamp + mdx::stampSize);
    stored_.open()->append(row(100));
    std::copy(stampBytes.begin(), stampBytes.end(),
              indexBytes().begin() + mdx::stamp); // other programs know no stamp
    ASSERT_EQ(stamp().records, before.records);
    const Bytes index = indexBytes();
    {
        const auto table = stored_.open();
        EXPECT_EQ(order(*table, "NOMBRE").size(), 101U);
    }
    EXPECT_EQ(indexBytes(), index) << "it was rebuilt";
    EXPECT_EQ(stored_.openReadOnly()->records().recordCount(), 101U);
}

TEST_F(RecoveryTest, AnIndexWithoutStampIsCountedToo) {
    removeStamp();
    EXPECT_EQ(stored_.openReadOnly()->records().recordCount(), 100U);
    appendWithoutIndex(100);
    EXPECT_EQ(errorOf([&] { (void)stored_.openReadOnly(); }).code(), ErrorCode::StaleIndex);
    expectSound(101);
}

TEST_F(RecoveryTest, AnIndexThatCannotBeWalkedCountsAsStale) {
    removeStamp();
    std::fill(indexBytes().begin() + 2048, indexBytes().end() - 4096, '\0');
    store32(indexBytes().data() + 4 * pageBytes, 999999);
    EXPECT_THROW((void)stored_.open(), Error);
}

TEST_F(RecoveryTest, ATableCutBeforeItIsOpenedGoesOnWithItsCompleteRecords) {
    tableBytes().resize(tableBytes().size() - 500);
    expectSound(86);
}

TEST_F(RecoveryTest, ACutTableThatIsReadOnlyIsRefusedAndLeftAsItIs) {
    tableBytes().resize(tableBytes().size() - 500);
    const Bytes table = tableBytes(), index = indexBytes();
    EXPECT_EQ(errorOf([&] { (void)stored_.openReadOnly(); }).code(), ErrorCode::StaleIndex);
    EXPECT_EQ(tableBytes(), table);
    EXPECT_EQ(indexBytes(), index);
}

TEST_F(RecoveryTest, ACutTableWithoutIndexThatIsReadOnlyIsRefusedToo) {
    tableBytes()[28] = 0; // as in a table that never had one
    tableBytes().resize(tableBytes().size() - 500);
    Table table(std::make_unique<MemoryFile>(stored_.records, "MEMORIA.DBF", false), nullptr);
    const Error error = errorOf([&] { (void)table.read([&] { return table.records().recordCount(); }); });
    EXPECT_EQ(error.code(), ErrorCode::StaleIndex);
    EXPECT_EQ(error.file(), "MEMORIA.DBF");
}

/// Another program may be copying a file over it: it must not be written to meanwhile.
TEST_F(RecoveryTest, ATableCutWhileItIsOpenIsRefusedAndLeftAsItIs) {
    const TemporaryFolder folder;
    const std::string path = folder / "RECUPERA.DBF", indexPath = folder / "RECUPERA.MDX";
    writeFile(path, tableBytes());
    writeFile(indexPath, indexBytes());
    const auto opened = Table::open(path);
    ASSERT_EQ(truncate(path.c_str(), static_cast<off_t>(tableBytes().size() - 500)), 0);
    EXPECT_THROW((void)storedRecord(*opened, 100), Error); // the truncation is noticed
    const Bytes table = readFile(path), index = readFile(indexPath);
    const Error error = errorOf([&] { (void)order(*opened, "NOMBRE"); });
    EXPECT_EQ(error.code(), ErrorCode::BadTable);
    EXPECT_EQ(error.file(), path);
    EXPECT_NE(std::string(error.what()).find("100"), std::string::npos) << error.what();
    EXPECT_THROW(opened->append(row(100)), Error);
    EXPECT_EQ(readFile(path), table);
    EXPECT_EQ(readFile(indexPath), index);
}

/// The copy goes on after the rows that were there when the table was opened, and is complete in the end.
TEST_F(RecoveryTest, ACopyThatGoesOnAfterAnOpeningLosesNothing) {
    const Bytes whole = tableBytes();
    tableBytes().resize(tableBytes().size() - 500);
    {
        const auto opened = stored_.open();
        tableBytes().resize(whole.size() - 500);
        tableBytes().insert(tableBytes().end(), whole.end() - 500, whole.end());
    }
    expectSound(100);
}

TEST_F(RecoveryTest, ACopyOverATableWhoseProgramDiedLosesNothingEither) {
    const Bytes whole = tableBytes();
    tableBytes().resize(tableBytes().size() - 500);
    leaveJournal();
    {
        const auto opened = stored_.open();
        tableBytes().resize(whole.size() - 500);
        tableBytes().insert(tableBytes().end(), whole.end() - 500, whole.end());
    }
    expectSound(100);
}

TEST_F(RecoveryTest, RowsOfALoadThatDiedGoAtTheNextOpening) {
    const Bytes record = row(100);
    tableBytes().insert(tableBytes().end(), record.begin(), record.end());
    leaveJournal();
    expectSound(100);
}

/// A foreign program writes the row first and counts it afterwards, under the append lock.
TEST_F(RecoveryTest, LeavingATableKeepsTheRowThatAnotherProgramIsAddingRightNow) {
    tableBytes().resize(tableBytes().size() - 500);
    auto opened = stored_.open();
    const RecordNumber number = opened->records().recordCount() + 1;
    const Bytes record = row(100);
    MemoryFile writer(stored_.records);
    ASSERT_TRUE(writer.tryLock(appendLock, LockKind::Exclusive));
    writer.resize(opened->records().offsetOf(number));
    writer.write(opened->records().offsetOf(number), std::span(record).first(record.size() / 2));
    const Bytes table = tableBytes();
    opened.reset();
    EXPECT_EQ(tableBytes(), table);
}

TEST_F(RecoveryTest, ARowThatAnotherProgramAddsWhereAWriterDiedStays) {
    RecordChange change;
    change.add(101, {}, row(500));
    dieIn(change);
    tableBytes().pop_back();
    const Bytes foreign = row(100);
    tableBytes().insert(tableBytes().end(), foreign.begin(), foreign.end());
    tableBytes().push_back(endMark);
    MemoryFile writer(stored_.records);
    ASSERT_TRUE(writer.tryLock(appendLock, LockKind::Exclusive));
    const auto opened = stored_.open();
    EXPECT_EQ(opened->records().announcedCount(), 100U) << "it is the other program's to set";
    store32(tableBytes().data() + 4, 101);
    writer.unlock(appendLock);
    EXPECT_EQ(storedRecord(*opened, 101), foreign);
    EXPECT_EQ(order(*opened, "NOMBRE").size(), 101U);
    EXPECT_EQ(stored_.findings(), "");
}

/// Later acknowledged changes rely on a header that only the files themselves hold.
TEST_F(RecoveryTest, PutsTheFilesOnTheDiskAsItBeginsTheirJournal) {
    const auto faults = std::make_shared<Faults>();
    const auto opened = [&](const std::shared_ptr<MemoryContent>& content) {
        return std::make_unique<FaultyFile>(std::make_unique<MemoryFile>(content), faults);
    };
    TableFile records(opened(stored_.records));
    const auto index = opened(stored_.index);
    Journal begun = journal();
    static_cast<void>(Recovery(records, index.get(), &begun).afterDeath({}));
    EXPECT_TRUE(begun.exists());
    EXPECT_EQ(faults->syncs, 2U);
}

TEST_F(RecoveryTest, RebuildingTheTagsRedoesTheChangeAtWhichAWriterDied) {
    const auto opened = stored_.open();
    const Bytes after = row(500);
    RecordChange change;
    change.add(50, row(49), after);
    dieIn(change);
    std::ranges::copy(std::span(after).first(10),
                      tableBytes().begin() + static_cast<std::ptrdiff_t>(opened->records().offsetOf(50)));
    opened->rebuildTags();
    EXPECT_EQ(storedRecord(*opened, 50), after);
    EXPECT_EQ(stored_.findings(), "");
}

TEST_F(RecoveryTest, CompleteRecordsThatDoNotCountYetAreAdopted) {
    const std::uint32_t count = load32(tableBytes().data() + 4);
    appendWithoutIndex(100);
    appendWithoutIndex(101);
    store32(tableBytes().data() + 4, count);
    expectSound(102);
}

TEST_F(RecoveryTest, PartOfARecordAfterTheCountIsNone) {
    tableBytes().pop_back();
    const Bytes record = row(100);
    tableBytes().insert(tableBytes().end(), record.begin(), record.end() - 1);
    EXPECT_EQ(stored_.open()->records().recordCount(), 100U);
}

/// A packing program that does not shorten the file leaves old records after its end mark.
TEST_F(RecoveryTest, RecordsAfterTheEndMarkAreNone) {
    const Bytes record = row(100);
    tableBytes().insert(tableBytes().end(), record.begin(), record.end());
    EXPECT_EQ(stored_.open()->records().recordCount(), 100U);
}

class UncountableTags : public RecoveryTest {
protected:
    UncountableTags()
        : RecoveryTest({{.name = "SOLO", .expression = "NOMBRE", .unique = true},
                        {.name = "PARES", .expression = "NOMBRE", .condition = "NUM>=0"}}) {}
};

TEST_F(UncountableTags, RowsOfAnotherProgramLeadToARebuild) {
    appendWithoutIndex(100);
    const auto table = stored_.open();
    EXPECT_EQ(order(*table, "PARES").size(), 101U);
    EXPECT_EQ(stored_.findings(), "");
}

/// The first tag of a host's own table may compute its keys.
class ComputedKeys : public RecoveryTest {
protected:
    ComputedKeys()
        : RecoveryTest(
              {{.name = "MAYUS", .expression = "UPPER(NOMBRE)"}, {.name = "NOMBRE", .expression = "NOMBRE"}}),
          thisStart_(bootIdentity()) {}
    ~ComputedKeys() override { setBootIdentity(thisStart_); }

private:
    std::string thisStart_;
};

TEST_F(ComputedKeys, TheJournalOfAStoppedMachineIsRecovered) {
    leaveJournal();
    setBootIdentity("another start");
    expectSound(100);
}

} // namespace
