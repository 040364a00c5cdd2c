// Tables of a network folder: several workstations, each of which keeps what it read until it takes a
// lock. AMBREL_SEED repeats a run.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <random>

#include "dbase/lock/read_scope.h"
#include "dbase/support/RemoteFile.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "support/LongForm.h"
#include "support/Seed.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using Numbers = std::vector<RecordNumber>;

TableDefinition layout() {
    return {.name = "RED",
            .columns = {{"CODE", ColumnType::Character, 4, 0, 0},
                        {"NAME", ColumnType::Character, 30, 0, 0},
                        {"NUM", ColumnType::Numeric, 6, 0, 0}},
            .tags = {{.name = "CODE", .expression = "CODE"},
                     {.name = "NAMEDES", .expression = "NAME", .descending = true},
                     {.name = "NUM", .expression = "NUM"},
                     {.name = "LIVE", .expression = "NAME", .condition = ".NOT. DELETED()"}},
            .languageDriver = LanguageDriver::AnsiUs};
}

class RemoteTableTest : public ::testing::Test {
protected:
    static constexpr std::size_t stationCount = 3;

    RemoteTableTest() {
        for (std::size_t i = 0; i < stationCount; ++i) {
            stations_[i] = std::make_shared<RemoteStation>();
        }
    }

    void open(std::size_t station) {
        tables_[station].reset();
        tables_[station] = openRemote(stored_, stations_[station]);
    }
    /// The first workstation waits for the disk, the others do not.
    [[nodiscard]] Durability durability(std::size_t station) const {
        return station == 0 ? ofTheFirst_ : Durability::Process;
    }

    unsigned pick(unsigned low, unsigned high) {
        return std::uniform_int_distribution<unsigned>(low, high)(random_);
    }
    RecordNumber anyRecord() { return pick(1, static_cast<unsigned>(rows_.size())); }
    Bytes anyRow() {
        std::string name(pick(3, 30), 'A');
        for (char& letter : name) {
            letter = static_cast<char>('A' + pick(0, 5));
        }
        return makeRecord(schema(), {std::to_string(pick(1000, 1200)), name, std::to_string(pick(0, 99))});
    }
    const Schema& schema() const { return tables_[0]->schema(); }
    std::string value(RecordNumber number, const char* column) const {
        return valueOf(schema(), rows_[number - 1], column);
    }
    static Bytes erased(Bytes row) {
        row[0] = '*';
        return row;
    }

    // --- Operations of a workstation, and their required results
    void append(std::size_t station) {
        rows_.push_back(anyRow());
        EXPECT_EQ(tables_[station]->append(rows_.back(), durability(station)), rows_.size());
    }
    void overwrite(std::size_t station, RecordNumber number, const Bytes& shown, const Bytes& row) {
        if (shown == rows_[number - 1]) {
            tables_[station]->overwrite(number, shown, row, durability(station));
            rows_[number - 1] = row;
        } else {
            EXPECT_EQ(
                errorOf([&] { tables_[station]->overwrite(number, shown, row, durability(station)); }).code(),
                ErrorCode::RecordChanged);
        }
    }
    void read(std::size_t station, RecordNumber number) {
        const Bytes stored = storedRecord(*tables_[station], number);
        EXPECT_EQ(stored, rows_[number - 1]) << "record " << number;
        seen_[station][number] = stored;
    }
    void overwriteWhatWasSeen(std::size_t station) {
        if (!seen_[station].empty()) {
            auto seen = seen_[station].begin();
            std::advance(seen, pick(0, static_cast<unsigned>(seen_[station].size()) - 1));
            overwrite(station, seen->first, seen->second, anyRow());
            seen_[station].erase(seen);
        }
    }
    void amend(std::size_t station, RecordNumber first, RecordNumber most, RecordNumber held = 0) {
        const Bytes model = anyRow();
        const auto end = std::min<RecordNumber>(first + most, static_cast<RecordNumber>(rows_.size()) + 1);
        const RecordNumber behind = tables_[station]->amend(
            first, most,
            [&](const RecordView&, std::span<char> after) { std::ranges::copy(model, after.begin()); },
            durability(station));
        EXPECT_EQ(behind, end <= rows_.size() ? end : 0);
        for (RecordNumber number = first; number < end; ++number) {
            if (number != held && rows_[number - 1][0] != '*') {
                rows_[number - 1] = model;
            }
        }
    }
    /// One workstation edits under a record lock, which the others respect.
    void edit(std::size_t station, std::size_t other, RecordNumber number) {
        ASSERT_TRUE(tables_[station]->tryLockRecord(number, this));
        EXPECT_FALSE(tables_[other]->tryLockRecord(number, &rows_));
        amend(other, number - std::min<RecordNumber>(number - 1, 2), 5, number);
        overwrite(station, number, storedRecord(*tables_[station], number), anyRow());
        tables_[station]->unlockRecord(number, this);
        EXPECT_TRUE(tables_[other]->tryLockRecord(number, &rows_));
        read(other, number);
        tables_[other]->unlockRecord(number, &rows_);
    }

    template<typename KeyOf>
    Numbers ordered(KeyOf keyOf, bool descending = false, bool onlyLive = false) const {
        Numbers numbers;
        for (RecordNumber number = 1; number <= rows_.size(); ++number) {
            if (!onlyLive || rows_[number - 1][0] != '*') {
                numbers.push_back(number);
            }
        }
        std::ranges::stable_sort(numbers, [&](RecordNumber a, RecordNumber b) {
            return descending ? keyOf(b) < keyOf(a) : keyOf(a) < keyOf(b);
        });
        return numbers;
    }
    void walk(std::size_t station) {
        Table& table = *tables_[station];
        const auto name = [&](RecordNumber number) { return value(number, "NAME"); };
        EXPECT_EQ(order(table, "CODE"), ordered([&](RecordNumber number) { return value(number, "CODE"); }));
        EXPECT_EQ(order(table, "NAMEDES"), ordered(name, true));
        EXPECT_EQ(order(table, "LIVE"), ordered(name, false, true));
        Numbers byNumber = ordered([&](RecordNumber number) { return std::stoi(value(number, "NUM")); });
        std::ranges::reverse(byNumber);
        EXPECT_EQ(orderBackwards(table, "NUM"), byNumber);
    }
    void seekAny(std::size_t station) {
        const std::string wanted = std::to_string(pick(1000, 1201));
        const Numbers codes = ordered([&](RecordNumber number) { return value(number, "CODE"); });
        const auto at =
            std::ranges::find_if(codes, [&](RecordNumber number) { return value(number, "CODE") >= wanted; });
        EXPECT_EQ(seek(*tables_[station], "CODE", wanted), at == codes.end() ? 0 : *at);
    }

    void work(std::size_t station) {
        const unsigned kind = rows_.size() < 10 ? 0 : pick(0, 19);
        const RecordNumber number = rows_.empty() ? 0 : anyRecord();
        if (kind < 6) {
            append(station);
        } else if (kind < 8) {
            overwrite(station, number, storedRecord(*tables_[station], number), anyRow());
        } else if (kind < 11) {
            overwriteWhatWasSeen(station);
        } else if (kind < 12) {
            overwrite(station, number, rows_[number - 1], erased(rows_[number - 1]));
        } else if (kind < 14) {
            read(station, number);
        } else if (kind < 15) {
            amend(station, number, pick(1, 8));
        } else if (kind < 16) {
            edit(station, (station + 1) % stationCount, number);
        } else if (kind < 18) {
            seekAny(station);
        } else if (kind < 19) {
            walk(station);
        } else if (pick(0, 4) > 0) {
            open(station);
        } else {
            tables_[station]->rebuildTags();
        }
    }

    std::mt19937 random_{ambrel::test::seedOfThisRun()};
    MemoryTable stored_{layout()};
    std::array<std::shared_ptr<RemoteStation>, stationCount> stations_;
    Durability ofTheFirst_ = Durability::Disk;
    std::array<std::unique_ptr<Table>, stationCount> tables_;
    std::array<std::map<RecordNumber, Bytes>, stationCount> seen_; // as each workstation last read them
    std::vector<Bytes> rows_;                                      // as they should be
};

TEST_F(RemoteTableTest, NothingIsLostOrStaleBetweenWorkstations) {
    for (std::size_t i = 0; i < stationCount; ++i) {
        open(i);
    }
    const int operations = ambrel::test::longForm(1500, 60'000);
    std::optional<ReadScope> scope; // from time to time
    for (int done = 1; done <= operations; ++done) {
        if (pick(0, 9) == 0) {
            scope ? scope.reset() : static_cast<void>(scope.emplace());
        }
        const std::size_t station = pick(0, stationCount - 1);
        work(station);
        for (const auto& each : stations_) {
            EXPECT_FALSE(each->hasUnsent());
        }
        if (rows_.size() == 600) { // small, so that every answer can be compared
            ASSERT_EQ(stored_.findings(), "");
            tables_ = {};
            stored_ = MemoryTable(layout());
            rows_.clear();
            seen_ = {};
            for (std::size_t i = 0; i < stationCount; ++i) {
                open(i);
            }
        }
        ASSERT_FALSE(HasFailure()) << "operation " << done;
    }
    for (std::size_t i = 0; i < stationCount; ++i) {
        walk(i);
    }
    tables_ = {};
    EXPECT_EQ(stored_.journal->content, nullptr) << "the last one to leave removes the journal";
    EXPECT_EQ(stored_.findings(), "");
}

// Shows that these files are a trap: an engine that does not know of them falls into it.
TEST_F(RemoteTableTest, FilesThatDoNotTellKeepAChangeFromTheOthers) {
    for (const auto& station : stations_) {
        station->tells = false;
    }
    open(0);
    open(1);
    append(0);
    append(1);
    const Bytes shown = storedRecord(*tables_[0], 1);
    tables_[0]->overwrite(1, shown, withValue(schema(), shown, "CODE", "9999"));
    EXPECT_EQ(storedRecord(*tables_[1], 1), shown);
}

TEST_F(RemoteTableTest, AReadScopeShowsWhatAnotherWorkstationChangedMeanwhile) {
    open(0);
    open(1);
    append(0);
    const ReadScope scope;
    read(1, 1);
    overwrite(0, 1, rows_[0], anyRow());
    read(1, 1);
    append(0);
    read(1, 2);
    walk(1);
}

TEST_F(RemoteTableTest, ATableWithoutTagsIsSharedAsWell) {
    TableDefinition plain = layout();
    plain.tags.clear();
    stored_ = MemoryTable(plain);
    for (std::size_t i = 0; i < stationCount; ++i) {
        open(i);
    }
    for (int round = 0; round < 60; ++round) {
        append(pick(0, stationCount - 1));
        read(pick(0, stationCount - 1), anyRecord());
        overwriteWhatWasSeen(pick(0, stationCount - 1));
        read(pick(0, stationCount - 1), anyRecord());
    }
    EXPECT_EQ(stored_.findings(), "");
}

/// Some rows, and a workstation that is switched off in the middle of its work.
class SwitchedOffStationTest : public RemoteTableTest {
protected:
    using Step = std::function<void(std::vector<Bytes>&)>;

    /// Creates the table with which every run begins, by both workstations.
    struct Beginning {
        Bytes table, index;
        std::vector<Bytes> rows;
    };

    void SetUp() override {
        ofTheFirst_ = Durability::Disk;
        openBoth();
        for (std::size_t i = 0; i < 60; ++i) { // some of them on two pages
            append(i % 2);
        }
        for (RecordNumber number = 30; number < 40; ++number) {
            overwrite(1, number, rows_[number - 1], anyRow());
        }
        tables_ = {};
        beginning_ = {stored_.records->bytes, stored_.index->bytes, rows_};
    }
    void openBoth() {
        for (std::size_t station : {0, 1}) {
            stations_[station] = std::make_shared<RemoteStation>();
            open(station);
        }
    }

    std::vector<Step> script() {
        const Bytes a = anyRow(), b = anyRow(), c = anyRow();
        return {
            [=, this](auto& rows) {
                rows.push_back(a);
                tables_[0]->append(a, durability(0));
            },
            [=, this](auto& rows) { put(rows, 2, b); },
            [=, this](auto& rows) { put(rows, 3, erased(rows[2])); },
            [=, this](auto& rows) {
                std::fill(rows.begin() + 4, rows.begin() + 12, c);
                tables_[0]->amend(
                    5, 8,
                    [&](const RecordView&, std::span<char> after) { std::ranges::copy(c, after.begin()); },
                    durability(0));
            },
            [this](auto&) { tables_[0]->rebuildTags(); }};
    }
    void put(std::vector<Bytes>& rows, RecordNumber number, const Bytes& row) {
        const Bytes before = std::exchange(rows[number - 1], row);
        tables_[0]->overwrite(number, before, row, durability(0));
    }

    /// Runs the script with workstation 0 switched off at a step; false when it reached its end. Then the
    /// other one goes on, or closes the table without reading and reopens it.
    bool runUntil(std::size_t lastStep, unsigned chance, Durability durability, bool comesAgain) {
        tables_ = {};
        stored_ = MemoryTable(beginning_.table, beginning_.index);
        rows_ = beginning_.rows;
        ofTheFirst_ = Durability::Disk;
        openBoth();
        append(0);
        overwrite(1, 30, rows_[29], anyRow());
        walk(0);
        ofTheFirst_ = durability;
        stations_[0]->steps = 0;
        stations_[0]->lastStep = lastStep;
        stations_[0]->chance.seed(chance);
        std::vector<Bytes> before = rows_;
        try {
            for (const Step& step : script()) {
                before = rows_;
                step(rows_);
                before = rows_;
            }
        } catch (const Error&) {
            EXPECT_TRUE(stations_[0]->isOff);
        }
        if (comesAgain) {
            open(1);
        }
        look(before);
        tables_[0].reset();
        return stations_[0]->isOff;
    }
    /// Checks, through the workstation that goes on, that the interrupted change happened wholly or not at
    /// all.
    void look(const std::vector<Bytes>& before) {
        std::vector<Bytes> found;
        const RecordNumber count = tables_[1]->read([&] { return tables_[1]->records().recordCount(); });
        for (RecordNumber number = 1; number <= count; ++number) {
            found.push_back(storedRecord(*tables_[1], number));
        }
        EXPECT_EQ(stored_.findings(), "");
        for (std::size_t i = 0; i < std::max(before.size(), rows_.size()); ++i) {
            const Bytes& old = i < before.size() ? before[i] : rows_[i];
            const bool mayBeMissing = i >= before.size() || i >= rows_.size();
            if (i >= found.size()) {
                EXPECT_TRUE(mayBeMissing) << "record " << i + 1;
            } else {
                EXPECT_TRUE(found[i] == old || found[i] == rows_[i]) << "record " << i + 1;
            }
        }
        rows_ = found;
        append(1);
        walk(1);
    }

    Beginning beginning_;
};

TEST_F(SwitchedOffStationTest, LeavesNoHalfChangeToTheOthers) {
    for (const Durability durability : {Durability::Process, Durability::Disk}) {
        for (unsigned chance = 0; chance < static_cast<unsigned>(ambrel::test::longForm(2, 60)); ++chance) {
            std::size_t step = 1;
            for (; runUntil(step, chance, durability, (step + chance) % 2 == 0); ++step) {
                ASSERT_FALSE(HasFailure()) << "step " << step << ", chance " << chance;
            }
            EXPECT_GT(step, 50U);
        }
    }
}

} // namespace
