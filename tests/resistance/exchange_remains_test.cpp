// What other people and programs do to the tables and files of an exchange that was stopped, before one of
// its tables is opened again.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "ExchangeRemains.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/check.h"
#include "dbase/table/exchange_intention.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_exchange.h"
#include "support/LockPatience.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

constexpr const char* folder = exchangeFolder;

TEST_F(ExchangeRemains, AreCompletedByTheFirstProgramToOpenAnyTable) {
    for (const std::size_t first : {0U, 1U, 2U}) {
        const TemporaryFolder disk;
        decided_.writeInto(disk.path());
        EXPECT_EQ(authorsIn(disk.path(), first), authorsAfter) << "first " << exchangedNames.at(first);
        EXPECT_EQ(notices_, "");
    }
}

TEST_F(ExchangeRemains, InACopyOfTheFolderAreCompletedThereAsInTheFolderItself) {
    stopDecided();
    const TemporaryFolder copy;
    fs::copy(disk_.path(), copy.path(), fs::copy_options::recursive);
    EXPECT_EQ(authorsIn(copy.path(), 1), authorsAfter);
    expectAuthors(authorsAfter);
}

TEST_F(ExchangeRemains, AreCompletedWithoutOpeningATable) {
    stopDecided();
    completeExchange(disk_.path());
    EXPECT_FALSE(fs::exists(path("INTENCION.AMI")));
    expectAuthors(authorsAfter);
    completeExchange(disk_.path()); // there is nothing more to do
}

TEST_F(ExchangeRemains, AreCompletedByWhatCreatesReplacesReindexesOrLoadsATable) {
    const std::vector<std::function<void(const std::string&)>> programs{
        [](const std::string& at) {
            EXPECT_EQ(errorOf([&] { createTable(at, exchangedDefinition("ORIGEN")); }).code(),
                      ErrorCode::Exists);
        },
        [](const std::string& at) { reindexTable(at + "/PUEBLOS.DBF"); },
        [](const std::string& at) { BulkLoader(at + "/CALLES.DBF", BulkLoader::Mode::Append).finish(); },
        [](const std::string& at) { const TableReplacement files(at + "/CALLES.DBF"); },
        [](const std::string& at) { const TableExchange next({at + "/ORIGEN.DBF"}); },
    };
    for (std::size_t i = 0; i < programs.size(); ++i) {
        SCOPED_TRACE("program " + std::to_string(i));
        for (const FolderImage* image : {&decided_, &begun_}) {
            if (i == 0 && image == &begun_) {
                continue; // by then ORIGEN has its name
            }
            const TemporaryFolder disk;
            image->writeInto(disk.path());
            programs[i](disk.path());
            EXPECT_FALSE(fs::exists(disk / "INTENCION.AMI"));
            EXPECT_EQ(authorsIn(disk.path(), 0), authorsAfter);
        }
    }
    EXPECT_EQ(notices_, "");
}

TEST_F(ExchangeRemains, ABackupPutBackBeforeAnyTableWasExchangedLeavesAllAsTheyAre) {
    stopDecided();
    restore("CALLES");
    expectAuthors({7, 0, noTable});
    expectNotice("CALLES.DBF");
}

TEST_F(ExchangeRemains, ABackupOfAllTablesPutBackStays) {
    for (const bool isBegun : {false, true}) {
        isBegun ? stopBegun() : stopDecided();
        restore("CALLES");
        restore("PUEBLOS");
        restore("ORIGEN");
        EXPECT_EQ(authorsIn(disk_.path(), 0), (Authors{7, 7, 7})) << "no table bears a mark";
        { const TableExchange next(exchangedFiles(disk_.path())); }
        expectAuthors({7, 7, 7});
    }
}

TEST_F(ExchangeRemains, ABackupPutBackAfterAnotherTableWasExchangedStaysAndSaysSo) {
    stopBegun();
    restore("PUEBLOS");
    EXPECT_EQ(authorsIn(disk_.path(), 2), (Authors{1, 7, 1}));
    expectNotice("PUEBLOS.DBF");
    EXPECT_EQ(notices_.find(path("CALLES.DBF") + ':'), std::string::npos) << notices_;
    expectAuthors({1, 7, 1});
}

TEST_F(ExchangeRemains, ATableThatAnotherProgramHasChangedSinceStaysWithItsRow) {
    stopDecided();
    Bytes records = readFile(path("PUEBLOS.DBF"));
    records[records.size() - 2] = 'X'; // of the last row
    writeFile(path("PUEBLOS.DBF"), records);
    expectAuthors(authorsBefore);
    EXPECT_EQ(readFile(path("PUEBLOS.DBF")), records);
    expectNotice("PUEBLOS.DBF");
}

TEST_F(ExchangeRemains, ATableThatAnotherProgramChangedAfterItWasExchangedStaysAndTheOthersFollow) {
    stopDecided();
    for (const char* const file : {"CALLES.DBF", "CALLES.MDX"}) { // the program was stopped after these
        fs::rename(path(std::string(file) + ".nuevo"), path(file));
    }
    Bytes records = readFile(path("CALLES.DBF"));
    records[records.size() - 2] = 'X'; // of the last row
    writeFile(path("CALLES.DBF"), records);
    expectAuthors(authorsAfter);
    EXPECT_EQ(readFile(path("CALLES.DBF")), records);
    expectNotice("CALLES.DBF");
    EXPECT_EQ(notices_.find("PUEBLOS"), std::string::npos) << notices_;
}

TEST_F(ExchangeRemains, ATableThatIsChangedWhereItIsIsChangedAgainOverWhatTheStopLeft) {
    for (const std::size_t kept : {std::size_t{0}, std::size_t{512}, std::size_t{5120}}) {
        const TemporaryFolder disk;
        begun_.writeInto(disk.path());
        Bytes records = readFile(disk / "PUEBLOS.DBF");
        const Bytes before = decided_.contents.at(decided_.names.at("/datos/PUEBLOS.DBF"));
        std::ranges::copy(std::span(before).first(kept), records.begin()); // the disk has lost these blocks
        writeFile(disk / "PUEBLOS.DBF", records);
        EXPECT_EQ(authorsIn(disk.path(), 1), authorsAfter) << kept;
        EXPECT_EQ(findings(disk / "PUEBLOS.DBF"), "");
    }
    EXPECT_EQ(notices_, "");
}

TEST_F(ExchangeRemains, ATableHalfChangedWhoseChangesAreGoneIsReportedAndTheOthersFollow) {
    const auto spoilRow = [&](RecordNumber number) {
        Bytes records = readFile(path("PUEBLOS.DBF"));
        const TableFile table(openFile(path("PUEBLOS.DBF"), OpenMode::ReadOnly));
        records[table.offsetOf(number) + 20] ^= 1;
        writeFile(path("PUEBLOS.DBF"), records);
    };
    const std::vector<std::function<void()>> harms{
        [&] { fs::remove(path("PUEBLOS.DBF.nuevo")); },
        [&] {
            Bytes patch = readFile(path("PUEBLOS.DBF.nuevo"));
            patch[patch.size() / 2] ^= 1;
            writeFile(path("PUEBLOS.DBF.nuevo"), patch);
        },
        [&] { // a row of nobody, which the exchange leaves alone
            Bytes records = readFile(path("PUEBLOS.DBF"));
            records[records.size() / 2] ^= 1;
            writeFile(path("PUEBLOS.DBF"), records);
        },
        [&] { fs::resize_file(path("PUEBLOS.DBF"), 1000); },
        [&] { spoilRow(2); },  // which the exchange would still have changed
        [&] { spoilRow(12); }, // which it has changed
        [&] {                  // another program's new row, where one of the exchange was to come
            Bytes records = readFile(path("PUEBLOS.DBF"));
            records.insert(records.end() - 1, 67, 'X');
            writeFile(path("PUEBLOS.DBF"), records);
        },
        [&] { fs::remove(path("PUEBLOS.MDX")); },
        [&] { restore("PUEBLOS", {".MDX"}); },
    };
    for (std::size_t i = 0; i < harms.size(); ++i) {
        SCOPED_TRACE("harm " + std::to_string(i));
        notices_.clear();
        stopBegun();
        harms[i]();
        const Bytes records = readFile(path("PUEBLOS.DBF"));
        completeExchange(disk_.path());
        EXPECT_EQ(readFile(path("PUEBLOS.DBF")), records);
        expectNotice("PUEBLOS.DBF");
        EXPECT_NE(notices_.find("restaure una copia de seguridad"), std::string::npos) << notices_;
        EXPECT_EQ(notices_.find("CALLES"), std::string::npos) << notices_;
        const auto streets = Table::open(path("CALLES.DBF"));
        EXPECT_EQ(valueOf(streets->schema(), storedRecord(*streets, 1), "AUTOR"), "1");
        EXPECT_FALSE(fs::exists(path("PUEBLOS.DBF.nuevo")));
    }
}

TEST_F(ExchangeRemains, ATableHalfChangedWhoseIntentionIsGoneIsReportedByWhateverUsesItNext) {
    const std::vector<std::function<void(const std::string&)>> programs{
        [](const std::string& table) { static_cast<void>(Table::open(table)); },
        [](const std::string& table) { reindexTable(table); },
        [](const std::string& table) { const TableReplacement files(table); },
    };
    for (std::size_t i = 0; i < programs.size(); ++i) {
        for (const bool isDamaged : {false, true}) {
            SCOPED_TRACE("program " + std::to_string(i));
            notices_.clear();
            stopBegun();
            isDamaged ? writeFile(path("INTENCION.AMI"), Bytes(100, 'x'))
                      : static_cast<void>(fs::remove(path("INTENCION.AMI")));
            const CheckResult result = checkTable(path("PUEBLOS.DBF"));
            EXPECT_TRUE(std::ranges::any_of(result.findings, [](const Finding& finding) {
                return finding.text.find("restaure una copia de seguridad") != std::string::npos;
            }));
            programs[i](path("PUEBLOS.DBF"));
            expectNotice("PUEBLOS.DBF");
            EXPECT_NE(notices_.find("restaure una copia de seguridad"), std::string::npos) << notices_;
        }
    }
    notices_.clear();
    stopDecided(); // nothing was changed yet
    fs::remove(path("INTENCION.AMI"));
    static_cast<void>(Table::open(path("PUEBLOS.DBF")));
    EXPECT_EQ(notices_, "");
}

TEST_F(ExchangeRemains, NewFilesThatAreMissingOrOthersLeaveTheOldTables) {
    const std::vector<std::function<void(const std::string&)>> harms{
        [](const std::string& file) { fs::remove(file); },
        [](const std::string& file) { fs::resize_file(file, fs::file_size(file) - 1); },
        [](const std::string& file) {
            Bytes bytes = readFile(file);
            bytes[file.ends_with("MDX.nuevo") ? 504 : bytes.size() / 2] ^= 1; // the session of an index
            writeFile(file, bytes);
        },
    };
    for (std::size_t i = 0; i < harms.size(); ++i) {
        for (const std::string name :
             {"CALLES.DBF", "CALLES.MDX", "PUEBLOS.DBF", "ORIGEN.DBF", "ORIGEN.MDX"}) {
            SCOPED_TRACE(name + ", harm " + std::to_string(i));
            notices_.clear();
            stopDecided();
            harms[i](path(name + ".nuevo"));
            expectAuthors(authorsBefore);
            EXPECT_NE(notices_, "");
        }
    }
}

TEST_F(ExchangeRemains, ATableCreatedByAnotherProgramInPlaceOfOneThatWasMissingStays) {
    stopDecided();
    restore("ORIGEN");
    expectAuthors({0, 0, 7});
    expectNotice("ORIGEN.DBF");
}

TEST_F(ExchangeRemains, AJournalOfTheOldTableIsNotRedoneInTheNewOne) {
    stopDecided();
    writeFile(path("CALLES.AMJ"), Bytes(4096, 'x'));
    expectAuthors(authorsAfter);
    EXPECT_FALSE(fs::exists(path("CALLES.AMJ")));
}

TEST_F(ExchangeRemains, AWholeJournalOfTheOldTableGoesWithItWithoutANotice) {
    const TemporaryFolder elsewhere;
    makeExchangedTables(elsewhere.path(), diskFolders());
    const auto table = Table::open(elsewhere / "CALLES.DBF");
    const Bytes row = storedRecord(*table, 1);
    table->overwrite(1, row, row);
    stopDecided();
    fs::copy_file(elsewhere / "CALLES.AMJ", path("CALLES.AMJ"));
    EXPECT_EQ(authorsIn(disk_.path(), 1), authorsAfter);
    EXPECT_EQ(notices_, "");
    EXPECT_FALSE(fs::exists(path("CALLES.AMJ.apartado")));
}

TEST_F(ExchangeRemains, OfTablesWithoutIndexAreFoundByTheirMissingIndex) {
    RecordingFolders folders;
    for (const char* const name : {"CALLES", "PUEBLOS"}) {
        TableDefinition definition = exchangedDefinition(name);
        definition.tags.clear();
        createTable(folders, folder, definition);
    }
    FolderImage image = folders.image();
    folders.startLog();
    exchangeBy(1, folder, folders);
    int stops = 0;
    for (const FolderEvent& event : folders.log()) {
        image.apply(event);
        if (isDecided(image)) {
            ++stops;
            const TemporaryFolder disk;
            image.writeInto(disk.path());
            static_cast<void>(Table::open(disk / "PUEBLOS.DBF"));
            EXPECT_FALSE(fs::exists(disk / "INTENCION.AMI"));
            EXPECT_TRUE(fs::exists(disk / "ORIGEN.DBF"));
        }
    }
    EXPECT_GT(stops, 3) << "before, between and after the renames";
}

TEST_F(ExchangeRemains, AreNotedByACheckWhichChangesNothing) {
    for (const FolderImage* image : {&decided_, &begun_}) {
        const TemporaryFolder disk;
        image->writeInto(disk.path());
        for (const char* const table : {"CALLES.DBF", "PUEBLOS.DBF", "ORIGEN.DBF"}) {
            if (!fs::exists(disk / table)) {
                continue; // the exchange makes it
            }
            const CheckResult result = checkTable(disk / table);
            EXPECT_FALSE(result.isChecked) << table;
            EXPECT_EQ(result.findings.size(), 0U) << table;
            ASSERT_EQ(result.notes.size(), 1U) << table;
            EXPECT_NE(result.notes.front().text.find("se termina al abrir"), std::string::npos);
        }
        EXPECT_TRUE(fs::exists(disk / "INTENCION.AMI"));
        EXPECT_EQ(authorsIn(disk.path(), 0), authorsAfter);
        EXPECT_TRUE(checkTable(disk / "CALLES.DBF").isChecked);
    }
}

TEST_F(ExchangeRemains, DoNotKeepABackupFromBeingChecked) {
    stopBegun();
    restore("PUEBLOS");
    EXPECT_TRUE(checkTable(path("PUEBLOS.DBF")).isChecked);
    EXPECT_FALSE(checkTable(path("CALLES.DBF")).isChecked);
}

/// A network folder's names, also missing ones, are remembered for up to a minute.
TEST_F(ExchangeRemains, AreFoundByAStationThatHasJustSeenThatThereWereNone) {
    for (const std::size_t first : {0U, 1U}) {
        RecordingFolders station(decided_);
        station.rememberAsMissing("/datos/INTENCION.AMI");
        EXPECT_EQ(authorsIn(folder, first, station), authorsAfter);
        EXPECT_FALSE(station.exists("/datos/INTENCION.AMI"));
    }
    FolderImage withoutIntention = decided_;
    withoutIntention.names.erase("/datos/INTENCION.AMI");
    RecordingFolders station(withoutIntention);
    station.rememberAsMissing("/datos/INTENCION.AMI");
    EXPECT_EQ(authorsIn(folder, 0, station), authorsBefore);
    EXPECT_FALSE(station.exists("/datos/INTENCION.AMI")) << "asking for it leaves none";
}

TEST_F(ExchangeRemains, ThatAppearWhileAnotherTableIsExchangedAreCompletedFirst) {
    const ambrel::test::LockPatience patience(std::chrono::milliseconds(100));
    RecordingFolders station(decided_);
    createTable(station, folder, exchangedDefinition("OTRA"));
    station.rememberAsMissing("/datos/INTENCION.AMI");
    TableExchange exchange({"/datos/OTRA.DBF"}, station);
    BulkLoader(exchange.table(0)).finish();
    exchange.commit();
    EXPECT_FALSE(station.exists("/datos/INTENCION.AMI"));
    EXPECT_EQ(authorsIn(folder, 0, station), authorsAfter);
}

} // namespace
