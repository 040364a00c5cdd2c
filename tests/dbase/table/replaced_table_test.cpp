// An open table whose files another program replaces or removes, without asking anybody.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>
#include <utility>

#include "dbase/lock/locks.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "dbase/table/table_names.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

std::chrono::nanoseconds clockOfTest{0};

class ReplacedTableTest : public ::testing::Test {
protected:
    ReplacedTableTest() {
        setNamesClock([] { return clockOfTest; });
        createTable(folder_.path(), {.name = "NUEVA",
                                     .columns = {{"CODIGO", ColumnType::Character, 5, 0, 0}},
                                     .tags = {{.name = "CODIGO", .expression = "CODIGO"}}});
        const auto table = Table::open(path());
        table->append(row(*table));
    }
    ~ReplacedTableTest() override { setNamesClock(nullptr); }

    [[nodiscard]] std::string path() const { return folder_ / "NUEVA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "NUEVA.MDX"; }
    [[nodiscard]] static Bytes row(const Table& table) { return makeRecord(table.schema(), {"28079"}); }

    /// Puts a copy in place of a file, as a restored backup comes.
    void exchange(const std::string& file) const {
        fs::copy_file(file, file + ".copia");
        fs::rename(file + ".copia", file);
    }
    void exchangeBoth() const {
        exchange(path());
        exchange(indexPath());
    }
    /// The state of the names in the folder, once they have been the same for a while.
    [[nodiscard]] NamesState namesAtRest() const {
        while (true) {
            if (const auto state = diskFolders().namesState(folder_.path())) {
                return *state;
            }
            std::this_thread::yield();
        }
    }
    void expectReplaced(const std::function<void()>& operation) const {
        const Error error = errorOf(operation);
        EXPECT_EQ(error.code(), ErrorCode::Replaced) << error.what();
        EXPECT_EQ(error.file(), path());
    }

    TemporaryFolder folder_;
};

TEST_F(ReplacedTableTest, NothingIsPostedIntoFilesThatNobodySees) {
    const auto table = Table::open(path());
    const Bytes shown = storedRecord(*table, 1);
    exchangeBoth();
    const Bytes records = readFile(path()), index = readFile(indexPath());
    expectReplaced([&] { table->append(row(*table), Durability::Disk); });
    expectReplaced([&] { table->overwrite(1, shown, row(*table)); });
    expectReplaced([&] { table->erase(1, shown); });
    expectReplaced([&] { static_cast<void>(table->amend(1, 1, [](const RecordView&, std::span<char>) {})); });
    expectReplaced([&] { table->rebuildTags(); });
    expectReplaced([&] { static_cast<void>(table->tryLockRecord(1, this)); });
    EXPECT_EQ(readFile(path()), records);
    EXPECT_EQ(readFile(indexPath()), index);
}

// Changes in close succession look at the folder alone, once nothing has changed in it for a while.
TEST_F(ReplacedTableTest, AReplacementInAFolderThatWasAtRestIsNoticedByTheNextChange) {
    for (const std::string& file : {path(), indexPath()}) {
        const auto table = Table::open(path());
        table->append(row(*table)); // which makes the journal
        static_cast<void>(namesAtRest());
        table->append(row(*table));
        table->append(row(*table));
        exchange(file);
        expectReplaced([&] { table->append(row(*table)); });
    }
}

TEST_F(ReplacedTableTest, NamesAreInAnotherStateAfterEachThatIsMadeExchangedOrRemoved) {
    NamesState before = namesAtRest();
    const auto expectChanged = [&] {
        EXPECT_NE(diskFolders().namesState(folder_.path()), std::optional(before));
        const NamesState now = namesAtRest();
        EXPECT_NE(now, before);
        before = now;
    };
    fs::copy_file(path(), path() + ".copia");
    expectChanged();
    fs::rename(path() + ".copia", path());
    expectChanged();
    fs::remove(path());
    expectChanged();
    openFile(indexPath(), OpenMode::ReadWrite)->write(0, Bytes(1));
    EXPECT_EQ(namesAtRest(), before) << "a write changes no name";
}

TEST_F(ReplacedTableTest, AnIndexReplacedAloneIsNoticed) {
    const auto table = Table::open(path());
    exchange(indexPath());
    expectReplaced([&] { table->append(row(*table)); });
}

TEST_F(ReplacedTableTest, ATableThatWasRemovedIsNoticed) {
    const auto table = Table::open(path());
    fs::rename(path(), folder_ / "APARTE.DBF");
    fs::rename(indexPath(), folder_ / "APARTE.MDX");
    expectReplaced([&] { table->append(row(*table)); });
}

TEST_F(ReplacedTableTest, ReadingNoticesItWithinASecond) {
    const auto table = Table::open(path());
    EXPECT_EQ(order(*table, "CODIGO").size(), 1U);
    exchangeBoth();
    clockOfTest += std::chrono::milliseconds(999);
    EXPECT_EQ(order(*table, "CODIGO").size(), 1U);
    clockOfTest += std::chrono::milliseconds(1);
    expectReplaced([&] { static_cast<void>(order(*table, "CODIGO")); });
    expectReplaced([&] { static_cast<void>(order(*table, "CODIGO")); });
}

TEST_F(ReplacedTableTest, ABackupOfHardLinksIsNotAReplacement) {
    const auto table = Table::open(path());
    fs::create_hard_link(path(), folder_ / "COPIA.DBF");
    fs::create_hard_link(indexPath(), folder_ / "COPIA.MDX");
    table->append(row(*table));
    EXPECT_EQ(table->records().recordCount(), 2U);
}

TEST_F(ReplacedTableTest, OpeningAgainGivesTheNewTableAlsoWhileTheOldOneIsStillOpen) {
    const auto old = Table::open(path());
    exchangeBoth();
    const auto fresh = Table::open(path());
    EXPECT_NE(fresh, old);
    fresh->append(row(*fresh));
    EXPECT_EQ(Table::open(path()), fresh);
    EXPECT_EQ(findings(path()), "");
    exchange(indexPath());
    const auto latest = Table::open(path());
    EXPECT_NE(latest, fresh) << "with the index that is there now";
    latest->append(row(*latest));
    EXPECT_EQ(findings(path()), "");
}

TEST_F(ReplacedTableTest, LeavingDoesNotRemoveTheJournalOfTheNewTable) {
    auto table = Table::open(path());
    table->append(row(*table), Durability::Disk);
    ASSERT_TRUE(fs::exists(folder_ / "NUEVA.AMJ"));
    exchangeBoth();
    exchange(folder_ / "NUEVA.AMJ");
    table.reset();
    EXPECT_TRUE(fs::exists(folder_ / "NUEVA.AMJ"));
}

TEST_F(ReplacedTableTest, ALoadIntoItIsRefusedAtItsEndToo) {
    BulkLoader loader(path(), BulkLoader::Mode::Append);
    loader.add(Bytes(6, ' '));
    exchangeBoth();
    const Bytes records = readFile(path());
    expectReplaced([&] { loader.finish(); });
    EXPECT_EQ(readFile(path()), records);
}

// --- Links

TEST_F(ReplacedTableTest, TwoPathsToATableAreOneTableWithOneJournal) {
    fs::create_directory(folder_ / "otra");
    fs::create_symlink(path(), folder_ / "otra/NUEVA.DBF");
    const auto table = Table::open(path());
    const auto same = Table::open(folder_ / "otra/NUEVA.DBF");
    EXPECT_EQ(same, table);
    EXPECT_EQ(findings(folder_ / "otra/NUEVA.DBF"), "");
    EXPECT_FALSE(same->isReadOnly()) << same->readOnlyReason();
    same->append(row(*same), Durability::Disk);
    EXPECT_TRUE(fs::exists(folder_ / "NUEVA.AMJ"));
    EXPECT_FALSE(fs::exists(folder_ / "otra/NUEVA.AMJ"));
}

TEST_F(ReplacedTableTest, ATableOpenedThroughALinkOnlyHasItsIndexAndItsJournalBesideItself) {
    fs::create_directory(folder_ / "otra");
    fs::create_symlink(path(), folder_ / "otra/NUEVA.DBF");
    const auto table = Table::open(folder_ / "otra/NUEVA.DBF");
    EXPECT_EQ(table->path(), path());
    EXPECT_NE(table->findTag("CODIGO"), nullptr);
    table->append(row(*table), Durability::Disk);
    EXPECT_TRUE(fs::exists(folder_ / "NUEVA.AMJ"));
    EXPECT_FALSE(fs::exists(folder_ / "otra/NUEVA.AMJ"));
}

TEST_F(ReplacedTableTest, ALinkStaysALinkWhenItsTableIsReplaced) {
    fs::create_directory(folder_ / "otra");
    const std::string link = folder_ / "otra/NUEVA.DBF";
    fs::create_symlink(path(), link);
    {
        BulkLoader loader(link, BulkLoader::Mode::Replace);
        loader.finish();
    }
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Table::open(path())->records().recordCount(), 0U);
    createTable(folder_ / "otra",
                {.name = "NUEVA", .columns = {{"OTRA", ColumnType::Character, 9, 0, 0}}, .tags = {}},
                IfExists::Replace);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Table::open(path())->schema().recordLength, 10);
    EXPECT_FALSE(fs::exists(indexPath()));
}

TEST_F(ReplacedTableTest, ALinkThatLeadsNowhereIsNotOverwritten) {
    fs::create_directory(folder_ / "otra");
    const std::string link = folder_ / "otra/NUEVA.DBF";
    fs::create_symlink(folder_ / "disco/NUEVA.DBF", link);
    for (const IfExists ifExists : {IfExists::Refuse, IfExists::Replace}) {
        const Error error = errorOf([&] {
            createTable(folder_ / "otra",
                        {.name = "NUEVA", .columns = {{"OTRA", ColumnType::Character, 9, 0, 0}}, .tags = {}},
                        ifExists);
        });
        EXPECT_EQ(error.code(), ErrorCode::Exists);
        EXPECT_EQ(error.file(), link);
    }
    EXPECT_TRUE(fs::is_symlink(link));
}

// --- Checks

TEST_F(ReplacedTableTest, ACheckBeginsAgainWhenItsTableIsReplacedMeanwhile) {
    {
        BulkLoader loader(path(), BulkLoader::Mode::Append);
        const Bytes one = makeRecord(loader.schema(), {"28079"});
        for (int i = 0; i < 65536; ++i) { // enough for a check to report its progress
            loader.add(one);
        }
        loader.finish();
    }
    bool isReplaced = false;
    const CheckResult result = checkTable(path(), [&](std::uint64_t, std::uint64_t) {
        if (!std::exchange(isReplaced, true)) {
            BulkLoader(path(), BulkLoader::Mode::Replace).finish();
        }
    });
    EXPECT_TRUE(isReplaced);
    EXPECT_EQ(findingsOf(result), "");
    EXPECT_EQ(result.records, 0U);
}

// Its index bears the in-update mark then.
TEST_F(ReplacedTableTest, ACheckDoesNotJudgeATableThatIsJustBeingReplaced) {
    const auto replacer = openFile(path(), OpenMode::ReadWrite);
    ASSERT_TRUE(replacer->tryLock(openingLock, LockKind::Exclusive));
    const auto patience = lockPatience();
    setLockPatience(std::chrono::milliseconds(20));
    const Error error = errorOf([&] { static_cast<void>(checkTable(path())); });
    setLockPatience(patience);
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_EQ(error.file(), path());
}

} // namespace
