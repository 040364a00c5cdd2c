// What other people and programs do to the tables and files of an exchange that was stopped, before one of
// its tables is opened again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

#include "ExchangedTables.h"
#include "RecordingFolders.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/checksum.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/check.h"
#include "dbase/table/exchange_intention.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_exchange.h"
#include "support/LockPatience.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using ambrel::test::seedOfThisRun;
namespace fs = std::filesystem;

constexpr const char* folder = "/datos";
constexpr Authors authorsAfter{1, 1, 1};

class ExchangeRemains : public ::testing::Test {
protected:
    ExchangeRemains() {
        setNoticeHandler([this](const std::string& text) { notices_ += text + '\n'; });
        RecordingFolders folders;
        makeExchangedTables(folder, folders);
        FolderImage image = folders.image();
        folders.startLog();
        exchangeBy(1, folder, folders);
        for (const FolderEvent& event : folders.log()) {
            image.apply(event);
            if (decided_.names.empty() && isDecided(image)) {
                decided_ = image;
            }
            if (event.kind == FolderEvent::Kind::Rename && event.newName.ends_with("PUEBLOS.DBF")) {
                begun_ = image;
            }
        }
    }
    ~ExchangeRemains() override { setNoticeHandler({}); }

    static std::string withSum(const std::string& body) {
        std::array<char, 24> sum{};
        std::snprintf(sum.data(), sum.size(), "suma %016llx\n",
                      static_cast<unsigned long long>(checksum(body)));
        return body + sum.data();
    }
    static bool isDecided(const FolderImage& image) {
        const auto found = image.names.find("/datos/INTENCION.AMI");
        if (found == image.names.end()) {
            return false;
        }
        const Bytes& bytes = image.contents.at(found->second);
        return decodeIntention({bytes.data(), bytes.size()}).has_value();
    }

    /// The state right after the decision, and that with one table and half of another one exchanged.
    void stopDecided() { decided_.writeInto(disk_.path()); }
    void stopBegun() { begun_.writeInto(disk_.path()); }

    [[nodiscard]] std::string path(const std::string& file) const { return disk_ / file; }
    /// Puts a sound table of another author in place of one, as a backup is restored.
    void restore(const std::string& table) const {
        const TemporaryFolder backup;
        createTable(backup.path(), exchangedDefinition(table));
        {
            BulkLoader loader(backup / (table + ".DBF"), BulkLoader::Mode::Append);
            for (int number = 1; number <= 12; ++number) {
                loader.add(makeRecord(loader.schema(), {"7", "FILA " + std::to_string(number)}));
            }
            loader.finish();
        }
        for (const char* const extension : {".DBF", ".MDX"}) {
            fs::copy_file(backup / (table + extension), path(table + extension),
                          fs::copy_options::overwrite_existing);
        }
    }
    /// Finds these authors, whichever table is opened first, and nothing left over.
    void expectAuthors(const Authors& expected) {
        EXPECT_EQ(authorsIn(disk_.path(), 0), expected);
        EXPECT_EQ(authorsIn(disk_.path(), 2), expected);
        std::vector<std::string> files;
        for (const fs::directory_entry& entry : fs::directory_iterator(disk_.path())) {
            files.push_back(entry.path().filename().string());
            if (files.back().ends_with(".DBF")) {
                EXPECT_EQ(findings(entry.path()), "");
            }
        }
        EXPECT_TRUE(std::ranges::none_of(files, [](const std::string& name) {
            return name.ends_with(".nuevo") || name.ends_with(".AMI") || name.ends_with(".AMC");
        })) << ::testing::PrintToString(files);
    }
    void expectNotice(const std::string& table) const {
        EXPECT_NE(notices_.find(path(table)), std::string::npos) << notices_;
    }

    TemporaryFolder disk_;
    FolderImage decided_, begun_;
    std::string notices_;
};

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
        for (const std::string name : {"CALLES.DBF", "CALLES.MDX", "ORIGEN.DBF", "ORIGEN.MDX"}) {
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

TEST_F(ExchangeRemains, AnIntentionThatIsCutOrDamagedCountsAsNone) {
    const Bytes whole = decided_.contents.at(decided_.names.at("/datos/INTENCION.AMI"));
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes flipped = whole;
        flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
        EXPECT_FALSE(decodeIntention({flipped.data(), flipped.size()})) << at;
        EXPECT_FALSE(decodeIntention({whole.data(), at})) << at;
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, whole.size() - 1}) {
        const TemporaryFolder disk;
        decided_.writeInto(disk.path());
        writeFile(disk / "INTENCION.AMI", std::span(whole).first(size));
        EXPECT_EQ(authorsIn(disk.path(), 0), authorsBefore);
        exchangeBy(3, disk.path());
        EXPECT_EQ(authorsIn(disk.path(), 0), (Authors{3, 3, 3}));
        EXPECT_FALSE(fs::exists(disk / "INTENCION.AMI"));
    }
    EXPECT_EQ(notices_, "");
}

TEST_F(ExchangeRemains, AnIntentionNamesNoFileOutsideItsFolder) {
    for (const std::string name : {"../FUERA.DBF", "/FUERA.DBF", "..", ".", "DOS\nLINEAS.DBF", ""}) {
        const Intention intention{2, {{name, "X.MDX", {}, {1, 1}, false, 1}}};
        EXPECT_FALSE(decodeIntention(encodeIntention(intention))) << name;
        const Intention index{2, {{"X.DBF", name, {}, {1, 1}, false, 1}}};
        EXPECT_FALSE(decodeIntention(encodeIntention(index))) << name;
    }
    const Intention right{2, {{"X.DBF", "X.MDX", {}, {1, 1}, false, 1}}};
    EXPECT_TRUE(decodeIntention(encodeIntention(right)));
}

/// With a right checksum, which whoever forges one can compute.
TEST_F(ExchangeRemains, AForgedIntentionLeavesEveryTableOfOneAuthorAndTouchesNoOtherFile) {
    const Bytes whole = decided_.contents.at(decided_.names.at("/datos/INTENCION.AMI"));
    const std::string_view text(whole.data(), whole.size());
    const std::string body(text.substr(0, text.rfind("suma ")));
    std::mt19937 random(seedOfThisRun());
    const auto any = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    int understood = 0;
    for (int trial = 0; trial < longForm(4000, 400000) && !HasFailure(); ++trial) {
        std::string forged = body;
        for (std::size_t changes = 1 + any(3); changes > 0; --changes) {
            const std::size_t at = any(forged.size()), line = forged.find('\n', any(forged.size())) + 1;
            switch (any(4)) {
            case 0:
                forged[at] = static_cast<char>(random());
                break;
            case 1:
                forged.erase(at, 1 + any(40));
                break;
            case 2:
                forged.insert(line, forged.substr(any(forged.size()), any(80)));
                break;
            default:
                forged[at] = "0123456789abcdef"[any(16)];
            }
        }
        forged = withSum(forged);
        if (!decodeIntention(forged) || ++understood % longForm(20, 100) != 0) {
            continue;
        }
        const TemporaryFolder disk;
        decided_.writeInto(disk.path());
        disk.write("AJENO.DBF", "somebody's own");
        disk.write("INTENCION.AMI", forged);
        try {
            static_cast<void>(authorsIn(disk.path(), any(3)));
        } catch (const Error& error) { // a name that is not a file's
            EXPECT_STRNE(error.what(), "");
        }
        EXPECT_EQ(readFile(disk / "AJENO.DBF").size(), 14U);
    }
    EXPECT_GT(understood, 100);
}

TEST_F(ExchangeRemains, AnIntentionWhoseWorkIsDoneHarmsNoTableReplacedSince) {
    stopDecided();
    const Bytes intention = readFile(path("INTENCION.AMI"));
    completeExchange(disk_.path());
    writeFile(path("INTENCION.AMI"), intention); // its removal was lost
    restore("CALLES");
    EXPECT_EQ(authorsIn(disk_.path(), 0), (Authors{7, 1, 1}));
    { const TableExchange next(exchangedFiles(disk_.path())); }
    expectAuthors({7, 1, 1});
}

TEST_F(ExchangeRemains, AJournalOfTheOldTableIsNotRedoneInTheNewOne) {
    stopDecided();
    writeFile(path("CALLES.AMJ"), Bytes(4096, 'x'));
    expectAuthors(authorsAfter);
    EXPECT_FALSE(fs::exists(path("CALLES.AMJ")));
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
    for (const FolderEvent& event : folders.log()) {
        image.apply(event);
        if (image.names.contains("/datos/INTENCION.AMI") && isDecided(image)) {
            const TemporaryFolder disk;
            image.writeInto(disk.path());
            static_cast<void>(Table::open(disk / "PUEBLOS.DBF"));
            EXPECT_FALSE(fs::exists(disk / "INTENCION.AMI"));
            EXPECT_TRUE(fs::exists(disk / "ORIGEN.DBF"));
        }
    }
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

// --- Several users

class ExchangeRemainsOfUsers : public ExchangeRemains {
protected:
    void SetUp() override {
        if (!mayBecomeOthers()) {
            GTEST_SKIP() << wantsRoot;
        }
        stopDecided();
    }
    void giveAll(unsigned owner, mode_t mode, mode_t folderMode) const {
        for (const fs::directory_entry& entry : fs::directory_iterator(disk_.path())) {
            ASSERT_EQ(chown(entry.path().c_str(), owner, staff_), 0);
            ASSERT_EQ(chmod(entry.path().c_str(), mode), 0);
        }
        ASSERT_EQ(chown(disk_.path().c_str(), owner, staff_), 0);
        ASSERT_EQ(chmod(disk_.path().c_str(), folderMode), 0);
    }
    [[nodiscard]] std::string openAs(const User& user) const {
        return as(user, [&]() -> std::string {
            try {
                const auto table = Table::open(path("CALLES.DBF"));
                return "opened " + valueOf(table->schema(), storedRecord(*table, 1), "AUTOR");
            } catch (const Error& error) {
                return (error.code() == ErrorCode::StaleIndex ? "stale: " : "error: ") +
                       std::string(error.what());
            }
        });
    }

    static constexpr unsigned staff_ = 50100;
    const User owner_{50001, 50001, {staff_}}, colleague_{50002, 50002, {staff_}}, stranger_{50003, 50003};
};

TEST_F(ExchangeRemainsOfUsers, AUserWhoMayOnlyReadIsRefusedWithTheReasonUntilAnotherOneHasOpenedATable) {
    giveAll(owner_.id, 0644, 0755);
    const std::string refusal = openAs(stranger_);
    EXPECT_TRUE(refusal.starts_with("stale: ")) << refusal;
    EXPECT_NE(refusal.find("junto con otras tablas"), std::string::npos) << refusal;
    EXPECT_EQ(openAs(owner_), "opened 1");
    EXPECT_EQ(openAs(stranger_), "opened 1");
    expectAuthors(authorsAfter);
}

TEST_F(ExchangeRemainsOfUsers, AreCompletedByAnybodyOfTheGroupThatSharesTheTables) {
    giveAll(owner_.id, 0664, 02775);
    EXPECT_EQ(openAs(colleague_), "opened 1");
    expectAuthors(authorsAfter);
}

TEST_F(ExchangeRemainsOfUsers, InAStickyFolderAreCompletedByTheirOwnerAlone) {
    giveAll(owner_.id, 0664, 03775);
    const std::string refusal = openAs(colleague_);
    EXPECT_TRUE(refusal.starts_with("stale: ")) << refusal;
    EXPECT_TRUE(fs::exists(path("CALLES.DBF.nuevo")));
    EXPECT_EQ(openAs(owner_), "opened 1");
    expectAuthors(authorsAfter);
}

TEST_F(ExchangeRemainsOfUsers, AnIntentionOfAUserWhoMayNotWriteTheTablesIsNotObeyed) {
    giveAll(owner_.id, 0644, 01777);
    ASSERT_EQ(chown(path("INTENCION.AMI").c_str(), stranger_.id, stranger_.id), 0);
    EXPECT_EQ(openAs(owner_), "opened 0");
    EXPECT_EQ(errorOf([&] { completeExchange(disk_.path()); }).code(), ErrorCode::AccessDenied);
    EXPECT_EQ(errorOf([&] { TableExchange(exchangedFiles(disk_.path())); }).code(), ErrorCode::AccessDenied);
    fs::remove(path("INTENCION.AMI"));
    EXPECT_EQ(authorsIn(disk_.path(), 0), authorsBefore);
}

TEST_F(ExchangeRemainsOfUsers, AnIntentionThatIsALinkIsNotFollowed) {
    giveAll(owner_.id, 0644, 0755);
    const TemporaryFolder elsewhere;
    fs::rename(path("INTENCION.AMI"), elsewhere / "I");
    fs::create_symlink(elsewhere / "I", path("INTENCION.AMI"));
    EXPECT_EQ(openAs(owner_), "opened 0");
    EXPECT_EQ(errorOf([&] { TableExchange(exchangedFiles(disk_.path())); }).code(), ErrorCode::AccessDenied);
}

TEST_F(ExchangeRemainsOfUsers, AnExchangeOfTablesWithOtherRightsIsObeyedByAllWhoMayWriteThem) {
    const TemporaryFolder disk;
    makeExchangedTables(disk.path(), diskFolders());
    ASSERT_EQ(chmod((disk / "CALLES.DBF").c_str(), 0666), 0);
    ASSERT_EQ(chmod((disk / "CALLES.MDX").c_str(), 0666), 0);
    exchangeBy(1, disk.path());
    EXPECT_EQ(authorsIn(disk.path(), 0), authorsAfter);
    struct stat status = {};
    ASSERT_EQ(stat((disk / "CALLES.DBF").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0666U);
}

} // namespace
