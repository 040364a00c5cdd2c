// Root, two members of a group and a stranger in one folder, at random: they store rows, die, plant journals,
// and the machine is started again.
#include <array>
#include <random>
#include <vector>

#include "dbase/table/shared_folder_fixture.h"
#include "support/LongForm.h"
#include "support/Seed.h"

namespace {

using namespace dbase;
using namespace dbase::test;

class SharedUsers : public SharedFolderTest {
protected:
    [[nodiscard]] unsigned any(unsigned count) {
        return std::uniform_int_distribution(0U, count - 1)(random_);
    }
    [[nodiscard]] const User& anybody() { return *writers_.at(any(3)); }
    [[nodiscard]] std::string newName() { return "F" + std::to_string(++rows_); }

    void shareAnew() {
        constexpr std::array modes{0775U, 02775U, 01775U, 03775U, 01777U};
        isOpen_ = any(2) == 0;
        share(anybody().id, staff, 0660, isOpen_ ? 01777 : modes.at(any(5)));
    }
    void store(const std::string& name, Ending ending) {
        EXPECT_EQ(post(anybody(), name, ending, boot_), "stored");
        expected_ += name + ' ';
    }
    /// One is at work and is killed or leaves, while another stores a row.
    void storeTogether() {
        const User& first = anybody();
        const std::string name = newName();
        ChildProcess working([&](const ChildProcess::Link& link) {
            known_.use();
            become(first);
            setBootIdentity(boot_);
            const auto table = Table::open(table_);
            table->append(makeRecord(table->schema(), {name}), Durability::Disk);
            link.tell();
            link.await();
            return 0;
        });
        working.await();
        expected_ += name + ' ';
        store(newName(), any(2) == 0 ? Ending::Dies : Ending::Leaves);
        if (any(2) == 0) {
            working.kill();
        } else {
            working.tell();
        }
        static_cast<void>(working.join());
    }
    /// A stranger leaves a file or a link where there is no journal.
    void plant() {
        if (!isOpen_ || diskFolders().exists(journal_)) {
            return;
        }
        const Bytes forged = forgedJournal();
        const bool isLink = any(2) == 0;
        ASSERT_EQ(as(stranger,
                     [&] {
                         if (isLink) {
                             return std::string(
                                 symlink(lists_.path().c_str(), journal_.c_str()) == 0 ? "planted" : "");
                         }
                         writeFile(journal_, forged);
                         return std::string("planted");
                     }),
                  "planted");
        const std::string found = seen(anybody(), boot_);
        EXPECT_EQ(found.rfind(expected_, 0), 0U) << found;
        EXPECT_NE(found.find(journal_ + ": "), std::string::npos) << found;
        EXPECT_NE(post(anybody(), "FILA", Ending::Leaves, boot_).find("sólo se puede leer"),
                  std::string::npos);
        ASSERT_EQ(unlink(journal_.c_str()), 0);
    }

    std::mt19937 random_{ambrel::test::seedOfThisRun()};
    const std::array<const User*, 3> writers_{&root, &ana, &luis};
    std::string boot_ = "0", expected_ = "PRIMERA ";
    int rows_ = 0;
    bool isOpen_ = false;
};

TEST_F(SharedUsers, LoseNoRowOfEachOtherAndObeyNoStranger) {
    const int rounds = ambrel::test::longForm(6, 300), stepsInARound = 12;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        shareAnew();
        for (int step = 0; step < stepsInARound && !HasFailure(); ++step) {
            switch (any(5)) {
            case 0:
                store(newName(), Ending::Leaves);
                break;
            case 1:
                store(newName(), Ending::Dies);
                break;
            case 2:
                storeTogether();
                break;
            case 3:
                boot_ = std::to_string(std::stoi(boot_) + 1);
                break;
            default:
                plant();
            }
            EXPECT_EQ(seen(anybody(), boot_), expected_ + "writable")
                << "round " << round << ", step " << step;
        }
        // Access is given anew while no journal has the old one.
        EXPECT_EQ(seen(root, std::to_string(std::stoi(boot_) + 1)), expected_ + "writable");
        boot_ = std::to_string(std::stoi(boot_) + 1);
        diskFolders().remove(journal_);
        EXPECT_EQ(findings(table_), "");
    }
}

} // namespace
