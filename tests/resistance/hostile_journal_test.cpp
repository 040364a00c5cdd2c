// Journals that no table wrote as they are: cut, damaged, forged, of another table or of another time. The
// table is sound afterwards, and a journal that cannot be trusted changes nothing.
#include <gtest/gtest.h>

#include <algorithm>

#include "RecordingDisk.h"
#include "ScriptedRun.h"
#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/error.h"
#include "support/LongForm.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class HostileJournal : public ::testing::Test {
protected:
    HostileJournal() {
        setBootIdentity("the first start");
        const MemoryTable stored = scriptedTable();
        origin_ = DiskImage::of(stored);
        const auto table = stored.open();
        schema_ = table->schema();
        states_.push_back(rowsOf(*table));
        for (const Step& step : shortScript(schema_)) {
            if (step.syncs) {
                break; // the journal restarts there
            }
            step.run(*table, states_.back(), Durability::Disk);
            states_.push_back(step.effect(states_.back()));
        }
        written_ = DiskImage::of(stored); // while the table is open
        const Bytes& journal = written_.journal.value();
        used_ = static_cast<std::size_t>(
            std::find_if(journal.rbegin(), journal.rend(), [](char c) { return c != 0; }).base() -
            journal.begin());
        setBootIdentity("the second start");
    }
    ~HostileJournal() override { setBootIdentity(ownIdentity_); }

    /// The records of one image beside a journal: what a power cut leaves when no record reached the disk.
    [[nodiscard]] DiskImage lost(Bytes journal) const {
        DiskImage image{origin_.records, origin_.index, std::move(journal)};
        constexpr std::size_t header = 512, session = 24;
        if (image.journal->size() >= header) { // the index has repeated it since the journal was begun
            std::copy_n(image.journal->begin() + session, 8,
                        image.index.begin() + mdx::stamp + mdx::stampSession);
        }
        return image;
    }

    static Rows rowsWhenSound(const DiskImage& image) {
        return dbase::test::rowsWhenSound(image.asTable(), {"NOMBRE"});
    }
    void expectAState(const Rows& found) const {
        EXPECT_NE(std::ranges::find(states_, found), states_.end())
            << difference(states_.front(), found) << "; " << difference(states_.back(), found);
    }

    /// A journal of the first boot with these entries, whatever they contain.
    [[nodiscard]] Bytes forged(const std::vector<JournalEntry>& entries) const {
        setBootIdentity("the first start");
        const auto name = std::make_shared<MemoryName>();
        Journal journal(std::make_unique<MemoryJournal>(name), schema_);
        journal.begin({.inode = 0, .records = static_cast<RecordNumber>(states_.front().size())});
        for (const JournalEntry& entry : entries) {
            journal.add(entry, true);
        }
        setBootIdentity("the second start");
        return name->content->bytes;
    }

    DiskImage origin_, written_;
    Schema schema_;
    std::vector<Rows> states_;
    std::size_t used_ = 0; // bytes of the journal; zeros after them

private:
    std::string ownIdentity_ = bootIdentity();
};

TEST_F(HostileJournal, AWholeOneBringsBackAllThatWasLost) {
    EXPECT_EQ(difference(states_.back(), rowsWhenSound(lost(*written_.journal))), "");
}

TEST_F(HostileJournal, OneCutAnywhereBringsBackTheFirstPosts) {
    for (std::size_t length = 0; length <= used_; ++length) {
        SCOPED_TRACE(length);
        Bytes journal = *written_.journal;
        journal.resize(length);
        expectAState(rowsWhenSound(lost(journal)));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(HostileJournal, OneSpoiltBitEndsIt) {
    std::mt19937 random(11);
    const auto step =
        static_cast<std::size_t>(ambrel::test::longForm(5, 1)); // 5: reaches every byte of a field in turn
    for (std::size_t at = 0; at < used_; at += step) {
        SCOPED_TRACE(at);
        Bytes journal = *written_.journal;
        journal[at] = static_cast<char>(journal[at] ^ (1 << random() % 8));
        expectAState(rowsWhenSound(lost(journal)));
        DiskImage kept = written_; // nothing was lost, so nothing may be removed
        kept.journal = journal;
        EXPECT_EQ(difference(states_.back(), rowsWhenSound(kept)), "");
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(HostileJournal, GarbageIsNoJournal) {
    std::mt19937 random(12);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        Bytes journal(random() % 3000);
        std::ranges::generate(journal, [&] { return static_cast<char>(random()); });
        constexpr std::size_t header = 512;
        if (round % 2 == 0 && journal.size() > header) { // after a valid one
            std::copy_n(written_.journal->begin(), header, journal.begin());
        }
        EXPECT_EQ(difference(states_.front(), rowsWhenSound(lost(journal))), "");
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(HostileJournal, OneOfAnotherLayoutIsNotRedone) {
    MemoryTable other(
        {.name = "OTRA",
         .columns = {{"NOMBRE", ColumnType::Character, 40, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
         .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}, {.name = "NUM", .expression = "NUM"}}});
    Rows rows;
    {
        setBootIdentity("the first start");
        const auto table = other.open();
        for (int i = 0; i < 20; ++i) {
            static_cast<void>(table->append(makeRecord(table->schema(), {"FILA " + std::to_string(i), "1"})));
        }
        rows = rowsOf(*table);
    }
    setBootIdentity("the second start");
    DiskImage image = DiskImage::of(other);
    image.journal = written_.journal;
    EXPECT_EQ(difference(rows, rowsWhenSound(image)), "");
}

/// An earlier copy of the table: the journal brings it to its own state, and leaves alone records that it
/// does not know.
TEST_F(HostileJournal, ATableFromABackupComesOutSound) {
    setBootIdentity("the first start");
    const MemoryTable backup(origin_.records, origin_.index);
    {
        const auto table = backup.open();
        for (RecordNumber record = 1; record <= table->records().recordCount(); ++record) {
            table->overwrite(record, storedRecord(*table, record),
                             scriptedRow(schema_, 900 + static_cast<int>(record)));
        }
    }
    setBootIdentity("the second start");
    DiskImage image = DiskImage::of(backup);
    image.journal = written_.journal;
    const Rows found = rowsWhenSound(image);
    ASSERT_GE(found.size(), states_.front().size());
    for (std::size_t i = 0; i < states_.front().size(); ++i) {
        EXPECT_EQ(found[i], scriptedRow(schema_, 901 + static_cast<int>(i))) << i;
    }
}

TEST_F(HostileJournal, ForgedEntriesDoNoHarm) {
    const Bytes row = scriptedRow(schema_, 999), other = scriptedRow(schema_, 998);
    Bytes two = row;
    two.insert(two.end(), row.begin(), row.end());
    const RecordNumber count = static_cast<RecordNumber>(states_.front().size());
    const std::vector<RecordRun> runs{
        {0, 1, {}, row},          {0, 1, other, row},          {0xFFFFFFFF, 1, {}, row},
        {0xFFFFFFFF, 2, {}, two}, {0x7FFFFFFF, 1, other, row}, {count + 2, 1, {}, row}, // after a gap
        {20'000'000, 1, {}, row}, {count + 1, 1, other, row},  {count + 1, 5, {}, row},
        {1, 1, row, {}},          {1, 0xFFFFFFFF, row, row},   {1, 0, {}, {}},
    };
    for (std::size_t i = 0; i < runs.size(); ++i) {
        SCOPED_TRACE("run " + std::to_string(i));
        Rows found = rowsWhenSound(lost(forged({{1, {runs[i]}}})));
        ASSERT_GE(found.size(), count);
        EXPECT_LE(found.size(), count + 2) << "a row of the entry, and what lies before its number";
        found.resize(count);
        EXPECT_EQ(difference(states_.front(), found), "");
    }
}

TEST_F(HostileJournal, WhoOnlyReadsIsRefusedAndChangesNothing) {
    const DiskImage left = lost(*written_.journal);
    const MemoryTable stored = left.asTable();
    const Error error = errorOf([&] { static_cast<void>(stored.openReadOnly()); });
    EXPECT_EQ(error.code(), ErrorCode::StaleIndex) << error.what();
    EXPECT_NE(std::string(error.what()).find("MEMORIA"), std::string::npos) << error.what();
    EXPECT_EQ(stored.records->bytes, left.records);
    EXPECT_EQ(stored.index->bytes, left.index);
    ASSERT_NE(stored.journal->content, nullptr);
    EXPECT_EQ(stored.journal->content->bytes, *written_.journal);
}

TEST_F(HostileJournal, WhoOnlyReadsIsLetInBesideThoseAtWork) {
    const MemoryTable stored(origin_.records, origin_.index);
    const auto atWork = stored.open();
    static_cast<void>(atWork->append(scriptedRow(schema_, 999)));
    ASSERT_NE(stored.journal->content, nullptr);
    EXPECT_EQ(stored.openReadOnly()->records().recordCount(), states_.front().size() + 1);
    setBootIdentity("the third start"); // as on another machine
    EXPECT_EQ(stored.openReadOnly()->records().recordCount(), states_.front().size() + 1);
    EXPECT_EQ(stored.open()->records().recordCount(), states_.front().size() + 1);
    EXPECT_NE(stored.journal->content, nullptr) << "taken from under those at work";
}

} // namespace
