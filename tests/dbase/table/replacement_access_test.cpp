// A table that is replaced stays the table of the same people.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
namespace fs = std::filesystem;

constexpr unsigned staff = 50100, board = 50200;
const User ana{50001, 50001, {staff}}, luis{50002, 50002, {staff}};

class ReplacementAccessTest : public ::testing::Test {
protected:
    ReplacementAccessTest() { createTable(folder_.path(), definition()); }

    static TableDefinition definition() {
        return {.name = "NUEVA",
                .columns = {{"CODIGO", ColumnType::Character, 5, 0, 0}},
                .tags = {{.name = "CODIGO", .expression = "CODIGO"}}};
    }
    [[nodiscard]] std::string path() const { return folder_ / "NUEVA.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "NUEVA.MDX"; }
    [[nodiscard]] std::vector<std::string> both() const { return {path(), indexPath()}; }
    [[nodiscard]] static FileStatus statusOf(const std::string& file) {
        return diskFolders().statusOf(file).value();
    }
    void share(unsigned owner, unsigned group, mode_t mode, mode_t folderMode) const {
        ASSERT_EQ(chown(folder_.path().c_str(), 0, staff), 0);
        ASSERT_EQ(chmod(folder_.path().c_str(), folderMode), 0);
        for (const std::string& file : both()) {
            ASSERT_EQ(chown(file.c_str(), owner, group), 0);
            ASSERT_EQ(chmod(file.c_str(), mode), 0);
        }
    }
    void replace() const { createTable(folder_.path(), definition(), IfExists::Replace); }
    void load() const {
        BulkLoader loader(path(), BulkLoader::Mode::Replace);
        loader.add(Bytes(6, ' '));
        loader.finish();
    }
    /// What the user is told; empty if the table was replaced.
    [[nodiscard]] std::string replacedBy(const User& user) const {
        return as(user, [this] {
            umask(077);
            load();
            return std::string();
        });
    }
    [[nodiscard]] std::size_t files() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), {}));
    }

    TemporaryFolder folder_;
};

TEST_F(ReplacementAccessTest, KeepsTheModeOfBothFilesWhateverTheProgramsOwnIs) {
    for (const mode_t mode : {0600U, 0640U, 0660U, 0664U, 0666U}) {
        for (const mode_t mask : {0U, 022U, 077U}) {
            ASSERT_EQ(chmod(path().c_str(), mode), 0);
            ASSERT_EQ(chmod(indexPath().c_str(), mode), 0);
            const mode_t before = umask(mask);
            replace();
            load();
            umask(before);
            EXPECT_EQ(statusOf(path()).mode, mode) << std::oct << mask;
            EXPECT_EQ(statusOf(indexPath()).mode, mode) << std::oct << mask;
        }
    }
}

TEST_F(ReplacementAccessTest, AnIndexThatWasMissingGetsTheModeOfItsTable) {
    ASSERT_EQ(chmod(path().c_str(), 0660), 0);
    fs::remove(indexPath());
    replace();
    EXPECT_EQ(statusOf(indexPath()).mode, 0660U);
}

TEST_F(ReplacementAccessTest, ANewTableIsAsTheSystemGivesNewFiles) {
    fs::remove(path());
    fs::remove(indexPath());
    const mode_t before = umask(027);
    createTable(folder_.path(), definition());
    umask(before);
    EXPECT_EQ(statusOf(path()).mode, 0640U);
    EXPECT_EQ(statusOf(indexPath()).mode, 0640U);
}

/// A list with one named user, in the bytes of the system.
std::string listOfOneUser(unsigned user) {
    struct Entry {
        std::uint16_t tag, permissions;
        std::uint32_t id;
    };
    std::string list(4, '\0');
    store32(list.data(), 2);
    for (const Entry& entry :
         {Entry{1, 6, ~0U}, Entry{2, 6, user}, Entry{4, 6, ~0U}, Entry{0x10, 6, ~0U}, Entry{0x20, 0, ~0U}}) {
        char bytes[8];
        store16(bytes, entry.tag);
        store16(bytes + 2, entry.permissions);
        store32(bytes + 4, entry.id);
        list.append(bytes, sizeof bytes);
    }
    return list;
}

TEST_F(ReplacementAccessTest, KeepsTheAccessList) {
    const std::string list = listOfOneUser(50007);
    for (const std::string& file : both()) {
        if (setxattr(file.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0) {
            GTEST_SKIP() << "wants a file system with access lists";
        }
    }
    const FileStatus before = statusOf(path());
    load();
    EXPECT_EQ(statusOf(path()).accessList, before.accessList);
    EXPECT_EQ(statusOf(indexPath()).accessList, before.accessList);
    EXPECT_EQ(statusOf(path()).mode, before.mode);
}

TEST_F(ReplacementAccessTest, AListThatTheFolderGivesToNewFilesIsNotAdded) {
    const std::string list = listOfOneUser(50007);
    if (setxattr(folder_.path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0) != 0) {
        GTEST_SKIP() << "wants a file system with access lists";
    }
    ASSERT_EQ(chmod(path().c_str(), 0640), 0);
    load();
    EXPECT_EQ(statusOf(path()).accessList, "");
    EXPECT_EQ(statusOf(path()).mode, 0640U);
}

/// Several users in one folder.
class SharedReplacementTest : public ReplacementAccessTest {
protected:
    void SetUp() override {
        if (!mayBecomeOthers()) {
            GTEST_SKIP() << wantsRoot;
        }
    }
};

TEST_F(SharedReplacementTest, RootKeepsTheOwnerToo) {
    share(ana.id, staff, 0660, 0770);
    load();
    replace();
    for (const std::string& file : both()) {
        EXPECT_EQ(statusOf(file).owner, ana.id);
        EXPECT_EQ(statusOf(file).group, staff);
        EXPECT_EQ(statusOf(file).mode, 0660U);
    }
}

TEST_F(SharedReplacementTest, AMemberOfTheGroupKeepsGroupAndMode) {
    for (const mode_t folderMode : {0770U, 02770U}) {
        share(ana.id, staff, 0660, folderMode);
        EXPECT_EQ(replacedBy(luis), "");
        for (const std::string& file : both()) {
            EXPECT_EQ(statusOf(file).group, staff);
            EXPECT_EQ(statusOf(file).mode, 0660U);
        }
        EXPECT_EQ(replacedBy(ana), "") << "who goes on with it";
        EXPECT_EQ(findings(path()), "");
    }
}

TEST_F(SharedReplacementTest, WhoCannotKeepTheGroupIsRefusedBeforeAnythingIsWritten) {
    share(ana.id, board, 0666, 0777);
    const Bytes table = readFile(path()), index = readFile(indexPath());
    const std::string said = replacedBy(luis);
    EXPECT_NE(said.find("NUEVA.DBF"), std::string::npos) << said;
    EXPECT_NE(said.find("no puede mantener"), std::string::npos) << said;
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(readFile(indexPath()), index);
    EXPECT_EQ(files(), 2U);
}

TEST_F(SharedReplacementTest, InAStickyFolderOnlyTheOwnerReplaces) {
    share(ana.id, staff, 0660, 01770);
    const Bytes table = readFile(path()), index = readFile(indexPath());
    const std::string said = replacedBy(luis);
    EXPECT_NE(said.find("sólo puede hacerlo su propietario"), std::string::npos) << said;
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(readFile(indexPath()), index);
    EXPECT_EQ(replacedBy(ana), "");
}

TEST_F(SharedReplacementTest, AFolderThatMayNotBeWrittenIsSaid) {
    share(ana.id, staff, 0660, 0750);
    const Bytes table = readFile(path()), index = readFile(indexPath());
    const std::string said = replacedBy(luis);
    EXPECT_NE(said.find("no hay permiso"), std::string::npos) << said;
    EXPECT_EQ(readFile(path()), table);
    EXPECT_EQ(readFile(indexPath()), index);
}

} // namespace
