// The machine stops at every place of an exchange of several tables, with everything before it on the disk,
// or with any of what was not synced lost; so does the program that goes on with it. There are then all of
// the old tables or all of the new ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "CachingFolder.h"
#include "ExchangedTables.h"
#include "RecordingFolders.h"
#include "dbase/journal/journal_place.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "dbase/table/table_exchange.h"
#include "support/LongForm.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
namespace fs = std::filesystem;

constexpr const char* folder = "/datos";
constexpr Authors authorsAfter{1, 1, 1};

class ExchangeCuts : public ::testing::Test {
protected:
    ExchangeCuts() {
        setBootIdentity("the first start");
        setNoticeHandler([this](const std::string& text) { notices_ += text + '\n'; });
        makeExchangedTables(folder, folders_);
        before_ = folders_.image();
        folders_.startLog();
    }
    ~ExchangeCuts() override {
        setNoticeHandler({});
        setBootIdentity(ownIdentity_);
    }

    /// Opens the tables of a folder as after a restart of the machine, and checks them.
    Authors openAfterStop(const FolderImage& image, std::size_t first) {
        setBootIdentity("the second start");
        const TemporaryFolder disk;
        image.writeInto(disk.path());
        expectNoTableCutShort(disk.path());
        const Authors authors = authorsIn(disk.path(), first);
        EXPECT_EQ(notices_, "") << "nobody has touched the tables";
        std::vector<std::string> tables;
        for (std::size_t i = 0; i < authors.size(); ++i) {
            if (authors.at(i) != noTable) {
                tables.push_back(exchangedNames.at(i) + std::string(".DBF"));
                tables.push_back(exchangedNames.at(i) + std::string(".MDX"));
                EXPECT_EQ(findings(disk / tables.at(tables.size() - 2)), "");
            }
        }
        { const TableExchange next(exchangedFiles(disk.path())); }
        std::ranges::sort(tables);
        EXPECT_EQ(filesIn(disk.path()), tables) << "the next exchange removes what is left over";
        setBootIdentity("the first start");
        return authors;
    }
    /// Programs that look at a table before they open it take one that announces rows it does not hold for
    /// damaged.
    static void expectNoTableCutShort(const std::string& path) {
        for (const std::string& file : exchangedFiles(path)) {
            if (fs::exists(file)) {
                const TableFile records(openFile(file, OpenMode::ReadOnly));
                EXPECT_LE(records.announcedCount(), records.recordCount()) << file;
            }
        }
    }
    static std::vector<std::string> filesIn(const std::string& path) {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    /// Each step of the log as an image of the disk after it; the first one from before all.
    static std::vector<FolderImage> imagesOf(FolderImage image, const FolderLog& log) {
        std::vector<FolderImage> images{image};
        for (const FolderEvent& event : log) {
            image.apply(event);
            images.push_back(image);
        }
        return images;
    }

    /// Stops the machine at random places of a log, losing any of what was not synced.
    void loseEverywhere(const FolderImage& before, const FolderLog& log, int cuts,
                        const std::function<void(const Authors&, std::size_t event)>& check) {
        for (unsigned seed = 1; cuts > 0 && !HasFailure(); ++seed) {
            std::mt19937 random(seed);
            CachingFolder disk(before);
            for (std::size_t event = 0; event < log.size() && cuts > 0; ++event) {
                disk.apply(log[event]);
                if (random() % 4 == 0) {
                    SCOPED_TRACE("seed " + std::to_string(seed) + ", after event " + std::to_string(event));
                    check(openAfterStop(disk.survivor(random), random() % 3), event);
                    --cuts;
                }
            }
        }
    }

    struct Ending {
        std::string refusal; // empty: none
        bool isDecided = false;
    };
    /// Runs the exchange with a function that is called before each step and given its number.
    Ending runDisturbed(RecordingFolders& folders, const std::function<void(std::size_t step)>& disturb) {
        std::size_t step = 0;
        folders.beforeEvents([&] { disturb(++step); });
        Ending ending;
        try {
            TableExchange exchange(exchangedFiles(folder), folders);
            try {
                fillExchange(exchange, 1);
                exchange.commit();
            } catch (const Error& error) {
                ending.refusal = error.what();
            }
            ending.isDecided = exchange.isDecided();
        } catch (const Error& error) {
            ending.refusal = error.what();
        }
        folders.beforeEvents([] {});
        return ending;
    }
    std::size_t countSteps() {
        std::size_t steps = 0;
        RecordingFolders folders(before_);
        EXPECT_EQ(runDisturbed(folders, [&](std::size_t step) { steps = step; }).refusal, "");
        return steps;
    }
    [[noreturn]] static void failStep() { throw Error(ErrorCode::Io, folder, "el disco no responde"); }

    RecordingFolders folders_;
    FolderImage before_;
    std::string notices_;

private:
    std::string ownIdentity_ = bootIdentity();
};

TEST_F(ExchangeCuts, AnExchangeThatIsCutLeavesAllOldTablesOrAllNewOnes) {
    exchangeBy(1, folder, folders_);
    const std::vector<FolderImage> images = imagesOf(before_, folders_.log());
    EXPECT_EQ(images.back().names, folders_.image().names) << "the log is not all that was done";
    bool isNew = false;
    for (std::size_t step = 0; step < images.size(); ++step) {
        SCOPED_TRACE("stopped after step " + std::to_string(step));
        const Authors found = openAfterStop(images[step], step % 3);
        isNew = isNew || found == authorsAfter;
        EXPECT_EQ(found, isNew ? authorsAfter : authorsBefore);
    }
    EXPECT_TRUE(isNew);
}

TEST_F(ExchangeCuts, ADiskThatLosesWhatWasNotSyncedLeavesAllOldTablesOrAllNewOnes) {
    exchangeBy(1, folder, folders_);
    loseEverywhere(before_, folders_.log(), longForm(150, 4000), [](const Authors& found, std::size_t) {
        EXPECT_TRUE(found == authorsBefore || found == authorsAfter)
            << found[0] << ' ' << found[1] << ' ' << found[2];
    });
    EXPECT_EQ(openAfterStop(folders_.image(), 0), authorsAfter) << "lost after the end";
}

/// The old tables are recognised after a stop, and so must be on the disk as they were then.
TEST_F(ExchangeCuts, WhatAnotherProgramHasWrittenWithoutWaitingForTheDiskKeepsNoTableFromItsExchange) {
    {
        const auto towns = folders_.open("/datos/PUEBLOS.DBF", OpenMode::ReadWrite);
        const TableFile records(folders_.open("/datos/PUEBLOS.DBF", OpenMode::ReadOnly));
        towns->write(records.offsetOf(3), std::span<const char>("*", 1));
    }
    exchangeBy(1, folder, folders_);
    loseEverywhere(before_, folders_.log(), longForm(100, 2000), [](const Authors& found, std::size_t) {
        EXPECT_TRUE(found == authorsBefore || found == authorsAfter)
            << found[0] << ' ' << found[1] << ' ' << found[2];
    });
}

TEST_F(ExchangeCuts, AProgramThatGoesOnWithAnExchangeMayBeCutInTurn) {
    exchangeBy(1, folder, folders_);
    const std::vector<FolderImage> images = imagesOf(before_, folders_.log());
    std::size_t stops = 0;
    for (std::size_t step = 0; step < images.size(); ++step) {
        if (!images[step].names.contains("/datos/INTENCION.AMI")) {
            continue;
        }
        SCOPED_TRACE("the exchange stopped after step " + std::to_string(step));
        RecordingFolders second(images[step]);
        const Authors decided = authorsIn(folder, step % 3, second);
        const std::vector<FolderImage> goingOn = imagesOf(images[step], second.log());
        for (std::size_t next = stops % 3; next < goingOn.size(); next += 3) {
            SCOPED_TRACE("and its continuation after step " + std::to_string(next));
            EXPECT_EQ(openAfterStop(goingOn[next], next % 3), decided);
        }
        loseEverywhere(images[step], second.log(), longForm(6, 200),
                       [&](const Authors& found, std::size_t) { EXPECT_EQ(found, decided); });
        ++stops;
    }
    EXPECT_GT(stops, 5U);
}

TEST_F(ExchangeCuts, AStepThatFailsOnceLeavesTheTablesAsTheyWereOrIsMadeUpForByTheNextOpening) {
    std::size_t undone = 0, madeUpFor = 0;
    for (std::size_t fault = 1, steps = countSteps(); fault <= steps; ++fault) {
        SCOPED_TRACE("step " + std::to_string(fault) + " of " + std::to_string(steps));
        RecordingFolders folders(before_);
        const Ending ending = runDisturbed(folders, [&](std::size_t step) {
            if (step == fault) {
                failStep();
            }
        });
        (ending.isDecided ? madeUpFor : undone) += ending.refusal.empty() ? 0 : 1;
        const Authors expected = ending.isDecided ? authorsAfter : authorsBefore;
        EXPECT_EQ(openAfterStop(folders.image(), fault % 3), expected) << ending.refusal;
        EXPECT_EQ(authorsIn(folder, fault % 3, folders), expected) << ending.refusal;
    }
    EXPECT_GT(undone, 20U);
    EXPECT_GT(madeUpFor, 5U);
}

TEST_F(ExchangeCuts, ADiskThatFailsForGoodLeavesAllOldTablesOrAllNewOnes) {
    for (std::size_t fault = 1, steps = countSteps(); fault <= steps; ++fault) {
        SCOPED_TRACE("from step " + std::to_string(fault) + " of " + std::to_string(steps));
        RecordingFolders folders(before_);
        const Ending ending = runDisturbed(folders, [&](std::size_t step) {
            if (step >= fault) {
                failStep();
            }
        });
        const Authors found = openAfterStop(folders.image(), fault % 3);
        EXPECT_TRUE(found == authorsBefore || (found == authorsAfter && ending.isDecided))
            << found[0] << ' ' << found[1] << ' ' << found[2] << ' ' << ending.refusal;
    }
}

TEST_F(ExchangeCuts, TheIntentionIsOnTheDiskBeforeAnyNameOrRecordOfATableChanges) {
    exchangeBy(1, folder, folders_);
    bool isDecided = false;
    int renamed = 0, changed = 0;
    for (const FolderEvent& event : folders_.log()) {
        isDecided = isDecided || (event.kind == FolderEvent::Kind::Make && event.name.ends_with(".AMI") &&
                                  event.reachedDisk);
        if (event.kind == FolderEvent::Kind::Rename) {
            EXPECT_TRUE(isDecided) << event.newName;
            ++renamed;
        }
        if (event.kind == FolderEvent::Kind::Write && event.file == before_.names.at("/datos/PUEBLOS.DBF")) {
            EXPECT_TRUE(isDecided);
            ++changed;
        }
    }
    EXPECT_EQ(renamed, 4) << "two files of two tables";
    EXPECT_GT(changed, 0) << "of the third one";
}

} // namespace
