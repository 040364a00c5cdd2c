// Several users: who completes an exchange that another one was stopped in, and whom an intention obeys.
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "ExchangeRemains.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/table.h"
#include "dbase/table/table_exchange.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

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
