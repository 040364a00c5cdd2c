// Writers of a street table are killed at random instants, again and again: acknowledged posts are
// there, others are complete or absent, and the table is sound each time.
#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>

#include "RandomPosts.h"
#include "StreetFolder.h"
#include "support/LongForm.h"

namespace {

using namespace resistance;
using ambrel::test::longForm;

struct Plan {
    int cycles = 0;
    std::size_t mostWriters = 1; // one of them is killed
    WriterWork work = {};
    std::uint32_t mostPosts = 60;    // acknowledged before the kill
    bool killsTheNextOpener = false; // while it recovers the table
};

/// The results of a test's cycles.
struct Tally {
    int cycles = 0, marks = 0, killedOpeners = 0, whole = 0, absent = 0, redone = 0;
    std::size_t acknowledged = 0;
};

class KillCycles : public StreetFolder {
protected:
    void run(const Plan& plan) {
        for (int cycle = 0; cycle < plan.cycles; ++cycle) {
            SCOPED_TRACE("cycle " + std::to_string(cycle));
            killOne(plan);
            ASSERT_FALSE(HasFailure());
            verify();
            ASSERT_FALSE(HasFailure());
            if (expected_.count() > rowsOfALargeTable || nextSerial_ > 90'000'000) {
                beginOver();
            }
        }
        report();
    }

private:
    static constexpr std::size_t rowsOfALargeTable = 4000;
    static constexpr std::uint32_t serialsOfAWriter = 100'000;

    void beginOver() {
        beginAnew();
        expected_.clear();
        nextSerial_ = 1;
    }

    [[nodiscard]] std::uint32_t below(std::uint32_t limit) {
        return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(random_);
    }

    /// Lets a child work on for a random time, from none to that of several posts.
    void spin() {
        const std::uint32_t most = std::array<std::uint32_t, 4>{20, 100, 500, 5000}.at(below(4));
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(below(most));
        while (std::chrono::steady_clock::now() < end) {
        }
    }

    void start(const Plan& plan) {
        const std::size_t count =
            plan.mostWriters == 1 ? 1 : 2 + below(static_cast<std::uint32_t>(plan.mostWriters - 1));
        while (logs_.size() < count) {
            logs_.push_back(std::make_unique<PostLog>());
        }
        for (std::size_t i = 0; i < count; ++i) {
            WriterWork work = plan.work;
            work.firstSerial = nextSerial_;
            nextSerial_ += serialsOfAWriter;
            work.throughDataset = below(2) == 0;
            work.seed = below(1'000'000);
            PostLog& log = *logs_[i];
            log.clear();
            writers_.push_back(
                std::make_unique<ChildProcess>(telling([&, i, work](const ChildProcess::Link&) {
                    RandomPosts(tableFile(), work, expected_.share(i, count), log).run();
                    return 0;
                })));
        }
    }

    void killOne(const Plan& plan) {
        start(plan);
        ChildProcess& victim = *writers_.front();
        awaitPosts(*logs_.front(), below(plan.mostPosts + 1), victim);
        spin();
        victim.kill();
        const int end = victim.join();
        EXPECT_TRUE(end == -SIGKILL || (end == 0 && logs_.front()->isFull())) << end;
        for (std::size_t i = 1; i < writers_.size(); ++i) { // the others notice nothing, and go on
            awaitPosts(*logs_[i], logs_[i]->acknowledged() + 5, *writers_[i]);
            logs_[i]->stop();
        }
        for (std::size_t i = 1; i < writers_.size(); ++i) {
            EXPECT_EQ(writers_[i]->join(), 0);
        }
        usedLogs_ = writers_.size();
        writers_.clear();
        ++tally_.cycles;
        markStood_ = markStands();
        tally_.marks += markStood_ ? 1 : 0;
        for (int openers = 0; plan.killsTheNextOpener && openers < 3 && markStands(); ++openers) {
            killAnOpener();
        }
    }

    void killAnOpener() {
        ChildProcess opener(telling([&](const ChildProcess::Link& link) {
            link.tell();
            (void)dbase::Table::open(tableFile());
            return 0;
        }));
        opener.await();
        spin();
        opener.kill();
        if (opener.join() == -SIGKILL) {
            ++tally_.killedOpeners;
        }
    }

    void verify() {
        std::optional<Post> inFlight = logs_.front()->inFlight();
        for (std::size_t i = 0; i < usedLogs_; ++i) {
            EXPECT_TRUE(i == 0 || !logs_[i]->inFlight());
            for (std::size_t post = 0; post < logs_[i]->acknowledged(); ++post) {
                expected_.apply(logs_[i]->post(post));
            }
            tally_.acknowledged += logs_[i]->acknowledged();
        }
        std::string differences;
        const auto outcome = expected_.accept(*dbase::Table::open(tableFile()), inFlight, differences);
        EXPECT_EQ(differences, "") << (inFlight ? "in flight: kind " +
                                                      std::to_string(static_cast<int>(inFlight->kind)) +
                                                      ", " + codeOf(inFlight->row.serial)
                                                : "nothing in flight");
        expectSound();
        tally_.whole += outcome == ExpectedRows::Outcome::Whole ? 1 : 0;
        tally_.absent += outcome == ExpectedRows::Outcome::Absent ? 1 : 0;
        tally_.redone += outcome == ExpectedRows::Outcome::Whole && markStood_ ? 1 : 0;
    }

    void report() {
        RecordProperty("cycles", tally_.cycles);
        RecordProperty("marks", tally_.marks);
        RecordProperty("killed_openers", tally_.killedOpeners);
        RecordProperty("acknowledged", static_cast<int>(tally_.acknowledged));
        RecordProperty("whole", tally_.whole);
        RecordProperty("redone", tally_.redone);
        RecordProperty("absent", tally_.absent);
        std::cout << "resistance: " << ::testing::UnitTest::GetInstance()->current_test_info()->name()
                  << ": cycles=" << tally_.cycles << " marks=" << tally_.marks
                  << " acknowledged=" << tally_.acknowledged << " whole=" << tally_.whole
                  << " redone=" << tally_.redone << " absent=" << tally_.absent
                  << " killed_openers=" << tally_.killedOpeners << '\n';
    }

    std::minstd_rand random_{20'000'003};
    ExpectedRows expected_;
    std::vector<std::unique_ptr<PostLog>> logs_;
    std::vector<std::unique_ptr<ChildProcess>> writers_;
    std::size_t usedLogs_ = 0;
    std::uint32_t nextSerial_ = 1;
    bool markStood_ = false;
    Tally tally_;
};

constexpr std::array<int, postKinds> plainPosts{6, 4, 1, 0, 0, 0, 0};

TEST_F(KillCycles, OneWriterIsKilled) { run({.cycles = longForm(80, 2900)}); }

/// The system may end a write that a signal interrupts between two pages of memory.
TEST_F(KillCycles, OneWriterIsKilledWhoseRowsLieAcrossTwoPages) {
    run({.cycles = longForm(60, 1500), .work = {.weights = {3, 60, 0, 0, 0, 0, 0}, .onlyAcrossPages = true}});
}

TEST_F(KillCycles, OneWriterIsKilledWhosePostsAreOnTheDisk) {
    run({.cycles = longForm(40, 1200), .work = {.durability = dbase::Durability::Disk}, .mostPosts = 15});
}

TEST_F(KillCycles, OneOfSeveralWritersIsKilledAndTheOthersGoOn) {
    run({.cycles = longForm(60, 2700), .mostWriters = 4});
}

TEST_F(KillCycles, AWriterIsKilledInARebuild) {
    run({.cycles = longForm(20, 600), .work = {.weights = {6, 4, 1, 5, 0, 0, 0}}, .mostPosts = 20});
}

/// Rows stored together come or do not come together.
TEST_F(KillCycles, AWriterIsKilledThatStoresRowsTogether) {
    run({.cycles = longForm(60, 1500), .work = {.weights = {2, 4, 1, 0, 0, 0, 6}}, .mostPosts = 20});
}

TEST_F(KillCycles, AWriterIsKilledThatStoresRowsTogetherAndTheOthersGoOn) {
    run({.cycles = longForm(20, 900),
         .mostWriters = 3,
         .work = {.weights = {2, 4, 1, 0, 0, 0, 6}, .mostRows = 40},
         .mostPosts = 20});
}

TEST_F(KillCycles, AWriterIsKilledThatStoresRowsTogetherOnTheDisk) {
    run({.cycles = longForm(20, 600),
         .work = {.weights = {2, 4, 1, 0, 0, 0, 6}, .durability = dbase::Durability::Disk},
         .mostPosts = 8});
}

TEST_F(KillCycles, AWriterIsKilledInALoad) {
    run({.cycles = longForm(20, 400), .work = {.weights = {6, 4, 1, 0, 5, 0, 0}}, .mostPosts = 8});
}

/// A large load writes rows to the file before it is finished.
TEST_F(KillCycles, AWriterIsKilledInALoadOfManyRows) {
    run({.cycles = longForm(10, 200),
         .work = {.weights = {1, 1, 0, 0, 5, 0, 0}, .mostRows = 15'000},
         .mostPosts = 2});
}

TEST_F(KillCycles, AWriterIsKilledWhileItReplacesTheTable) {
    run({.cycles = longForm(10, 300), .work = {.weights = {2, 1, 0, 0, 0, 5, 0}}, .mostPosts = 6});
}

TEST_F(KillCycles, ARecoveringProgramIsKilledToo) {
    run({.cycles = longForm(20, 400), .work = {.weights = plainPosts}, .killsTheNextOpener = true});
}

} // namespace
