// Tables that were put back from a backup, or packed, while a journal of ours lay beside them.
#include <algorithm>
#include <filesystem>

#include "dbase/journal/journal.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "restored_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

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

} // namespace
