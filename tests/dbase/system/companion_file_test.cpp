// Files of ours beside a table, in folders where others may plant theirs.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string_view>

#include "dbase/lock/locks.h"
#include "dbase/support/OtherUser.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/companion_file.h"
#include "dbase/system/error.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;

constexpr unsigned staff = 50100;
const User ana{50001, 50001, {staff}}, luis{50002, 50002, {staff}}, stranger{50003, 50003};

std::string text(const File& file) {
    Bytes bytes(static_cast<std::size_t>(file.size()));
    file.read(0, bytes);
    return {bytes.begin(), bytes.end()};
}

void put(File& file, std::string_view content) { file.write(0, std::span(content)); }

class CompanionFileTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<File> open() const { return folders_.openCompanion(path_); }
    [[nodiscard]] std::unique_ptr<File> create() const { return folders_.createCompanion(path_, table_); }
    [[nodiscard]] std::string refusal() const {
        const Error error = errorOf([&] { (void)open(); });
        EXPECT_EQ(error.code(), ErrorCode::AccessDenied);
        EXPECT_EQ(error.file(), path_);
        return error.what();
    }
    void setMode(const std::string& path, mode_t mode) const { ASSERT_EQ(chmod(path.c_str(), mode), 0); }
    void give(const std::string& path, unsigned owner, unsigned group) const {
        ASSERT_EQ(chown(path.c_str(), owner, group), 0);
    }

    TemporaryFolder folder_;
    Folders& folders_ = diskFolders();
    std::string table_ = folder_.write("T.DBF", "table"), path_ = folder_ / "T.AMJ";
};

TEST_F(CompanionFileTest, OneThatDoesNotExistIsNull) { EXPECT_EQ(open(), nullptr); }

TEST_F(CompanionFileTest, IsCreatedOnceAndThenOpened) {
    put(*create(), "mine");
    EXPECT_EQ(create(), nullptr);
    const auto file = open();
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->isWritable());
    EXPECT_EQ(text(*file), "mine");
}

TEST_F(CompanionFileTest, HasTheTablesModeWhateverTheProgramsOwnIs) {
    for (const mode_t mode : {0600U, 0640U, 0660U, 0664U, 0666U, 0400U}) {
        for (const mode_t mask : {0U, 022U, 077U}) {
            setMode(table_, mode);
            const mode_t before = umask(mask);
            const auto file = create();
            umask(before);
            EXPECT_EQ(file->status().mode, mode) << std::oct << mask;
            folders_.remove(path_);
        }
    }
}

TEST_F(CompanionFileTest, IsNeverAProgramEvenBesideAFolder) {
    setMode(folder_.path(), 0775);
    EXPECT_EQ(folders_.createCompanion(path_, folder_.path())->status().mode, 0664U);
}

TEST_F(CompanionFileTest, WithoutAModelIsAnyNewFile) {
    const mode_t before = umask(027);
    const auto file = folders_.createCompanion(path_, {});
    umask(before);
    EXPECT_EQ(file->status().mode, 0640U);
}

TEST_F(CompanionFileTest, ALinkIsNeitherFollowedNorReplaced) {
    const std::string victim = folder_.write("victim", "untouched");
    for (const std::string& target : {victim, folder_ / "nothing"}) {
        ASSERT_EQ(symlink(target.c_str(), path_.c_str()), 0);
        EXPECT_NE(refusal().find("es un enlace"), std::string::npos);
        EXPECT_EQ(create(), nullptr);
        EXPECT_EQ(errorOf([&] { (void)holdCompanion(folders_, path_, table_, [](File&) {}); }).code(),
                  ErrorCode::AccessDenied);
        ASSERT_EQ(unlink(path_.c_str()), 0);
    }
    EXPECT_EQ(text(*openFile(victim, OpenMode::ReadOnly)), "untouched");
    EXPECT_FALSE(folders_.exists(folder_ / "nothing"));
}

TEST_F(CompanionFileTest, OneWithASecondNameIsRefused) {
    const std::string victim = folder_.write("victim", "untouched");
    ASSERT_EQ(link(victim.c_str(), path_.c_str()), 0);
    EXPECT_NE(refusal().find("segundo nombre"), std::string::npos);
    ASSERT_EQ(unlink(victim.c_str()), 0);
    EXPECT_NE(open(), nullptr) << "the only name left";
}

TEST_F(CompanionFileTest, WhatIsNotARegularFileIsRefusedAndNobodyWaits) {
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    EXPECT_NE(refusal().find("no es un fichero de datos"), std::string::npos);
    ASSERT_EQ(unlink(path_.c_str()), 0);
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
    EXPECT_NE(refusal().find("no es un fichero de datos"), std::string::npos);
}

TEST_F(CompanionFileTest, OneRemovedBeforeItWasLockedIsCreatedAgain) {
    put(*create(), "old");
    int locks = 0;
    const auto file = holdCompanion(folders_, path_, table_, [&](File& opened) {
        ASSERT_TRUE(opened.tryLock(presenceLock, LockKind::Exclusive));
        if (++locks == 1) {
            folders_.remove(path_);
        }
    });
    EXPECT_EQ(locks, 2);
    EXPECT_EQ(file->size(), 0U);
    EXPECT_TRUE(folders_.isStillThere(*file));
}

TEST_F(CompanionFileTest, OneExchangedBeforeItWasLockedIsOpenedAgain) {
    put(*create(), "old");
    int locks = 0;
    const auto file = holdCompanion(folders_, path_, table_, [&](File&) {
        if (++locks == 1) {
            std::filesystem::rename(folder_.write("other", "new"), path_);
        }
    });
    EXPECT_EQ(text(*file), "new");
}

TEST_F(CompanionFileTest, OneExchangedAgainAndAgainEndsInAnError) {
    const Error error = errorOf(
        [&] { (void)holdCompanion(folders_, path_, table_, [&](File&) { folders_.remove(path_); }); });
    EXPECT_EQ(error.code(), ErrorCode::Io);
    EXPECT_EQ(error.file(), path_);
}

TEST_F(CompanionFileTest, OneGivenASecondNameBeforeItWasLockedIsRefused) {
    EXPECT_EQ(errorOf([&] {
                  (void)holdCompanion(folders_, path_, table_, [&](File&) {
                      ASSERT_EQ(link(path_.c_str(), (folder_ / "second").c_str()), 0);
                  });
              }).code(),
              ErrorCode::AccessDenied);
}

TEST_F(CompanionFileTest, ARealPathHasNoLinksAlsoThatOfANewName) {
    ASSERT_EQ(symlink(table_.c_str(), (folder_ / "LINK.DBF").c_str()), 0);
    ASSERT_EQ(symlink(folder_.path().c_str(), (folder_ / "same").c_str()), 0);
    const std::string real = std::filesystem::canonical(folder_.path()).string();
    EXPECT_EQ(folders_.realPath(folder_ / "LINK.DBF"), real + "/T.DBF");
    EXPECT_EQ(folders_.realPath(folder_ / "same/T.DBF"), real + "/T.DBF");
    EXPECT_EQ(folders_.realPath(folder_ / "same/NEW.DBF"), real + "/NEW.DBF");
    EXPECT_EQ(folders_.realPath("/nothing/NEW.DBF"), "/nothing/NEW.DBF");
    EXPECT_EQ(folders_.realPath("/NEW.DBF"), "/NEW.DBF");
}

/// Several users in one folder.
class SharedCompanionTest : public CompanionFileTest {
protected:
    void SetUp() override {
        if (!mayBecomeOthers()) {
            GTEST_SKIP() << wantsRoot;
        }
    }
    /// The owner and group of the table and its mode, and the mode of the folder, which is the group's.
    void share(unsigned owner, unsigned group, mode_t mode, mode_t folderMode) const {
        give(folder_.path(), 0, staff);
        setMode(folder_.path(), folderMode);
        give(table_, owner, group);
        setMode(table_, mode);
    }
    [[nodiscard]] std::string created(const User& user) const {
        return as(user, [this] { return create() ? std::string("created") : "exists"; });
    }
    [[nodiscard]] std::string access(const User& user) const {
        return as(user, [this] {
            const auto file = open();
            return std::string(!file ? "nothing" : file->isWritable() ? "writes" : "reads");
        });
    }
    [[nodiscard]] FileStatus status() const { return folders_.statusOf(path_).value(); }
};

TEST_F(SharedCompanionTest, HasTheTablesGroupWithAndWithoutSetgidAndInAStickyFolder) {
    for (const mode_t folderMode : {0775U, 02775U, 03775U, 01777U}) {
        share(0, staff, 0660, folderMode);
        EXPECT_EQ(created(ana), "created");
        EXPECT_EQ(status().group, staff);
        EXPECT_EQ(status().mode, 0660U);
        EXPECT_EQ(access(luis), "writes") << std::oct << folderMode;
        EXPECT_NE(access(stranger).find("no hay permiso"), std::string::npos);
        folders_.remove(path_);
    }
}

TEST_F(SharedCompanionTest, OfRootIsTheOwnersWhoseTableItIs) {
    share(ana.id, ana.group, 0600, 0775);
    ASSERT_NE(create(), nullptr);
    EXPECT_EQ(status().owner, ana.id);
    EXPECT_EQ(status().group, ana.group);
    EXPECT_EQ(access(ana), "writes");
    EXPECT_NE(access(luis).find("no hay permiso"), std::string::npos);
}

TEST_F(SharedCompanionTest, IsOpenForTheTablesOwnerAndGroupAlsoIfItCannotBeTheirs) {
    share(luis.id, staff, 0666, 01777);
    EXPECT_EQ(created(stranger), "created");
    EXPECT_EQ(status().owner, stranger.id);
    EXPECT_EQ(access(luis), "writes");
    EXPECT_EQ(access(ana), "writes");
}

TEST_F(SharedCompanionTest, OfAGroupThatCannotBeGivenGivesStrangersNothing) {
    share(0, staff, 0660, 02777);
    // In a setgid folder anybody's file is the group's; what counts is that it is never wider.
    EXPECT_EQ(created(stranger), "created");
    EXPECT_EQ(status().group, staff);
    EXPECT_EQ(status().mode & 07, 0U);
    folders_.remove(path_);
    setMode(folder_.path(), 0777);
    EXPECT_EQ(created(stranger), "created");
    EXPECT_EQ(status().group, stranger.group);
    EXPECT_EQ(access(ana), "writes") << "the table's group, through an access list";
    EXPECT_NE(access({50004, stranger.group}).find("no hay permiso"), std::string::npos);
}

TEST_F(SharedCompanionTest, NeverOpensWithCreatingWhatExists) {
    share(0, staff, 0660, 01777);
    EXPECT_EQ(as(ana,
                 [this] {
                     refuseCreatingWhatMayExist();
                     (void)holdCompanion(folders_, path_, table_, [](File&) {});
                     return std::string("held");
                 }),
              "held");
    EXPECT_EQ(as(luis,
                 [this] {
                     refuseCreatingWhatMayExist();
                     (void)holdCompanion(folders_, path_, table_, [](File&) {});
                     return std::string("held");
                 }),
              "held");
}

} // namespace
