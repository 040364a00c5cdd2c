// A medium that fails at every place of every operation: afterwards the table is sound, with the old or the
// new record.
#include <gtest/gtest.h>

#include <algorithm>

#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/table.h"
#include "dbase/table/write_scope.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// How the failing write fails.
struct Failure {
    const char* name;
    bool keepsFailing, tearsWrite;
};

class FaultTest : public ::testing::TestWithParam<Failure> {
protected:
    static constexpr RecordNumber rows = 40;

    /// Four keys per block in the widest tag: a change of one record touches several levels and splits or
    /// empties leaves.
    static MemoryTable sample() {
        MemoryTable stored(
            {.name = "FALLOS",
             .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}, {"NUM", ColumnType::Numeric, 6, 0, 0}},
             .tags = {{.name = "NOMBRE", .expression = "NOMBRE"},
                      {.name = "NUMDES", .expression = "NUM", .descending = true},
                      {.name = "SOLO", .expression = "LEFT(NOMBRE,2)", .unique = true}}},
            1);
        const auto table = stored.open();
        for (RecordNumber i = 0; i < rows; ++i) {
            table->append(record(*table, static_cast<int>(i * 37 % rows)));
        }
        return stored;
    }
    static Bytes record(const Table& table, int number) {
        return makeRecord(table.schema(), {"CALLE " + std::to_string(number + 100), std::to_string(number)});
    }

    [[nodiscard]] static std::shared_ptr<Faults> faultsAt(std::size_t write) {
        auto faults = std::make_shared<Faults>();
        faults->failingWrite = write;
        faults->keepsFailing = GetParam().keepsFailing;
        faults->tearsWrite = GetParam().tearsWrite;
        return faults;
    }

    using Operation = std::function<void(Table&)>;
    using Judge = std::function<void(Table&, bool succeeded)>;

    /// Runs the operation on a fresh copy of the sample with its first, second, … write failing, until there
    /// is no further write.
    static void failEverywhere(const Operation& operation, const Judge& judge) {
        const MemoryTable origin = sample();
        for (std::size_t write = 1; write < 400; ++write) {
            SCOPED_TRACE("write " + std::to_string(write));
            const MemoryTable stored(origin.records->bytes, origin.index->bytes);
            const auto faults = faultsAt(write);
            bool succeeded = true;
            {
                const auto table = stored.open(faults);
                try {
                    operation(*table);
                } catch (const Error& error) {
                    EXPECT_EQ(error.code(), ErrorCode::Io);
                    succeeded = false;
                }
            }
            const auto reopened = stored.open();
            judge(*reopened, succeeded);
            EXPECT_EQ(stored.findings(), "");
            if (faults->writes < write) {
                EXPECT_TRUE(succeeded);
                EXPECT_GT(write, 1U) << "nothing was written, and nothing failed";
                return;
            }
            if (HasFailure()) {
                return;
            }
        }
        FAIL() << "the operation never came to its end";
    }
};

TEST_P(FaultTest, AppendIsWholeOrNotThere) {
    failEverywhere([](Table& table) { table.append(record(table, 500)); },
                   [](Table& table, bool succeeded) {
                       const RecordNumber count = table.records().recordCount();
                       EXPECT_TRUE(count == rows || count == rows + 1);
                       EXPECT_TRUE(count == rows + 1 || !succeeded);
                       EXPECT_TRUE(count == rows || succeeded || GetParam().keepsFailing)
                           << "an error, and yet it is there";
                       if (count > rows) {
                           EXPECT_EQ(storedRecord(table, rows + 1), record(table, 500));
                       }
                   });
}

TEST_P(FaultTest, OverwriteLeavesTheOldOrTheNewRecord) {
    failEverywhere([](Table& table) { table.overwrite(7, storedRecord(table, 7), record(table, 500)); },
                   [](Table& table, bool succeeded) {
                       const Bytes stored = storedRecord(table, 7);
                       const bool isOld = stored == record(table, 6 * 37 % rows),
                                  isNew = stored == record(table, 500);
                       EXPECT_TRUE(isNew || !succeeded);
                       EXPECT_TRUE(isOld || succeeded || GetParam().keepsFailing)
                           << "an error, and yet it is there";
                       EXPECT_TRUE(isOld || isNew);
                   });
}

TEST_P(FaultTest, AmendLeavesTheOldOrTheNewOfEachRecord) {
    failEverywhere(
        [](Table& table) {
            static_cast<void>(table.amend(5, 4, [&](const RecordView& before, std::span<char> after) {
                const int number = 500 + static_cast<int>(before.number);
                std::ranges::copy(record(table, before.number == 6 ? 5 * 37 % rows : number), after.begin());
            }));
        },
        [](Table& table, bool succeeded) {
            for (const int number : {5, 7, 8}) {
                const Bytes stored = storedRecord(table, static_cast<RecordNumber>(number));
                const bool isNew = stored == record(table, 500 + number);
                const bool isOld = stored == record(table, (number - 1) * 37 % static_cast<int>(rows));
                EXPECT_TRUE(isNew || !succeeded);
                EXPECT_TRUE(isOld || isNew);
            }
        });
}

TEST_P(FaultTest, EraseIsWholeOrNotThere) {
    failEverywhere([](Table& table) { table.erase(7, storedRecord(table, 7)); },
                   [](Table& table, bool succeeded) {
                       const Bytes stored = storedRecord(table, 7);
                       EXPECT_TRUE(stored[0] == '*' || !succeeded);
                       EXPECT_EQ(Bytes(stored.begin() + 1, stored.end()), [&] {
                           const Bytes old = record(table, 6 * 37 % rows);
                           return Bytes(old.begin() + 1, old.end());
                       }());
                   });
}

TEST_P(FaultTest, RebuildIsBegunAgainByTheNextOne) {
    failEverywhere([](Table& table) { table.rebuildTags(); },
                   [](Table& table, bool) { EXPECT_EQ(table.records().recordCount(), rows); });
}

class PassingFaultTest : public FaultTest {};

TEST_P(PassingFaultTest, TheSameTableGoesOn) {
    const MemoryTable origin = sample();
    for (std::size_t write = 1; write < 60; ++write) {
        const MemoryTable stored(origin.records->bytes, origin.index->bytes);
        const auto table = stored.open(faultsAt(write));
        try {
            table->append(record(*table, 500));
            EXPECT_GT(write, 1U) << "nothing failed";
            return; // it needs fewer writes
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::Io);
        }
        const RecordNumber count = table->records().recordCount();
        table->append(record(*table, 501));
        table->overwrite(3, storedRecord(*table, 3), record(*table, 502));
        EXPECT_EQ(table->records().recordCount(), count + 1) << write;
        EXPECT_EQ(order(*table, "NOMBRE").size(), count + 1) << write;
        ASSERT_EQ(stored.findings(), "") << write;
    }
    FAIL() << "the operation never came to its end";
}

INSTANTIATE_TEST_SUITE_P(Failures, FaultTest,
                         ::testing::Values(Failure{"Once", false, false}, Failure{"ForGood", true, false},
                                           Failure{"OnceTorn", false, true},
                                           Failure{"ForGoodTorn", true, true}),
                         [](const auto& test) { return std::string(test.param.name); });
INSTANTIATE_TEST_SUITE_P(Failures, PassingFaultTest,
                         ::testing::Values(Failure{"Once", false, false}, Failure{"OnceTorn", false, true}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(NoRoomTest, AppendLeavesTheTableAsItWas) {
    MemoryTable stored({.name = "LLENO",
                        .columns = {{"NOMBRE", ColumnType::Character, 100, 0, 0}},
                        .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
    const auto faults = std::make_shared<Faults>();
    const auto table = stored.open(faults);
    for (int i = 0; i < 9; ++i) { // the next one splits the only leaf
        table->append(makeRecord(table->schema(), {"A" + std::to_string(i)}));
    }
    for (const std::uint64_t room : {stored.records->bytes.size(), stored.index->bytes.size()}) {
        faults->largestSize = room;
        const Bytes records = stored.records->bytes;
        const std::vector<RecordNumber> before = order(*table, "NOMBRE");
        const Error error = errorOf([&] { table->append(makeRecord(table->schema(), {"B"})); });
        EXPECT_EQ(error.code(), ErrorCode::DiskFull);
        EXPECT_EQ(stored.records->bytes, records);
        EXPECT_EQ(order(*table, "NOMBRE"), before);
        EXPECT_EQ(stored.findings(), "");
        faults->largestSize = std::numeric_limits<std::uint64_t>::max();
    }
    table->append(makeRecord(table->schema(), {"B"}));
    EXPECT_EQ(stored.findings(), "");
}

TEST(ReadFaultTest, IsReportedAndChangesNothing) {
    MemoryTable stored({.name = "LECTURA",
                        .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}},
                        .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}});
    {
        const auto table = stored.open();
        for (int i = 0; i < 100; ++i) {
            table->append(makeRecord(table->schema(), {std::to_string(i)}));
        }
    }
    const Bytes records = stored.records->bytes, index = stored.index->bytes;
    std::size_t read = 0;
    for (bool failed = true; failed;) {
        const auto faults = std::make_shared<Faults>();
        faults->failingRead = ++read;
        ASSERT_LT(read, 200U) << "the work never came to its end";
        failed = false;
        try {
            const auto table = stored.open(faults);
            EXPECT_EQ(order(*table, "NOMBRE").size(), 100U);
            table->overwrite(5, storedRecord(*table, 5), storedRecord(*table, 5));
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), ErrorCode::Io);
            failed = true;
        }
        EXPECT_EQ(stored.records->bytes, records) << read;
    }
    EXPECT_GT(read, 1U) << "nothing failed";
    EXPECT_EQ(stored.findings(), "");
}

class DurabilityTest : public ::testing::Test {
protected:
    static Bytes row(const Table& table, const char* name) { return makeRecord(table.schema(), {name}); }

    MemoryTable stored{{.name = "SYNC",
                        .columns = {{"NOMBRE", ColumnType::Character, 20, 0, 0}},
                        .tags = {{.name = "NOMBRE", .expression = "NOMBRE"}}}};
    std::shared_ptr<Faults> faults = std::make_shared<Faults>();
    std::unique_ptr<Table> table = stored.open(faults);
};

TEST_F(DurabilityTest, OnlyTheFirstChangeOfASessionWaitsForTheDisk) {
    table->append(row(*table, "UNO"));
    EXPECT_GT(faults->syncs, 0U);
    const std::size_t first = faults->syncs;
    table->append(row(*table, "DOS"));
    EXPECT_EQ(faults->syncs, first);
}

TEST_F(DurabilityTest, WithTheDiskEachChangeWaitsOnce) {
    table->append(row(*table, "UNO"), Durability::Disk);
    const auto waitsFor = [&](const std::function<void()>& change) {
        const std::size_t before = faults->syncs;
        change();
        return faults->syncs - before;
    };
    const Bytes two = row(*table, "DOS"), three = row(*table, "TRES"), four = row(*table, "CUATRO");
    EXPECT_EQ(waitsFor([&] { table->append(two, Durability::Disk); }), 1U);
    EXPECT_EQ(waitsFor([&] { table->overwrite(2, two, three, Durability::Disk); }), 1U);
    EXPECT_EQ(waitsFor([&] {
                  const auto rename = [&](const RecordView&, std::span<char> after) {
                      std::ranges::copy(four, after.begin());
                  };
                  static_cast<void>(table->amend(1, 2, rename, Durability::Disk));
              }),
              1U);
    EXPECT_EQ(waitsFor([&] { table->erase(1, four, Durability::Disk); }), 1U);
}

TEST_F(DurabilityTest, AChangeThatWaitedLeavesNoWaitToTheNextOnes) {
    table->append(row(*table, "UNO"), Durability::Disk);
    table->append(row(*table, "DOS")); // the engine first puts the journal's entry in its place
    const std::size_t before = faults->syncs;
    table->append(row(*table, "TRES"));
    table->overwrite(1, row(*table, "UNO"), row(*table, "UNA"));
    table->erase(2, row(*table, "DOS"));
    EXPECT_EQ(faults->syncs, before);
}

TEST_F(DurabilityTest, ChangesStoredTogetherWaitForTheDiskIfOneOfThemDoes) {
    table->append(row(*table, "UNO"));
    const auto waitsFor = [&](Durability one, Durability other) {
        const std::size_t before = faults->syncs;
        WriteScope scope(*table, WriteScope::Writing::Together);
        table->append(row(*table, "DOS"), one);
        table->append(row(*table, "TRES"), other);
        scope.commit();
        return faults->syncs - before;
    };
    EXPECT_EQ(waitsFor(Durability::Process, Durability::Process), 0U);
    EXPECT_GE(waitsFor(Durability::Disk, Durability::Process), 1U);
    EXPECT_GE(waitsFor(Durability::Process, Durability::Disk), 1U);
}

TEST_F(DurabilityTest, AChangeWhoseSyncFailsIsNotThere) {
    table->append(row(*table, "UNO"), Durability::Disk);
    faults->failingSync = faults->syncs + 1;
    EXPECT_EQ(errorOf([&] { table->append(row(*table, "DOS"), Durability::Disk); }).code(), ErrorCode::Io);
    EXPECT_EQ(order(*table, "NOMBRE").size(), 1U);
    table->append(row(*table, "TRES"), Durability::Disk);
    EXPECT_EQ(order(*table, "NOMBRE").size(), 2U);
    EXPECT_EQ(stored.findings(), "");
}

TEST_F(DurabilityTest, ManyChangesCanBeSyncedAtOnce) {
    table->append(row(*table, "UNO"));
    table->append(row(*table, "DOS"));
    const std::size_t before = faults->syncs;
    table->sync();
    EXPECT_EQ(faults->syncs, before + 1);
    faults->failingSync = faults->syncs + 1;
    EXPECT_EQ(errorOf([&] { table->sync(); }).code(), ErrorCode::Io);
    EXPECT_EQ(order(*table, "NOMBRE").size(), 2U);
    EXPECT_EQ(stored.findings(), "");
}

} // namespace
