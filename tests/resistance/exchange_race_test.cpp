// Processes that exchange several tables and are killed while they do, among others that open the tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <unistd.h>

#include "ExchangedTables.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using ambrel::test::seedOfThisRun;
namespace fs = std::filesystem;

std::string describe(const Authors& authors) {
    std::string text;
    for (const int author : authors) {
        text += std::to_string(author) + ' ';
    }
    return text;
}

/// Before the first exchange one of the tables is missing.
bool areOfOneExchange(const Authors& authors) {
    return authors == authorsBefore ||
           std::ranges::all_of(authors, [&](int author) { return author > 0 && author == authors[0]; });
}

class ExchangeRace : public ::testing::Test {
protected:
    ExchangeRace() { makeExchangedTables(folder_.path(), diskFolders()); }

    /// False if a station has one of the tables open.
    [[nodiscard]] bool exchange(int author) const {
        try {
            exchangeBy(author, folder_.path());
            return true;
        } catch (const Error& error) {
            if (error.code() != ErrorCode::LockTimeout) {
                throw;
            }
            return false;
        }
    }
    /// A process that exchanges without end, from this author on.
    [[nodiscard]] std::unique_ptr<ChildProcess> startExchanging(int author) const {
        return std::make_unique<ChildProcess>([this, author](const ChildProcess::Link& link) {
            link.tell();
            for (int next = author;; next += exchange(next) ? 1 : 0) {
            }
            return 0;
        });
    }
    /// Kills such a process at any moment, or one time in two soon after it has written its intention; true
    /// if that was still there.
    [[nodiscard]] bool killOne(int author, std::mt19937& random) const {
        const auto exchanging = startExchanging(author);
        exchanging->await();
        const bool isSoon = random() % 2 == 0;
        for (int looks = 0; isSoon && looks < 100000 && !fs::exists(folder_ / "INTENCION.AMI"); ++looks) {
        }
        usleep(static_cast<useconds_t>(random() % (isSoon ? 3000 : 30000)));
        exchanging->kill();
        exchanging->join();
        return fs::exists(folder_ / "INTENCION.AMI");
    }
    void expectSound(std::size_t first) const {
        const Authors authors = authorsIn(folder_.path(), first);
        EXPECT_TRUE(areOfOneExchange(authors)) << describe(authors);
        for (std::size_t i = 0; i < authors.size(); ++i) {
            if (authors.at(i) != noTable) {
                EXPECT_EQ(findings(exchangedFiles(folder_.path()).at(i)), "");
            }
        }
    }
    void expectNothingLeftOver() const {
        EXPECT_TRUE(exchange(1));
        EXPECT_EQ(authorsIn(folder_.path(), 0), (Authors{1, 1, 1}));
        EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 6);
    }

    TemporaryFolder folder_;
};

TEST_F(ExchangeRace, AProgramKilledWhileItExchangesLeavesAllOldTablesOrAllNewOnes) {
    const int kills = longForm(60, 4000);
    int amidst = 0;
    std::mt19937 random(seedOfThisRun());
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        amidst += killOne(1 + kill * 100, random) ? 1 : 0;
        expectSound(random() % 3);
    }
    expectNothingLeftOver();
    std::printf("resistance: exchanging programs killed=%d, with an intention left=%d\n", kills, amidst);
}

TEST_F(ExchangeRace, StationsThatOpenTheTablesMeanwhileSeeThoseOfOneExchange) {
    const int kills = longForm(40, 2000);
    ASSERT_TRUE(exchange(1)); // one that is missing cannot be held open
    std::vector<std::unique_ptr<ChildProcess>> stations;
    for (std::size_t i = 0; i < 3; ++i) {
        stations.push_back(std::make_unique<ChildProcess>([this, i](const ChildProcess::Link& link) {
            std::string wrong;
            int openings = 0;
            while (wrong.empty() && !fs::exists(folder_ / "fin")) {
                try {
                    const Authors authors = authorsIn(folder_.path(), i);
                    wrong = areOfOneExchange(authors) ? "" : describe(authors);
                } catch (const Error& error) {
                    wrong = error.what();
                }
                // An exchange needs a moment in which no station has any of the tables open.
                usleep(
                    static_cast<useconds_t>(1000 * (i + 1) * static_cast<std::size_t>(1 + ++openings % 7)));
            }
            link.send(::testing::Test::HasFailure() ? "tables damaged " + wrong : wrong);
            return 0;
        }));
    }
    int amidst = 0;
    std::mt19937 random(seedOfThisRun());
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        amidst += killOne(1 + kill * 100, random) ? 1 : 0;
    }
    folder_.write("fin", "");
    for (const auto& station : stations) {
        EXPECT_EQ(station->receive(), "");
        station->join();
    }
    fs::remove(folder_ / "fin");
    expectSound(0);
    expectNothingLeftOver();
    std::printf("resistance: exchanging programs killed among stations=%d, with an intention left=%d\n",
                kills, amidst);
}

} // namespace
