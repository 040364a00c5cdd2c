// The machine stops at every place of a creation, replacement or load of a table, with everything before it
// on the disk, or with any of what was not synced lost: there is then the old table or the new one, sound, or
// opening says what is wrong.
#include <gtest/gtest.h>

#include <algorithm>

#include "CachingFolder.h"
#include "RecordingFolders.h"
#include "ScriptedRun.h"
#include "dbase/journal/journal.h"
#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/compaction.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_replacement.h"
#include "support/LongForm.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using Mode = BulkLoader::Mode;

constexpr const char* folder = "/datos";
constexpr const char* tableFile = "/datos/GUION.DBF";
constexpr const char* indexFile = "/datos/GUION.MDX";

/// The contents of a folder: the rows of its table, or why it does not open.
struct Found {
    std::optional<Rows> rows;
    std::size_t recordLength = 0;
    std::optional<ErrorCode> refusal;
};

class NewNames : public ::testing::Test {
protected:
    NewNames() { setBootIdentity("the first start"); }
    ~NewNames() override { setBootIdentity(ownIdentity_); }

    static TableDefinition otherDefinition() {
        return {.name = "GUION",
                .columns = {{"CODIGO", ColumnType::Character, 8, 0, 0}},
                .tags = {{.name = "CODIGO", .expression = "CODIGO"}}};
    }

    /// Fills the table of two files with this many rows, the first of which has this number.
    void fill(const std::string& records, const std::string& index, int first, int rows) {
        Table table(folders_.open(records, OpenMode::ReadWrite), folders_.open(index, OpenMode::ReadWrite));
        for (int number = first; number < first + rows; ++number) {
            static_cast<void>(table.append(scriptedRow(table.schema(), number)));
        }
    }
    void makeOldTable() {
        createTable(folders_, folder, scriptedDefinition());
        fill(tableFile, indexFile, 1, 5);
    }

    /// Leaves a journal with a row that is not in the table yet.
    void leaveJournal() {
        TableFile records(folders_.open(tableFile, OpenMode::ReadWrite));
        const auto index = folders_.open(indexFile, OpenMode::ReadWrite);
        const Schema& schema = records.schema();
        Journal journal(journalBeside(tableFile, folders_), schema);
        Recovery(records, index.get(), &journal).beginJournal();
        journal.add({1, {{.first = 6, .rows = 1, .before = {}, .after = scriptedRow(schema, 6)}}}, true);
    }

    /// Replaces the table by one with the same columns and this many other rows.
    void replace(int rows) {
        TableReplacement files(tableFile, folders_);
        {
            const auto records = files.makeTable(), index = files.makeIndex();
            Schema schema;
            schema.columns = scriptedDefinition().columns;
            writeEmptyTable(*records, index.get(), schema, "GUION", scriptedDefinition().tags);
        }
        fill(files.newTableFile(), files.newIndexFile(), 101, rows);
        files.commit();
    }

    /// Loads this many rows, from this number on.
    void eraseEveryOther() {
        Table table(folders_.open(tableFile, OpenMode::ReadWrite),
                    folders_.open(indexFile, OpenMode::ReadWrite));
        for (RecordNumber number = 1; number <= table.records().recordCount(); number += 2) {
            table.erase(number, storedRecord(table, number));
        }
    }
    void load(Mode mode, int first, int rows) {
        BulkLoader loader(tableFile, mode, folders_);
        for (int number = first; number < first + rows; ++number) {
            loader.add(scriptedRow(loader.schema(), number));
        }
        loader.finish();
    }

    /// Opens the table of a folder, as after a restart of the machine, and checks it.
    static Found openAfterStop(const FolderImage& image) {
        setBootIdentity("the second start");
        const TemporaryFolder disk;
        image.writeInto(disk.path());
        Found found;
        try {
            const auto table = Table::open(disk / "GUION.DBF");
            if (table->isReadOnly()) { // it says why, and changes nothing
                EXPECT_NE(table->readOnlyReason().find("ambcp reindexar"), std::string::npos)
                    << table->readOnlyReason();
                found.refusal = ErrorCode::ReadOnly;
                return found;
            }
            found.recordLength = table->schema().recordLength;
            found.rows = rowsOf(*table);
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()), "");
            found.refusal = error.code();
            return found;
        }
        EXPECT_EQ(findings(disk / "GUION.DBF"), "");
        return found;
    }

    /// Runs the operation, stops the machine after each of its steps, and returns what was found each time.
    std::vector<Found> stopEverywhere(const std::function<void()>& operation) {
        folders_.startLog();
        FolderImage image = folders_.image();
        operation();
        std::vector<Found> all{openAfterStop(image)};
        for (const FolderEvent& event : folders_.log()) {
            SCOPED_TRACE("stopped after step " + std::to_string(all.size()));
            image.apply(event);
            all.push_back(openAfterStop(image));
        }
        EXPECT_EQ(image.names, folders_.image().names) << "the log is not all that was done";
        EXPECT_EQ(image.contents.at(image.names.at(tableFile)),
                  folders_.image().contents.at(image.names.at(tableFile)));
        return all;
    }

    /// The same, but each stop loses any of the names, sizes and sectors that were not synced. The last of
    /// each round is found after the operation has ended.
    std::vector<std::vector<Found>> loseEverywhere(const std::function<void()>& operation) {
        folders_.startLog();
        const FolderImage before = folders_.image();
        operation();
        const FolderLog log = folders_.log();
        std::vector<std::vector<Found>> rounds;
        for (std::size_t cuts = 0, seed = 1; cuts < static_cast<std::size_t>(longForm(120, 2400)); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            std::mt19937 random(static_cast<unsigned>(seed));
            CachingFolder disk(before);
            std::vector<Found>& found = rounds.emplace_back();
            for (const FolderEvent& event : log) {
                SCOPED_TRACE("stopped after event " + std::to_string(found.size() + 1));
                disk.apply(event);
                found.push_back(openAfterStop(disk.survivor(random)));
            }
            cuts += found.size();
            if (HasFailure()) {
                break;
            }
        }
        return rounds;
    }

    /// The table of each stop is the old one or the new one, and after the operation the new one.
    static void expectOldOrNew(const std::vector<std::vector<Found>>& rounds, const std::optional<Rows>& old,
                               const Rows& fresh) {
        for (std::size_t round = 0; round < rounds.size(); ++round) {
            SCOPED_TRACE("seed " + std::to_string(round + 1));
            for (std::size_t i = 0; i < rounds[round].size(); ++i) {
                const Found& found = rounds[round][i];
                const bool isMissing = !old && found.refusal == ErrorCode::NotFound;
                const bool isOld = isMissing || (old && found.rows == old);
                EXPECT_TRUE(isOld || found.rows == fresh)
                    << "event " << i + 1 << ": "
                    << (found.rows ? difference(fresh, *found.rows) : std::string("refused"));
            }
            EXPECT_TRUE(rounds[round].back().rows == fresh) << "lost after the end";
        }
    }

    /// Once the new table has been found, nothing else is found after it.
    static void expectOldThenNew(const std::vector<Found>& all, const std::optional<Rows>& old,
                                 const Rows& fresh) {
        const auto isNew = [&](const Found& found) { return found.rows == fresh; };
        const auto firstNew = std::ranges::find_if(all, isNew);
        ASSERT_NE(firstNew, all.end());
        EXPECT_TRUE(isNew(all.back()));
        for (auto found = all.begin(); found != all.end(); ++found) {
            SCOPED_TRACE("step " + std::to_string(found - all.begin()));
            if (found->rows) {
                EXPECT_TRUE(found < firstNew ? found->rows == old : isNew(*found))
                    << found->rows->size() << " rows";
            } else {
                EXPECT_TRUE(found->refusal.has_value());
            }
        }
    }

    RecordingFolders folders_;

private:
    std::string ownIdentity_ = bootIdentity();
};

TEST_F(NewNames, ACreationThatIsCutLeavesNoTableOrTheNewOne) {
    const auto all = stopEverywhere([&] { createTable(folders_, folder, scriptedDefinition()); });
    expectOldThenNew(all, std::nullopt, {});
}

TEST_F(NewNames, AReplacementThatIsCutLeavesTheOldTableOrTheNewOne) {
    makeOldTable();
    const Rows old = *openAfterStop(folders_.image()).rows;
    const auto all = stopEverywhere([&] { replace(7); });
    ASSERT_EQ(all.back().rows.value().size(), 7U);
    expectOldThenNew(all, old, *all.back().rows);
    EXPECT_TRUE(std::ranges::all_of(all, [](const Found& found) { return found.rows.has_value(); }))
        << "one of the two is always there";
}

TEST_F(NewNames, AReplacementByOtherColumnsThatIsCutLeavesTheOldTableOrTheNewOneOrSaysWhy) {
    makeOldTable();
    const Rows old = *openAfterStop(folders_.image()).rows;
    const auto all =
        stopEverywhere([&] { createTable(folders_, folder, otherDefinition(), IfExists::Replace); });
    expectOldThenNew(all, old, {});
    EXPECT_EQ(all.back().recordLength, 9U);
}

/// The old table's journal must not be applied to the new one, which has as many rows and as long ones.
TEST_F(NewNames, AReplacementOfATableWithAJournalLeavesNoneOfItsRowsInTheNewOne) {
    makeOldTable();
    leaveJournal();
    const Rows old = *openAfterStop(folders_.image()).rows;
    ASSERT_EQ(old.size(), 6U) << "the row of the journal comes to the old table";
    const auto all = stopEverywhere([&] { replace(5); });
    ASSERT_EQ(all.back().rows.value().size(), 5U);
    expectOldThenNew(all, old, *all.back().rows);
}

TEST_F(NewNames, EveryChangeOfNamesIsFollowedByASyncOfTheirFolder) {
    makeOldTable();
    folders_.startLog();
    createTable(folders_, folder, otherDefinition(), IfExists::Replace);
    std::size_t changes = 0;
    for (const FolderEvent& event : folders_.log()) {
        using Kind = FolderEvent::Kind;
        if (event.kind == Kind::Make || event.kind == Kind::Rename || event.kind == Kind::Remove) {
            const bool isClaim = event.name.ends_with(".AMC"); // says nothing once the machine has stopped
            EXPECT_TRUE(event.reachedDisk || isClaim) << event.name;
            changes += isClaim ? 0 : 1;
        }
    }
    EXPECT_EQ(changes, 4U) << "two files made and renamed";
}

// --- The disk loses any of what was not synced

TEST_F(NewNames, ADiskThatLosesWhatWasNotSyncedLeavesNoTableOrTheNewOne) {
    expectOldOrNew(loseEverywhere([&] { createTable(folders_, folder, scriptedDefinition()); }), std::nullopt,
                   {});
}

TEST_F(NewNames, ADiskThatLosesWhatWasNotSyncedLeavesTheOldTableOrItsReplacement) {
    makeOldTable();
    const Rows old = *openAfterStop(folders_.image()).rows;
    setBootIdentity("the first start");
    const auto rounds = loseEverywhere([&] { load(Mode::Replace, 101, 5); }); // as many rows as before
    expectOldOrNew(rounds, old, *openAfterStop(folders_.image()).rows);
}

TEST_F(NewNames, ADiskThatLosesWhatWasNotSyncedLeavesALoadWholeOrAbsent) {
    makeOldTable();
    const Rows old = *openAfterStop(folders_.image()).rows;
    setBootIdentity("the first start");
    const auto rounds = loseEverywhere([&] { load(Mode::Append, 101, 30); });
    const Rows fresh = *openAfterStop(folders_.image()).rows;
    ASSERT_EQ(fresh.size(), 35U);
    expectOldOrNew(rounds, old, fresh);
}

TEST_F(NewNames, ALoadOfRowsThatFillMoreThanABufferIsWholeOrAbsentToo) {
    makeOldTable();
    const Rows old = *openAfterStop(folders_.image()).rows;
    setBootIdentity("the first start");
    const auto all = stopEverywhere([&] { load(Mode::Append, 101, 11000); });
    ASSERT_EQ(all.back().rows.value().size(), 11005U);
    expectOldThenNew(all, old, *all.back().rows);
}

TEST_F(NewNames, ACompactionThatIsCutLeavesTheOldTableOrTheCompactedOne) {
    makeOldTable();
    eraseEveryOther();
    const Rows old = *openAfterStop(folders_.image()).rows;
    setBootIdentity("the first start");
    const auto all = stopEverywhere([&] { EXPECT_EQ(compactTable(tableFile, folders_).dropped, 3U); });
    ASSERT_EQ(all.back().rows.value().size(), 2U);
    expectOldThenNew(all, old, *all.back().rows);
    EXPECT_TRUE(std::ranges::all_of(all, [](const Found& found) { return found.rows.has_value(); }))
        << "one of the two is always there";
}

TEST_F(NewNames, ACompactionThatCannotOpenAFileOnceLosesNoRowOfTheJournal) {
    const auto makeTableWithJournal = [&] {
        setBootIdentity("the first start");
        folders_.onOpening = [](const std::string&) {};
        for (const auto& [path, file] : folders_.image().names) {
            folders_.remove(path);
        }
        makeOldTable();
        eraseEveryOther();
        leaveJournal();
    };
    makeTableWithJournal();
    const Rows old = *openAfterStop(folders_.image()).rows;
    const auto compactFailingAt = [&](int fault) {
        makeTableWithJournal();
        setBootIdentity("the second start");
        int openings = 0;
        folders_.onOpening = [&](const std::string& path) {
            if (++openings == fault) {
                throw Error(ErrorCode::Io, path, "el disco no responde");
            }
        };
        bool isCompacted = true;
        try {
            compactTable(tableFile, folders_);
        } catch (const Error&) {
            isCompacted = false;
        }
        return std::pair(isCompacted, openings);
    };
    const int openings = compactFailingAt(0).second;
    const Rows compacted = *openAfterStop(folders_.image()).rows;
    ASSERT_EQ(compacted.size(), 3U) << "two of the old rows, and that of the journal";
    for (int fault = 1; fault <= openings; ++fault) {
        const bool isCompacted = compactFailingAt(fault).first;
        EXPECT_EQ(*openAfterStop(folders_.image()).rows, isCompacted ? compacted : old) << fault;
    }
}

TEST_F(NewNames, ADiskThatLosesWhatWasNotSyncedLeavesTheOldTableOrTheCompactedOne) {
    makeOldTable();
    eraseEveryOther();
    const Rows old = *openAfterStop(folders_.image()).rows;
    setBootIdentity("the first start");
    const auto rounds = loseEverywhere([&] { compactTable(tableFile, folders_); });
    expectOldOrNew(rounds, old, *openAfterStop(folders_.image()).rows);
}

} // namespace
