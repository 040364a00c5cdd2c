// Tables that were put back from a backup, packed, or worked on by other programs while a journal of ours lay
// beside them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "dbase/table/table.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// A table of ten rows in a folder, a program that dies while it works on it, and other programs.
class RestoredTable : public ::testing::Test {
protected:
    RestoredTable() {
        before_ = setNoticeHandler([this](const std::string& text) { notices_.push_back(text); });
        createTable(folder_.path(), {.name = "CALLES",
                                     .columns = {{"CODIGO", ColumnType::Character, 8, 0, 0},
                                                 {"NOMBRE", ColumnType::Character, 40, 0, 0}},
                                     .tags = {{.name = "CODIGO", .expression = "CODIGO"},
                                              {.name = "NOMBRE", .expression = "NOMBRE"}}});
        const auto table = Table::open(path());
        schema_ = table->schema();
        for (int i = 1; i <= 10; ++i) {
            static_cast<void>(table->append(row(i)));
        }
    }
    ~RestoredTable() override {
        setBootIdentity(ownIdentity_);
        setNoticeHandler(before_);
    }

    [[nodiscard]] std::string path() const { return folder_ / "CALLES.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "CALLES.MDX"; }
    [[nodiscard]] std::string journalPath() const { return folder_ / "CALLES.AMJ"; }
    [[nodiscard]] std::string asidePath() const { return folder_ / "CALLES.AMJ.apartado"; }
    [[nodiscard]] Bytes row(int i, const std::string& name = "CALLE") const {
        return makeRecord(schema_, {std::to_string(99000000 + i), name + " " + std::to_string(i * 7 % 11)});
    }

    /// A program that works on the table with acknowledged changes and is killed in the middle of nothing.
    static void workAndDie(const std::string& file, const std::function<void(Table&)>& work) {
        ChildProcess child([&](const ChildProcess::Link& link) {
            const auto table = Table::open(file);
            work(*table);
            link.tell();
            link.await();
            return 0;
        });
        child.await();
        child.kill();
        static_cast<void>(child.join());
    }
    void addAndDie(int first, int last) const {
        workAndDie(path(), [&](Table& table) {
            for (int i = first; i <= last; ++i) {
                static_cast<void>(table.append(row(i), Durability::Disk));
            }
        });
    }
    /// What has happened since is on the disk of a machine that stops now.
    static void restart() { setBootIdentity("after the stop"); }

    /// Writes a file anew, as a copying program does: the same inode.
    static void copyOver(const std::string& file, const Bytes& bytes) { writeFile(file, bytes); }
    /// Puts another file in its place, as an unpacking program does: another inode.
    static void exchange(const std::string& file, const Bytes& bytes) {
        writeFile(file + ".x", bytes);
        std::filesystem::rename(file + ".x", file);
    }

    /// Adds a row as a program does that keeps no journal and no index.
    void appendForeign(const Bytes& record) const {
        Bytes bytes = readFile(path());
        const std::uint32_t count = load32(bytes.data() + 4);
        bytes.resize(schema_.headerLength + std::size_t{count} * schema_.recordLength);
        bytes.insert(bytes.end(), record.begin(), record.end());
        bytes.push_back(endMark);
        store32(bytes.data() + 4, count + 1);
        copyOver(path(), bytes);
    }

    /// The rows of the table, which must open for writing, be sound and leave no journal.
    [[nodiscard]] std::vector<Bytes> rowsWhenSound() const {
        std::vector<Bytes> rows;
        {
            const auto table = Table::open(path());
            EXPECT_FALSE(table->isReadOnly()) << table->readOnlyReason();
            const RecordNumber count = table->read([&] { return table->records().recordCount(); });
            for (RecordNumber number = 1; number <= count; ++number) {
                rows.push_back(storedRecord(*table, number));
            }
        }
        EXPECT_EQ(findings(path()), "");
        EXPECT_FALSE(std::filesystem::exists(journalPath()));
        EXPECT_EQ(readFile(path()).back(), endMark);
        return rows;
    }
    [[nodiscard]] std::vector<Bytes> rowsUpTo(int last) const {
        std::vector<Bytes> rows;
        for (int i = 1; i <= last; ++i) {
            rows.push_back(row(i));
        }
        return rows;
    }
    [[nodiscard]] std::string notesOfCheck() const {
        std::string text;
        for (const Finding& note : checkTable(path()).notes) {
            text += note.file + ": " + note.place + ": " + note.text + '\n';
        }
        return text;
    }

    TemporaryFolder folder_;
    Schema schema_;
    std::vector<std::string> notices_;

private:
    std::string ownIdentity_ = bootIdentity();
    NoticeHandler before_;
};

// --- Backups put back

TEST_F(RestoredTable, ABackupCopiedOverTheTableIsNotChangedByTheJournalThatWasLeft) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    copyOver(path(), table);
    copyOver(indexPath(), index);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    ASSERT_EQ(notices_.size(), 1U);
    EXPECT_NE(notices_[0].find(asidePath()), std::string::npos) << notices_[0];
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    EXPECT_EQ(notices_.size(), 1U) << "it was said twice";
}

TEST_F(RestoredTable, ABackupPutInPlaceOfTheTableIsNotChangedByTheJournalThatWasLeft) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    exchange(path(), table);
    exchange(indexPath(), index);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    EXPECT_EQ(notices_.size(), 1U);
}

/// Made while a program was at work, with the session of its journal in the index.
TEST_F(RestoredTable, ABackupMadeAtWorkAndPutInPlaceOfTheTableIsNotChangedEither) {
    Bytes table, index;
    workAndDie(path(), [&](Table& open) { static_cast<void>(open.append(row(11), Durability::Disk)); });
    table = readFile(path());
    index = readFile(indexPath());
    addAndDie(12, 13);
    exchange(path(), table);
    exchange(indexPath(), index);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(11));
    EXPECT_EQ(notices_.size(), 1U);
}

/// The promise says so: its bytes cannot be told from those that a power cut leaves.
TEST_F(RestoredTable, ACopyMadeAtWorkAndPutBackOverTheSameFilesGetsItsAcknowledgedRowsAgain) {
    addAndDie(11, 11);
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(12, 13);
    copyOver(path(), table);
    copyOver(indexPath(), index);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(13));
    EXPECT_TRUE(notices_.empty());
}

TEST_F(RestoredTable, AFolderCopiedWithItsJournalIsRecoveredWhereItIsPut) {
    const Bytes table = readFile(path());
    addAndDie(11, 13);
    Bytes lost = readFile(path());
    std::copy_n(table.begin() + 4, 4, lost.begin() + 4); // the rows never reached the disk
    lost.resize(table.size());
    const Bytes index = readFile(indexPath()), journal = readFile(journalPath());
    exchange(path(), lost);
    exchange(indexPath(), index);
    exchange(journalPath(), journal);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(13));
    EXPECT_TRUE(notices_.empty());
}

TEST_F(RestoredTable, ABackupPutBackAfterTheDeathOfAProgramIsNotChangedByALaterStop) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    copyOver(path(), table);
    copyOver(indexPath(), index);
    addAndDie(21, 21); // on the backup
    restart();
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(row(21));
    EXPECT_EQ(rowsWhenSound(), expected);
}

TEST_F(RestoredTable, ABackupPutBackIsNotChangedByReindexingEither) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    exchange(path(), table);
    exchange(indexPath(), index);
    restart();
    reindexTable(path());
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    EXPECT_EQ(notices_.size(), 1U);
    EXPECT_TRUE(std::filesystem::exists(asidePath()));
}

/// Records that were on the disk when the journal began do not get lost by a power cut.
TEST_F(RestoredTable, ATableThatHasFewerRecordsThanItsJournalBeganWithIsNotItsTable) {
    const Bytes table = readFile(path());
    workAndDie(path(), [&](Table& open) {
        for (int i = 11; i <= 13; ++i) {
            static_cast<void>(open.append(row(i)));
        }
    });
    static_cast<void>(Table::open(path())); // the last to leave
    addAndDie(14, 14);
    copyOver(path(), table); // half of a backup
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    EXPECT_EQ(notices_.size(), 1U);
}

TEST_F(RestoredTable, HalfARestoredPairIsFoundByTheCheck) {
    const Bytes old = readFile(path());
    {
        const auto table = Table::open(path());
        table->overwrite(5, row(5), row(77, "OTRA"));
    }
    copyOver(path(), old); // the index is that of later
    EXPECT_NE(findings(path()), "");
}

TEST_F(RestoredTable, TheCheckSaysThatAJournalIsOfOtherFilesAndThenListsItsRows) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    copyOver(path(), table);
    copyOver(indexPath(), index);
    restart();
    const std::string left = notesOfCheck();
    EXPECT_NE(left.find("es de otros ficheros"), std::string::npos) << left;
    EXPECT_EQ(std::ranges::count(left, '\n'), 1) << left;
    EXPECT_EQ(findings(path()), "");
    static_cast<void>(rowsWhenSound());
    const std::string aside = notesOfCheck();
    for (int i = 11; i <= 13; ++i) {
        EXPECT_NE(aside.find("registro " + std::to_string(i) + ": "), std::string::npos) << aside;
        EXPECT_NE(aside.find(std::to_string(99000000 + i)), std::string::npos) << aside;
    }
    std::filesystem::remove(asidePath());
    EXPECT_EQ(notesOfCheck(), "");
}

TEST_F(RestoredTable, ASecondJournalSetAsideDoesNotReplaceTheFirst) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    for (const char* const start : {"the second start", "the third start"}) {
        addAndDie(11, 13);
        copyOver(path(), table);
        copyOver(indexPath(), index);
        setBootIdentity(start);
        EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
    }
    EXPECT_TRUE(std::filesystem::exists(asidePath()));
    EXPECT_TRUE(std::filesystem::exists(asidePath() + "2"));
}

TEST_F(RestoredTable, AStationThatOnlyReadsRefusesARestoredTableWithItsReason) {
    const Bytes table = readFile(path()), index = readFile(indexPath());
    addAndDie(11, 13);
    copyOver(path(), table);
    copyOver(indexPath(), index);
    restart();
    const Error error = errorOf([&] {
        const Table readOnly(openFile(path(), OpenMode::ReadOnly), openFile(indexPath(), OpenMode::ReadOnly),
                             {}, journalBeside(path()));
    });
    EXPECT_EQ(error.code(), ErrorCode::StaleIndex);
    EXPECT_NE(std::string(error.what()).find("otros ficheros"), std::string::npos) << error.what();
    EXPECT_EQ(readFile(path()), table);
}

/// Neither inodes nor session, in the journal and in the index.
TEST_F(RestoredTable, AJournalOfTheVersionBeforeIsRedone) {
    const Bytes table = readFile(path());
    addAndDie(11, 13);
    Bytes journal = readFile(journalPath()), index = readFile(indexPath());
    store64(index.data() + mdx::stamp + mdx::stampSession, 0);
    std::fill_n(journal.begin() + 24, 8, '\0');
    std::fill_n(journal.begin() + 96, 20, '\0');
    store64(journal.data() + 504, 0);
    // The checksum of such a header, as that version computed it.
    std::uint64_t sum = 0x9E3779B97F4A7C15 ^ 504;
    const auto mix = [&](std::uint64_t word) {
        sum = (sum ^ word) * 0xFF51AFD7ED558CCD;
        sum ^= sum >> 32;
    };
    for (std::size_t at = 0; at < 504; at += 8) {
        mix(load64(journal.data() + at));
    }
    mix(0);
    store64(journal.data() + 504, sum);
    copyOver(journalPath(), journal);
    copyOver(indexPath(), index);
    copyOver(path(), table);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(13));
    EXPECT_TRUE(notices_.empty());
}

// --- Packed tables

class PackedTable : public RestoredTable {
protected:
    /// Leaves the table as another engine's packing does: the end mark in place of the first record's own.
    void pack() const {
        Bytes bytes = readFile(path());
        bytes[schema_.headerLength] = endMark;
        copyOver(path(), bytes);
    }
    [[nodiscard]] std::vector<Bytes> packedUpTo(int last) const {
        std::vector<Bytes> rows = rowsUpTo(last);
        rows[0][0] = endMark;
        return rows;
    }
};

TEST_F(PackedTable, ItsFirstRowOutlivesAStopOfTheMachine) {
    pack();
    addAndDie(11, 12);
    restart();
    EXPECT_EQ(rowsWhenSound(), packedUpTo(12));
}

TEST_F(PackedTable, ItsFirstRowOutlivesTheDeathOfAProgram) {
    pack();
    addAndDie(11, 12);
    EXPECT_EQ(rowsWhenSound(), packedUpTo(12));
}

TEST_F(PackedTable, AFirstRowThatNeverReachedTheDiskReturnsToItsNumber) {
    Bytes empty = readFile(path());
    empty.resize(schema_.headerLength);
    empty.push_back(endMark);
    store32(empty.data() + 4, 0);
    copyOver(path(), empty);
    reindexTable(path());
    addAndDie(1, 2);
    Bytes bytes = readFile(path());
    std::fill_n(bytes.begin() + schema_.headerLength, schema_.recordLength, '\0');
    bytes[schema_.headerLength] = endMark;
    copyOver(path(), bytes);
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(2));
}

// --- Rows of other programs that the stop of the machine took

class BesideForeign : public RestoredTable {
protected:
    /// Other programs add rows that never reach the disk, then ours an acknowledged one, then the power
    /// fails.
    void loseRows(int foreignRows) {
        const Bytes onDisk = readFile(path());
        workAndDie(path(), [&](Table& table) {
            table.overwrite(1, row(1), row(1), Durability::Disk); // begins the journal
            for (int i = 0; i < foreignRows; ++i) {
                appendForeign(row(100 + i, "AJENA"));
            }
            static_cast<void>(table.append(row(50), Durability::Disk));
        });
        copyOver(path(), onDisk);
        restart();
    }
    [[nodiscard]] Bytes blank() const {
        Bytes bytes(schema_.recordLength, ' ');
        bytes[0] = deletedMark;
        return bytes;
    }
};

TEST_F(BesideForeign, OurRowAfterALostForeignOneReturnsToItsNumber) {
    loseRows(2);
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.insert(expected.end(), {blank(), blank(), row(50)});
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(BesideForeign, ALostForeignRowThatWeHaveChangedReturnsWithOurChange) {
    const Bytes onDisk = readFile(path());
    workAndDie(path(), [&](Table& table) {
        table.overwrite(1, row(1), row(1), Durability::Disk);
        appendForeign(row(100, "AJENA"));
        table.overwrite(11, row(100, "AJENA"), row(100, "NUESTRA"), Durability::Disk);
    });
    copyOver(path(), onDisk);
    restart();
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(row(100, "NUESTRA"));
    EXPECT_EQ(rowsWhenSound(), expected);
}

TEST_F(BesideForeign, OurRowWhosePlaceAForeignOneHasTakenIsAddedAtTheEndOnce) {
    loseRows(0);
    appendForeign(row(200, "AJENA")); // in place of ours, before any program of ours opens the table
    appendForeign(row(201, "AJENA"));
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.insert(expected.end(), {row(200, "AJENA"), row(201, "AJENA"), row(50)});
    EXPECT_EQ(rowsWhenSound(), expected);
    setBootIdentity("and again");
    EXPECT_EQ(rowsWhenSound(), expected);
}

TEST_F(BesideForeign, OurDisplacedRowIsListedWhereALiveRowHasItsKey) {
    loseRows(0);
    appendForeign(row(50, "AJENA")); // perhaps ours, which the other program has changed since
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(row(50, "AJENA"));
    EXPECT_EQ(rowsWhenSound(), expected);
    ASSERT_EQ(notices_.size(), 1U);
    const std::string notes = notesOfCheck();
    EXPECT_NE(notes.find("registro 11: no está en la tabla: 99000050, CALLE"), std::string::npos) << notes;
}

TEST_F(BesideForeign, ARowThatTheOtherProgramHasDeletedStaysDeleted) {
    loseRows(0);
    Bytes deleted = row(50);
    deleted[0] = deletedMark;
    appendForeign(deleted);
    std::vector<Bytes> expected = rowsUpTo(10);
    expected.push_back(deleted);
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_TRUE(notices_.empty());
}

TEST_F(BesideForeign, ARecordThatBothHaveChangedStaysAsTheOtherLeftItAndOursIsListed) {
    workAndDie(path(),
               [&](Table& table) { table.overwrite(3, row(3), row(3, "NUESTRA"), Durability::Disk); });
    Bytes bytes = readFile(path());
    const Bytes theirs = row(3, "AJENA");
    std::ranges::copy(theirs, bytes.begin() + schema_.headerLength + 2 * schema_.recordLength);
    copyOver(path(), bytes);
    restart();
    std::vector<Bytes> expected = rowsUpTo(10);
    expected[2] = theirs;
    EXPECT_EQ(rowsWhenSound(), expected);
    EXPECT_EQ(notices_.size(), 1U);
    EXPECT_NE(notesOfCheck().find("registro 3: no está en la tabla: 99000003, NUESTRA"), std::string::npos);
}

TEST_F(BesideForeign, ATableWithoutEndMarkHasOneAfterRecovery) {
    for (const Bytes& end : {Bytes{}, Bytes{'\0'}, Bytes(300, '\0')}) {
        SCOPED_TRACE(end.size());
        workAndDie(path(), [&](Table& table) { table.overwrite(1, row(1), row(1), Durability::Disk); });
        Bytes bytes = readFile(path());
        bytes.pop_back();
        bytes.insert(bytes.end(), end.begin(), end.end());
        copyOver(path(), bytes);
        setBootIdentity("start " + std::to_string(end.size()));
        EXPECT_EQ(rowsWhenSound(), rowsUpTo(10));
        EXPECT_EQ(readFile(path()).size(), schema_.headerLength + 10U * schema_.recordLength + 1);
    }
}

// --- Leaving

/// Holds the table open in another process without changing it.
class Reader {
public:
    explicit Reader(const std::string& path)
        : process_([path](const ChildProcess::Link& link) {
              const auto table = Table::open(path);
              link.tell();
              link.await();
              return 0;
          }) {
        process_.await();
    }
    ~Reader() {
        process_.tell();
        static_cast<void>(process_.join());
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

private:
    ChildProcess process_;
};

TEST_F(RestoredTable, TheLastWriterRemovesTheJournalAlthoughReadersStay) {
    const Reader reader(path());
    {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(11), Durability::Disk));
        EXPECT_TRUE(std::filesystem::exists(journalPath()));
    }
    EXPECT_FALSE(std::filesystem::exists(journalPath()));
}

TEST_F(RestoredTable, AWriterThatLeavesBeforeAnotherLeavesItsJournalToThatOne) {
    ChildProcess other([&](const ChildProcess::Link& link) {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(11), Durability::Disk));
        link.tell();
        link.await();
        return 0;
    });
    other.await();
    {
        const auto table = Table::open(path());
        static_cast<void>(table->append(row(12), Durability::Disk));
    }
    EXPECT_TRUE(std::filesystem::exists(journalPath()));
    other.tell();
    EXPECT_EQ(other.join(), 0);
    EXPECT_FALSE(std::filesystem::exists(journalPath()));
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(12));
}

// Somebody has tidied up. The next writer begins a journal, and all of them go on with that one.
TEST_F(RestoredTable, AWriterWhoseJournalWasRemovedDoesNotGoOnInAFileWithoutName) {
    {
        ChildProcess first([&](const ChildProcess::Link& link) {
            const auto table = Table::open(path());
            for (int i = 11; i <= 13; i += 2) {
                static_cast<void>(table->append(row(i), Durability::Disk));
                link.tell();
                link.await();
            }
            return 0;
        });
        first.await();
        ASSERT_TRUE(std::filesystem::remove(journalPath()));
        addAndDie(12, 12);
        first.tell();
        first.await();
        first.kill();
        static_cast<void>(first.join());
    }
    restart();
    EXPECT_EQ(rowsWhenSound(), rowsUpTo(13));
    EXPECT_EQ(notices_, std::vector<std::string>());
}

/// It has seen the journal of another writer, who has removed it since.
TEST_F(RestoredTable, AReaderThatBeginsToWriteAfterTheLastWriterLeftBeginsAJournalOfItsOwn) {
    ChildProcess writer([&](const ChildProcess::Link& link) {
        {
            const auto table = Table::open(path());
            static_cast<void>(table->append(row(11), Durability::Disk));
            link.tell();
            link.await();
        }
        link.tell();
        link.await();
        return 0;
    });
    writer.await();
    const auto table = Table::open(path());
    writer.tell();
    writer.await();
    ASSERT_FALSE(std::filesystem::exists(journalPath()));
    static_cast<void>(table->append(row(12), Durability::Disk));
    EXPECT_TRUE(std::filesystem::exists(journalPath()));
    writer.tell();
    EXPECT_EQ(writer.join(), 0);
}

} // namespace
