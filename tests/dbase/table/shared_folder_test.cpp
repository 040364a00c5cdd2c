// Tables in folders of several users: who goes on with whose journal, and whose is left alone.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "dbase/journal/journal_trust.h"
#include "shared_folder_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

// Where a file system keeps no owners and modes.
TEST(JournalTrustTest, WhereAllFilesHaveOneOwnerAndModeEveryJournalIsAccepted) {
    for (const std::uint32_t mode : {0777U, 0755U, 0700U, 0666U}) {
        const FileStatus any{.owner = 1000, .group = 1000, .mode = mode};
        EXPECT_EQ(objectionTo(any, any), "");
    }
}

// --- Working together

class AnyFolderTest : public SharedFolderTest, public ::testing::WithParamInterface<mode_t> {};
// The group's, with and without setgid, sticky, and everybody's.
INSTANTIATE_TEST_SUITE_P(Modes, AnyFolderTest, ::testing::Values(0775U, 02775U, 01775U, 03775U, 01777U));

TEST_P(AnyFolderTest, MembersOfTheGroupGoOnWithEachOthersJournal) {
    share(0, staff, 0660, GetParam());
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(statusOf(journal_).owner, ana.id);
    EXPECT_EQ(post(luis, "DE_LUIS", Ending::Dies), "stored");
    EXPECT_EQ(post(ana, "OTRA"), "stored");
    EXPECT_EQ(seen(luis), "PRIMERA DE_ANA DE_LUIS OTRA writable");
}

TEST_P(AnyFolderTest, AfterARestartAnyMemberOfTheGroupOpensTheTable) {
    share(0, staff, 0660, GetParam());
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(seen(luis, "segundo"), "PRIMERA DE_ANA writable");
    EXPECT_EQ(post(luis, "DE_LUIS", Ending::Dies, "segundo"), "stored");
    EXPECT_EQ(seen(ana, "tercero"), "PRIMERA DE_ANA DE_LUIS writable");
}

TEST_P(AnyFolderTest, RootAtWorkOnSomebodysTableLeavesAJournalThatTheOwnerGoesOnWith) {
    share(ana.id, ana.group, 0600, GetParam());
    EXPECT_EQ(post(root, "DE_ROOT", Ending::Dies), "stored");
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(seen(ana, "segundo"), "PRIMERA DE_ROOT DE_ANA writable");
    EXPECT_EQ(post(root, "OTRA"), "stored");
}

TEST_P(AnyFolderTest, TheOwnerGoesOnWithAMembersJournalAlsoWithoutBeingOne) {
    share(stranger.id, staff, 0660, GetParam());
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(post(stranger, "DEL_DUENO", Ending::Dies, "segundo"), "stored");
    EXPECT_EQ(seen(luis), "PRIMERA DE_ANA DEL_DUENO writable");
}

TEST_P(AnyFolderTest, AJournalIsNeverWiderThanItsTable) {
    for (const mode_t mode : {0600U, 0640U, 0660U, 0664U, 0666U}) {
        share(ana.id, staff, mode, GetParam());
        EXPECT_EQ(post(ana, "FILA", Ending::Dies), "stored");
        EXPECT_EQ(statusOf(journal_).mode, mode);
        EXPECT_EQ(statusOf(journal_).group, staff);
        EXPECT_EQ(post(ana, "FILA"), "stored");
    }
}

TEST_F(SharedFolderTest, TwoUsersWriteAtTheSameTime) {
    share(0, staff, 0660, 03775);
    const auto work = [&](const User& user, const std::string& name) {
        return std::make_unique<ChildProcess>([&, name](const ChildProcess::Link& link) {
            known_.use();
            become(user);
            const auto table = Table::open(table_);
            for (int i = 0; i < 20; ++i) {
                table->append(makeRecord(table->schema(), {name}), Durability::Disk);
                link.tell();
                link.await();
            }
            return 0;
        });
    };
    const auto first = work(ana, "DE_ANA");
    first->await();
    const auto second = work(luis, "DE_LUIS");
    second->await();
    for (int i = 1; i < 20; ++i) {
        for (const auto* one : {&first, &second}) {
            (*one)->tell();
            (*one)->await();
        }
    }
    first->tell();
    EXPECT_EQ(first->join(), 0);
    second->tell();
    EXPECT_EQ(second->join(), 0);
    const std::string all = seen(root);
    EXPECT_EQ(std::ranges::count(all, '_'), 40) << all;
}

TEST_F(SharedFolderTest, AJournalThatCannotBeRemovedIsEmptiedAndCountsAsNone) {
    share(0, staff, 0660, 03775);
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(seen(luis, "segundo"), "PRIMERA DE_ANA writable");
    ASSERT_TRUE(diskFolders().exists(journal_)) << "luis may not remove what is ana's";
    EXPECT_EQ(readFile(journal_).size(), 0U);
    EXPECT_EQ(as(
                  root, [&] { return std::string(journalBeside(table_)->openExisting() ? "some" : "none"); },
                  &known_),
              "none");
    EXPECT_EQ(post(luis, "DE_LUIS", Ending::Dies, "segundo"), "stored");
    EXPECT_GT(readFile(journal_).size(), 0U) << "used again";
    EXPECT_EQ(seen(ana, "tercero"), "PRIMERA DE_ANA DE_LUIS writable");
    EXPECT_FALSE(diskFolders().exists(journal_));
}

// --- What others planted

TEST_F(SharedFolderTest, AJournalOfAUserWhoMayNotWriteTheTableIsNotObeyedButLeftAlone) {
    share(0, staff, 0664, 01777);
    const Bytes forged = forgedJournal();
    ASSERT_EQ(as(stranger,
                 [&] {
                     writeFile(journal_, forged);
                     return std::string("planted");
                 }),
              "planted");
    for (const User& user : {root, ana, stranger}) {
        const std::string found = seen(user);
        EXPECT_EQ(found.rfind("PRIMERA ", 0), 0U) << found;
        if (user.id != stranger.id) { // who may not write the table anyway
            EXPECT_NE(found.find(journal_ + ": el diario es del usuario extrano"), std::string::npos)
                << found;
        }
        EXPECT_NE(post(user, "FILA").find("sólo se puede leer"), std::string::npos);
    }
    EXPECT_EQ(readFile(journal_), forged);
    ASSERT_EQ(unlink(journal_.c_str()), 0);
    EXPECT_EQ(post(ana, "DE_ANA"), "stored");
}

TEST_F(SharedFolderTest, AJournalThatMoreUsersMayWriteThanTheTableIsNotObeyed) {
    share(ana.id, ana.group, 0644, 0777);
    writeFile(journal_, forgedJournal());
    give(journal_, ana.id, ana.group, 0666);
    const std::string found = seen(ana);
    EXPECT_EQ(found.rfind("PRIMERA ", 0), 0U) << found;
    EXPECT_NE(found.find("más usuarios"), std::string::npos) << found;
    EXPECT_NE(post(ana, "FILA").find("sólo se puede leer"), std::string::npos);
}

TEST_F(SharedFolderTest, AJournalThatIsALinkIsNeitherFollowedNorWrittenThrough) {
    share(0, 0, 0644, 01777);
    const TemporaryFolder elsewhere;
    const std::string victim = elsewhere / "victim";
    const Bytes forged = forgedJournal();
    writeFile(victim, forged);
    for (const std::string& target : {victim, elsewhere / "nothing"}) {
        ASSERT_EQ(
            as(stranger,
               [&] { return std::string(symlink(target.c_str(), journal_.c_str()) == 0 ? "planted" : ""); }),
            "planted");
        const std::string found = seen(root);
        EXPECT_EQ(found.rfind("PRIMERA ", 0), 0U) << found;
        EXPECT_NE(found.find(journal_ + ": es un enlace"), std::string::npos) << found;
        EXPECT_NE(post(root, "FILA").find("sólo se puede leer"), std::string::npos);
        ASSERT_EQ(unlink(journal_.c_str()), 0);
    }
    EXPECT_EQ(readFile(victim), forged);
    EXPECT_FALSE(diskFolders().exists(elsewhere / "nothing"));
    EXPECT_EQ(post(root, "FILA"), "stored");
}

TEST_F(SharedFolderTest, AJournalWithASecondNameIsNotObeyed) {
    share(0, 0, 0644, 0777);
    const TemporaryFolder elsewhere;
    const Bytes forged = forgedJournal();
    writeFile(elsewhere / "victim", forged);
    ASSERT_EQ(link((elsewhere / "victim").c_str(), journal_.c_str()), 0);
    const std::string found = seen(root);
    EXPECT_EQ(found.rfind("PRIMERA ", 0), 0U) << found;
    EXPECT_NE(found.find("segundo nombre"), std::string::npos) << found;
    EXPECT_EQ(readFile(elsewhere / "victim"), forged);
}

TEST_F(SharedFolderTest, AnEmptyJournalOfAStrangerIsNotWrittenIntoEither) {
    share(0, staff, 0660, 01777);
    ASSERT_EQ(as(stranger,
                 [&] {
                     writeFile(journal_, {});
                     return std::string("planted");
                 }),
              "planted");
    EXPECT_NE(seen(ana).find("el diario es del usuario extrano"), std::string::npos);
    EXPECT_NE(post(root, "FILA").find("sólo se puede leer"), std::string::npos);
    EXPECT_EQ(readFile(journal_).size(), 0U);
}

// --- Rights that do not suffice, found on opening

TEST_F(SharedFolderTest, AFolderThatMayNotBeWrittenMakesItsTablesReadOnly) {
    share(0, staff, 0660, 0755);
    const std::string found = seen(ana);
    EXPECT_NE(found.find("no se puede escribir en la carpeta " + folder_.path()), std::string::npos) << found;
    EXPECT_NE(found.find("no hay permiso"), std::string::npos) << found;
    EXPECT_NE(post(ana, "FILA").find("sólo se puede leer"), std::string::npos);
    EXPECT_EQ(post(root, "DE_ROOT"), "stored");
}

TEST_F(SharedFolderTest, InAFolderThatMayNotBeWrittenAnEmptyJournalOfTheGroupSuffices) {
    share(0, staff, 0660, 0755);
    writeFile(journal_, {});
    give(journal_, 0, staff, 0660);
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    EXPECT_EQ(post(luis, "DE_LUIS", Ending::Leaves, "segundo"), "stored");
    EXPECT_EQ(readFile(journal_).size(), 0U);
    EXPECT_EQ(seen(ana), "PRIMERA DE_ANA DE_LUIS writable");
}

TEST_F(SharedFolderTest, AnIndexThatMayNotBeWrittenIsTheReasonGiven) {
    share(0, staff, 0660, 0775);
    give(index_, 0, staff, 0640);
    const std::string found = seen(ana);
    EXPECT_NE(found.find(index_), std::string::npos) << found;
    EXPECT_EQ(found.find(table_), std::string::npos) << found;
    EXPECT_NE(found.find("no hay permiso"), std::string::npos) << found;
    EXPECT_NE(post(ana, "FILA").find(index_), std::string::npos);
    EXPECT_FALSE(diskFolders().exists(journal_));
}

TEST_F(SharedFolderTest, RecordsThatMayNotBeWrittenAreTheReasonGiven) {
    share(0, staff, 0660, 0775);
    give(table_, 0, staff, 0640);
    const std::string found = seen(ana);
    EXPECT_NE(found.find(table_), std::string::npos) << found;
    EXPECT_EQ(found.find(index_), std::string::npos) << found;
}

TEST_F(SharedFolderTest, AJournalThatMayNotBeWrittenIsReplacedByWhoIsAlone) {
    share(0, staff, 0660, 02775);
    for (const char* boot : {"", "segundo"}) {
        EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
        give(journal_, ana.id, ana.group, 0644);
        EXPECT_EQ(post(luis, "DE_LUIS", Ending::Leaves, boot), "stored");
        EXPECT_FALSE(diskFolders().exists(journal_));
    }
    EXPECT_EQ(seen(ana), "PRIMERA DE_ANA DE_LUIS DE_ANA DE_LUIS writable");
}

// Where only its owner may rename it, it is copied: as much of it as would ever be read.
TEST_F(SharedFolderTest, AnEndlessJournalThatDoesNotBelongIsSetAsideAllTheSame) {
    share(ana.id, staff, 0660, 01770);
    const Bytes records = readFile(table_), index = readFile(index_);
    ASSERT_EQ(post(luis, "SEGUNDA", Ending::Dies), "stored");
    std::filesystem::resize_file(journal_, std::uintmax_t{1} << 40);
    writeFile(table_, records);
    writeFile(index_, index);
    EXPECT_EQ(seen(ana), "PRIMERA writable");
    EXPECT_EQ(std::filesystem::file_size(journal_), 0U);
    EXPECT_EQ(std::filesystem::file_size(journal_ + ".apartado"), std::uintmax_t{64} << 20);
}

TEST_F(SharedFolderTest, AJournalThatMayNeitherBeWrittenNorRemovedIsTheReasonGiven) {
    share(0, staff, 0660, 03775);
    EXPECT_EQ(post(ana, "DE_ANA", Ending::Dies), "stored");
    give(journal_, ana.id, ana.group, 0644);
    const std::string found = seen(luis, "segundo");
    EXPECT_EQ(found.rfind("PRIMERA DE_ANA ", 0), 0U) << found;
    EXPECT_NE(found.find(journal_ + ": no se puede escribir en el diario"), std::string::npos) << found;
    EXPECT_EQ(post(ana, "OTRA", Ending::Leaves, "segundo"), "stored");
    EXPECT_EQ(post(luis, "DE_LUIS", Ending::Leaves, "segundo"), "stored");
}

} // namespace
