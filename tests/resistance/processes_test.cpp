// Two to sixteen processes on one street table: appends, key allocation, readers among writers.
#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include <sched.h>

#include "ExpectedRows.h"
#include "RandomPosts.h"
#include "StreetFolder.h"
#include "controller/StreetKeyAllocation.h"
#include "dbase/lock/read_scope.h"
#include "dbase/support/StoredTable.h"
#include "support/LongForm.h"

namespace {

using namespace resistance;
using ambrel::test::longForm;

class Processes : public StreetFolder, public ::testing::WithParamInterface<int> {
protected:
    static constexpr std::uint32_t serialsOfOne = 1'000'000;

    /// Each begins when all are ready.
    void startTogether(const std::vector<Work>& works) {
        for (const Work& work : works) {
            children_.push_back(std::make_unique<ChildProcess>(telling(work)));
        }
        for (const auto& child : children_) {
            child->await();
        }
        for (const auto& child : children_) {
            child->tell();
        }
    }
    static void waitForAll(const ChildProcess::Link& link) {
        link.tell();
        link.await();
    }
    /// A writer with this work; its posts go to a log of its own.
    [[nodiscard]] Work writer(const WriterWork& work) {
        logs_.push_back(std::make_unique<PostLog>());
        return [this, work, &log = *logs_.back()](const ChildProcess::Link& link) {
            RandomPosts posts(tableFile(), work, {}, log);
            waitForAll(link);
            posts.run();
            return 0;
        };
    }
    /// Lets the writers, which were started first, store that many posts together, and stops them.
    void awaitWriters(int posts) {
        const std::size_t each = static_cast<std::size_t>(posts) / logs_.size();
        for (std::size_t i = 0; i < logs_.size(); ++i) {
            awaitPosts(*logs_[i], each, *children_[i]);
        }
        for (const auto& log : logs_) {
            log->stop();
        }
    }
    void expectThatAllFinish() {
        for (const auto& child : children_) {
            EXPECT_EQ(child->join(), 0);
        }
        children_.clear();
    }

    /// Every row of the table, which must be complete.
    static std::vector<StreetVersion> storedRows(const std::string& tableFile) {
        const auto table = dbase::Table::open(tableFile);
        std::vector<StreetVersion> rows;
        for (dbase::RecordNumber number = 1; number <= table->records().recordCount(); ++number) {
            const Bytes record = dbase::test::storedRecord(*table, number);
            rows.push_back(rowOf(table->schema(), record));
            EXPECT_EQ(record, streetRecord(table->schema(), rows.back())) << number;
        }
        return rows;
    }

    std::vector<std::unique_ptr<ChildProcess>> children_;
    std::vector<std::unique_ptr<PostLog>> logs_;
};

TEST_P(Processes, ThatAppendLoseNoRowAndStoreNoneTwice) {
    const int each = longForm(3200, 64'000) / GetParam();
    std::vector<Work> works;
    for (int i = 0; i < GetParam(); ++i) {
        works.push_back([this, i, each](const ChildProcess::Link& link) {
            const auto table = dbase::Table::open(tableFile());
            waitForAll(link);
            for (int row = 0; row < each; ++row) {
                table->append(
                    streetRecord(table->schema(), {.serial = static_cast<std::uint32_t>(i) * serialsOfOne +
                                                             static_cast<std::uint32_t>(row)}));
            }
            return 0;
        });
    }
    startTogether(works);
    expectThatAllFinish();
    std::set<std::uint32_t> serials;
    for (const StreetVersion& row : storedRows(tableFile())) {
        EXPECT_TRUE(serials.insert(row.serial).second) << "twice: " << codeOf(row.serial);
    }
    EXPECT_EQ(serials.size(), static_cast<std::size_t>(each * GetParam()));
    for (const std::uint32_t serial : serials) {
        EXPECT_LT(serial % serialsOfOne, static_cast<std::uint32_t>(each));
    }
    expectSound();
}

TEST_P(Processes, ThatChangeRowsOfTheirOwnSeeThemAllAsTheyLeftThem) {
    std::vector<Work> works;
    for (int i = 0; i < GetParam(); ++i) {
        works.push_back(writer({.throughDataset = i % 2 == 0,
                                .firstSerial = static_cast<std::uint32_t>(i) * serialsOfOne,
                                .seed = static_cast<std::uint32_t>(i)}));
    }
    startTogether(works);
    awaitWriters(longForm(2400, 40'000));
    expectThatAllFinish();
    ExpectedRows expected;
    for (const auto& log : logs_) {
        for (std::size_t post = 0; post < log->acknowledged(); ++post) {
            expected.apply(log->post(post));
        }
    }
    std::string differences;
    expected.accept(*dbase::Table::open(tableFile()), {}, differences);
    EXPECT_EQ(differences, "");
    expectSound();
}

/// Adds streets under keys that it allocates, repeating refused operations as the dialogs ask their users to.
int addUnderFreeKeys(int driver, int streets) {
    dbase::Dataset table("DB", "POSTAL", "VIA");
    table.open();
    for (int i = 0; i < streets; ++i) {
        table.append();
        setFields(table, {.serial = static_cast<std::uint32_t>(driver * 1'000'000 + i)});
        table.field("CODIGO1").clear();
        while (!ambrel::postUnderFreeKey(table, table.field("CODIGO1"))) {
            sched_yield();
        }
    }
    return 0;
}

class KeysOfProcesses : public Processes {
protected:
    void start(int streetsEach) {
        std::vector<Work> works;
        for (int i = 0; i < GetParam(); ++i) {
            works.push_back([i, streetsEach](const ChildProcess::Link& link) {
                waitForAll(link);
                return addUnderFreeKeys(i, streetsEach);
            });
        }
        startTogether(works);
    }
    /// Number of different streets; a key or a name that occurs twice fails the test.
    std::size_t distinctStreets() {
        std::set<std::string> keys, names;
        dbase::Dataset table("DB", "POSTAL", "CODIGO1");
        table.open();
        for (table.first(); !table.isEmpty() && !table.eof(); table.next()) {
            EXPECT_TRUE(keys.insert(table.field("CODIGO1").text()).second)
                << "twice: " << table.field("CODIGO1").text();
            EXPECT_TRUE(names.insert(table.field("VIA").text()).second)
                << "twice: " << table.field("VIA").text();
        }
        return names.size();
    }
};

TEST_P(KeysOfProcesses, AreGivenOutOnceEach) {
    const int each = longForm(960, 16'000) / GetParam();
    start(each);
    expectThatAllFinish();
    EXPECT_EQ(distinctStreets(), static_cast<std::size_t>(each * GetParam()));
    expectSound();
}

TEST_P(KeysOfProcesses, AreGivenOutOnceEachWhenOneIsKilled) {
    for (int round = 0; round < longForm(3, 60); ++round) {
        const int each = 160 / GetParam();
        start(each);
        ChildProcess victim(telling([](const ChildProcess::Link& link) {
            link.tell();
            return addUnderFreeKeys(50, 1'000'000);
        }));
        victim.await();
        for (const auto& child : children_) { // when it dies, some are at work and some have finished
            if (child == children_[static_cast<std::size_t>(round) % children_.size()]) {
                victim.kill();
            }
            EXPECT_EQ(child->join(), 0);
        }
        children_.clear();
        EXPECT_EQ(victim.join(), -SIGKILL);
        EXPECT_GE(distinctStreets(), static_cast<std::size_t>(each * GetParam()));
        expectSound();
        beginAnew();
    }
}

/// Rows that stay, among which others come, change and go.
class ReadersAmongWriters : public Processes {
protected:
    static constexpr std::uint32_t stableRows = 250;
    static constexpr std::uint32_t neverStored = 99'000'000;

    ReadersAmongWriters() {
        const auto table = dbase::Table::open(tableFile());
        for (std::uint32_t serial = 0; serial < stableRows; ++serial) {
            table->append(streetRecord(table->schema(), {.serial = serial}));
        }
    }

    /// Seeks and walks until the log says stop; throws for a wrong answer.
    static void readAllTheWhile(const PostLog& log, std::uint32_t seed, bool inScopes) {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        std::minstd_rand random(seed + 1);
        std::optional<dbase::ReadScope> scope;
        for (int turn = 0; turn < 20 || !log.mustStop(); ++turn) {
            if (inScopes && turn % 7 == 0) {
                scope.reset();
                scope.emplace();
            }
            const std::uint32_t serial =
                std::uniform_int_distribution<std::uint32_t>(0, stableRows - 1)(random);
            findByKey(streets, serial);
            findByName(streets, serial);
            if (turn % 5 == 0) {
                walkTree(streets);
            }
            if (turn % 25 == 0) {
                walkAll(streets);
            }
        }
    }

private:
    static void require(bool condition, const std::string& what) {
        if (!condition) {
            throw std::runtime_error("wrong answer: " + what);
        }
    }

    /// The current row is complete and comes after `before`, which it then replaces.
    static void requireBehind(std::string& before, dbase::Dataset& streets) {
        require(isWhole(streets), "half a row behind " + before);
        std::string here = orderOf(streets);
        require(before <= here, "out of order: " + here + " behind " + before);
        before = std::move(here);
    }

    static void findByKey(dbase::Dataset& streets, std::uint32_t serial) {
        streets.setTag("CODIGO1");
        const std::string code = codeOf(serial);
        require(streets.seek({{"CODIGO1", code}}, dbase::SeekMode::Exact), "not found: " + code);
        require(currentRow(streets) == StreetVersion{.serial = serial} && isWhole(streets),
                "spoilt: " + code);
        require(!streets.seek({{"CODIGO1", codeOf(neverStored + serial)}}, dbase::SeekMode::Exact),
                "found and never stored");
        require(currentRow(streets).serial == serial, "moved by a seek that found nothing");
    }

    /// Also reads some rows further, which others may have stored, or be changing.
    static void findByName(dbase::Dataset& streets, std::uint32_t serial) {
        streets.setTag("VIA");
        const std::vector<std::string> values = streetValues({.serial = serial});
        require(streets.seek({{"PROVINCIA", values.at(1)},
                              {"CAPITAL", values.at(2)},
                              {"VIA", values.at(4)},
                              {"TIPO_VIA", values.at(3)}},
                             dbase::SeekMode::Exact),
                "not found by name: " + codeOf(serial));
        require(currentRow(streets) == StreetVersion{.serial = serial} && isWhole(streets),
                "spoilt by name: " + codeOf(serial));
        std::string before = orderOf(streets);
        for (int step = 0; step < 10 && streets.next(); ++step) {
            requireBehind(before, streets);
        }
    }

    /// Each row that stays occurs once.
    static void walkAll(dbase::Dataset& streets) {
        streets.setTag("VIA");
        std::vector<int> seen(stableRows);
        std::string before;
        for (streets.first(); !streets.eof(); streets.next()) {
            requireBehind(before, streets);
            if (const std::uint32_t serial = currentRow(streets).serial; serial < stableRows) {
                ++seen.at(serial);
            }
        }
        require(std::ranges::all_of(seen, [](int times) { return times == 1; }), "rows passed over or twice");
    }

    /// In one state of the table, each record has exactly one entry.
    static void walkTree(dbase::Dataset& streets) {
        for (const char* tag : {"VIA", "NOMBREVIA", "CODIGO1"}) {
            std::vector<dbase::RecordNumber> numbers = dbase::test::order(streets.openTable(), tag);
            require(numbers.size() >= stableRows, "entries lost");
            std::ranges::sort(numbers);
            for (std::size_t i = 0; i < numbers.size(); ++i) {
                require(numbers[i] == i + 1, "half a change");
            }
        }
    }

    static std::string orderOf(dbase::Dataset& streets) {
        std::string key;
        for (const auto& [name, width] : std::vector<std::pair<const char*, std::size_t>>{
                 {"PROVINCIA", 2}, {"CAPITAL", 1}, {"VIA", 45}, {"TIPO_VIA", 3}}) {
            std::string value = streets.field(name).text();
            value.resize(width, ' ');
            key += value;
        }
        return key;
    }
};

TEST_P(ReadersAmongWriters, GetNoWrongAnswer) {
    const int writers = GetParam() / 2;
    PostLog readers; // stops the readers
    std::vector<Work> works;
    for (int i = 0; i < writers; ++i) {
        works.push_back(writer({.weights = {6, 5, 2, 0, 0, 0},
                                .throughDataset = i % 2 == 0,
                                .firstSerial = static_cast<std::uint32_t>(i + 1) * serialsOfOne,
                                .seed = static_cast<std::uint32_t>(i)}));
    }
    for (int i = writers; i < GetParam(); ++i) {
        works.push_back([i, &readers](const ChildProcess::Link& link) {
            waitForAll(link);
            readAllTheWhile(readers, static_cast<std::uint32_t>(i), i % 2 != 0);
            return 0;
        });
    }
    startTogether(works);
    awaitWriters(longForm(2400, 40'000));
    readers.stop();
    expectThatAllFinish();
    expectSound();
}

std::string nameOfCount(const ::testing::TestParamInfo<int>& count) { return std::to_string(count.param); }

INSTANTIATE_TEST_SUITE_P(Of, Processes, ::testing::Values(2, 4, 8, 16), nameOfCount);
INSTANTIATE_TEST_SUITE_P(Of, KeysOfProcesses, ::testing::Values(2, 4, 8, 16), nameOfCount);
INSTANTIATE_TEST_SUITE_P(Of, ReadersAmongWriters, ::testing::Values(2, 4, 8, 16), nameOfCount);

} // namespace
