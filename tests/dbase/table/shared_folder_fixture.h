// A table in a folder of root, two members of a group and a stranger.
#pragma once

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "dbase/mdx/index_layout.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/recovery.h"
#include "support/TemporaryFolder.h"

namespace dbase::test {

inline constexpr unsigned staff = 50100;
inline const User root{0, 0}, ana{50001, 50001, {staff}}, luis{50002, 50002, {staff}}, stranger{50003, 50003};

class SharedFolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!mayBecomeOthers()) {
            GTEST_SKIP() << wantsRoot;
        }
        known_.add("root", root);
        known_.add("ana", ana);
        known_.add("luis", luis);
        known_.add("extrano", stranger);
        if (const std::string refusal = as(
                root, [] { return std::string(); }, &known_);
            !refusal.empty()) {
            GTEST_SKIP() << "wants root, and a system that gives a process mounts of its own: " << refusal;
        }
        createTable(folder_.path(), {.name = "T",
                                     .columns = {{"NOMBRE", ColumnType::Character, 30, 0, 0}},
                                     .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
        ASSERT_EQ(post(root, "PRIMERA"), "stored");
    }
    void TearDown() override {
        if (!IsSkipped()) {
            EXPECT_EQ(findings(table_), "");
        }
    }

    void share(unsigned owner, unsigned group, mode_t mode, mode_t folderMode) const {
        give(folder_.path(), 0, staff, folderMode);
        give(table_, owner, group, mode);
        give(index_, owner, group, mode);
    }
    static void give(const std::string& path, unsigned owner, unsigned group, mode_t mode) {
        ASSERT_EQ(chown(path.c_str(), owner, group), 0);
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
    }

    [[nodiscard]] static FileStatus statusOf(const std::string& path) {
        return diskFolders().statusOf(path).value();
    }

    enum class Ending { Leaves, Dies };
    /// Stores a row as a user, who leaves the table or dies with it open.
    [[nodiscard]] std::string post(const User& user, const std::string& name, Ending ending = Ending::Leaves,
                                   const std::string& boot = {}) const {
        return as(
            user,
            [&] {
                refuseCreatingWhatMayExist();
                if (!boot.empty()) {
                    setBootIdentity(boot);
                }
                auto table = Table::open(table_);
                table->append(makeRecord(table->schema(), {name}), Durability::Disk);
                if (ending == Ending::Dies) {
                    static_cast<void>(new std::shared_ptr<Table>(table));
                }
                return std::string("stored");
            },
            &known_);
    }
    /// What a user finds: the names in the table, or why it cannot be opened; and whether it can be written.
    [[nodiscard]] std::string seen(const User& user, const std::string& boot = {}) const {
        return as(
            user,
            [&] {
                if (!boot.empty()) {
                    setBootIdentity(boot);
                }
                const auto table = Table::open(table_);
                std::string text;
                for (RecordNumber number = 1; number <= table->records().recordCount(); ++number) {
                    text += valueOf(table->schema(), storedRecord(*table, number), "NOMBRE") + ' ';
                }
                return text + (table->isReadOnly() ? table->readOnlyReason() : "writable");
            },
            &known_);
    }
    /// A journal of an earlier boot that changes the first row and adds one.
    [[nodiscard]] Bytes forgedJournal() const {
        const TemporaryFolder elsewhere;
        const std::string own = bootIdentity();
        setBootIdentity("antes");
        const auto table = Table::open(table_);
        const Schema& schema = table->schema();
        const Bytes before = storedRecord(*table, 1), after = makeRecord(schema, {"AJENA"});
        RecordChange change, addition;
        change.add(1, before, after);
        addition.add(2, {}, after);
        {
            Journal journal(journalBeside(elsewhere / "T.DBF"), schema);
            journal.begin({});
            const auto index = openFile(index_, OpenMode::ReadWrite); // which repeats the journal's session
            UpdateStamp stamp = stampOf(index.get());
            stamp.session = journal.session();
            index->write(mdx::stamp, encodeStamp(stamp));
            journal.add({table->changeCounter() + 1, change.runs()}, true);
            journal.add({table->changeCounter() + 2, addition.runs()}, true);
        }
        setBootIdentity(own);
        return readFile(elsewhere / "T.AMJ");
    }

    TemporaryFolder folder_;
    TemporaryFolder lists_;
    UserList known_{lists_.path()};
    std::string table_ = folder_ / "T.DBF", index_ = folder_ / "T.MDX", journal_ = folder_ / "T.AMJ";
};

} // namespace dbase::test
