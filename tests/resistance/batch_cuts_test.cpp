// A program that changes many rows dies, or the machine loses power, at every step: whatever it had changed
// can be put back from the undo file that is left.
#include <gtest/gtest.h>

#include <filesystem>

#include "CachingFolder.h"
#include "RecordingFolders.h"
#include "ScriptedRun.h"
#include "dbase/journal/journal_place.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/table_creation.h"
#include "loading/batch_changes.h"
#include "loading/undo.h"
#include "loading/undo_reader.h"
#include "support/LongForm.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;

constexpr const char* folder = "/datos";
constexpr const char* tableFile = "/datos/GUION.DBF";
constexpr const char* undoFile = "/datos/GUION.deshacer";
constexpr RecordNumber rowsInTable = 12;

/// What a stop leaves.
struct Left {
    Rows rows;           // found in the table
    std::size_t entries; // of the undo file
};

/// An added row that was deleted again stays in the file.
Rows liveRowsOf(const std::string& path, Folders& folders = diskFolders()) {
    Rows rows = rowsOf(*Table::open(path, folders));
    std::erase_if(rows, [](const Bytes& row) { return row.front() == deletedMark; });
    return rows;
}

class BatchCuts : public ::testing::Test {
protected:
    BatchCuts() {
        setBootIdentity("the first start");
        createTable(folders_, folder, scriptedDefinition());
        const auto table = Table::open(tableFile, folders_);
        for (RecordNumber number = 1; number <= rowsInTable; ++number) {
            static_cast<void>(
                table->append(scriptedRow(table->schema(), static_cast<int>(number)), Durability::Disk));
        }
        before_ = liveRowsOf(tableFile, folders_);
    }
    ~BatchCuts() override { setBootIdentity(ownIdentity_); }

    /// Changes every row but one in two batches, adds two rows and deletes one.
    void changeManyRows() {
        const auto table = Table::open(tableFile, folders_);
        const Schema& schema = table->schema();
        loading::UndoWriter undo(undoFile, tableFile, "la prueba", folders_);
        loading::BatchChanges changes(table, undo, {schema.columns.front().name});
        for (RecordNumber number = 2; number <= rowsInTable; ++number) {
            Bytes changed = scriptedRow(schema, 100 + static_cast<int>(number));
            const Bytes shown = storedRecord(*table, number);
            const Column& key = schema.columns.front();
            std::copy_n(shown.begin() + key.offset, key.width, changed.begin() + key.offset);
            changes.change(number, shown, changed);
            if (number == 7) {
                changes.finish();
            }
        }
        changes.erase(1, storedRecord(*table, 1));
        changes.add(scriptedRow(schema, 301));
        changes.add(scriptedRow(schema, 302));
        changes.finish();
        after_ = liveRowsOf(tableFile, folders_);
    }

    /// Opens what a stop left, as after a restart of the machine, and puts back what can be.
    Left undoAfterStop(const FolderImage& image) const {
        setBootIdentity("the second start");
        const TemporaryFolder disk;
        image.writeInto(disk.path());
        Left left{liveRowsOf(disk / "GUION.DBF"), 0};
        if (std::filesystem::exists(disk / "GUION.deshacer")) {
            const loading::UndoReader reader(disk / "GUION.deshacer");
            EXPECT_TRUE(reader.damagedLines().empty());
            left.entries = reader.size();
            const auto totals = loading::undo(
                reader, disk.path(), [](const loading::LeftAlone& row) { ADD_FAILURE() << row.reason; });
            EXPECT_EQ(totals.putBack + totals.asBefore, reader.size());
        }
        EXPECT_EQ(difference(before_, liveRowsOf(disk / "GUION.DBF")), "");
        EXPECT_EQ(findings(disk / "GUION.DBF"), "");
        return left;
    }

    RecordingFolders folders_;
    Rows before_, after_;

private:
    std::string ownIdentity_ = bootIdentity();
};

TEST_F(BatchCuts, AfterADeathAtAnyStepEveryRowCanBePutBack) {
    folders_.startLog();
    FolderImage image = folders_.image();
    changeManyRows();
    std::size_t step = 0;
    Left left = undoAfterStop(image);
    EXPECT_EQ(left.entries, 0U);
    for (const FolderEvent& event : folders_.log()) {
        SCOPED_TRACE("stopped after step " + std::to_string(++step));
        image.apply(event);
        left = undoAfterStop(image);
    }
    EXPECT_EQ(left.entries, rowsInTable + 2U);
    EXPECT_EQ(difference(after_, left.rows), "");
}

TEST_F(BatchCuts, ADiskThatLosesWhatWasNotSyncedLosesNoRowThatCannotBePutBack) {
    folders_.startLog();
    const FolderImage image = folders_.image();
    changeManyRows();
    const FolderLog log = folders_.log();
    for (std::size_t cuts = 0, seed = 1; cuts < static_cast<std::size_t>(longForm(120, 4000)); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(static_cast<unsigned>(seed));
        CachingFolder disk(image);
        Left left{};
        for (const FolderEvent& event : log) {
            SCOPED_TRACE("stopped after event " + std::to_string(++cuts));
            disk.apply(event);
            left = undoAfterStop(disk.survivor(random));
        }
        EXPECT_EQ(left.entries, rowsInTable + 2U) << "lost after the end";
        EXPECT_EQ(difference(after_, left.rows), "") << "lost after the end";
        if (HasFailure()) {
            break;
        }
    }
}

} // namespace
