// A medium whose n-th operation fails, for every n of a scripted run: no acknowledged change is lost,
// the fault is reported, and once it has passed the same process goes on.
#include <gtest/gtest.h>

#include "ScriptedRun.h"
#include "dbase/system/error.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// What fails, and how.
struct Fault {
    const char* name;
    std::size_t Faults::*failing;
    std::size_t Faults::*done;
    ErrorCode code;
    bool tears;
};

struct Plan {
    Fault fault;
    Durability durability;
};

void PrintTo(const Plan& plan, std::ostream* out) { *out << plan.fault.name; }

class NthFaultTest : public ::testing::TestWithParam<Plan> {
protected:
    static std::shared_ptr<Faults> faultAt(std::size_t number, bool lasts) {
        const Fault& fault = GetParam().fault;
        auto faults = std::make_shared<Faults>();
        (*faults).*fault.failing = number;
        faults->code = fault.code;
        faults->tearsWrite = fault.tears;
        faults->keepsFailing = lasts;
        return faults;
    }

    /// True when it succeeded; what it throws must be the fault of the medium.
    static bool goesThrough(const std::function<void()>& operation, bool mayMeetOthersChange = false) {
        try {
            operation();
            return true;
        } catch (const Error& error) {
            EXPECT_TRUE(error.code() == GetParam().fault.code ||
                        (mayMeetOthersChange && error.code() == ErrorCode::RecordChanged))
                << static_cast<int>(error.code()) << ": " << error.what();
            EXPECT_EQ(error.file().rfind("MEMORIA.", 0), 0U) << error.file();
            EXPECT_NE(std::string(error.what()).find("MEMORIA."), std::string::npos) << error.what();
            return false;
        }
    }

    static void run(const Step& step, Table& table, const Rows& now) {
        step.run(table, now, GetParam().durability);
    }

    /// The same process repeats every step that failed, and succeeds.
    static void runPastTheFault(const MemoryTable& stored, const std::shared_ptr<Faults>& faults,
                                PossibleRows& rows) {
        std::unique_ptr<Table> table;
        if (!goesThrough([&] { table = stored.open(faults); })) {
            ASSERT_NO_THROW(table = stored.open(faults)) << "although the fault had passed";
        }
        for (const Step& step : shortScript(table->schema())) {
            SCOPED_TRACE(step.name);
            const Rows before = rows.first();
            if (goesThrough([&] { run(step, *table, before); })) {
                rows.done(step);
                continue;
            }
            rows.doneOrNot(step);
            Rows found;
            ASSERT_NO_THROW(found = rowsOf(*table)) << "although the fault had passed";
            ASSERT_TRUE(rows.accept(found));
            if (found == before) {
                ASSERT_NO_THROW(run(step, *table, before)) << "although the fault had passed";
                rows.done(step);
            }
        }
    }

    /// Tries a few more steps: they fail as well, or are done.
    static void runIntoTheFault(const MemoryTable& stored, const std::shared_ptr<Faults>& faults,
                                PossibleRows& rows) {
        std::unique_ptr<Table> table;
        if (!goesThrough([&] { table = stored.open(faults); })) {
            return;
        }
        int failures = 0;
        for (const Step& step : shortScript(table->schema())) {
            SCOPED_TRACE(step.name);
            if (goesThrough([&] { run(step, *table, rows.first()); }, !rows.isCertain())) {
                rows.done(step);
            } else {
                rows.doneOrNot(step);
                if (++failures == 4) {
                    return;
                }
            }
        }
    }

    static void expectSound(const MemoryTable& stored, PossibleRows& rows) {
        {
            const auto table = stored.open();
            if (!rows.accept(rowsOf(*table))) {
                return;
            }
            for (const char* const tag : {"NOMBRE", "NUMDES"}) {
                EXPECT_EQ(order(*table, tag).size(), rows.first().size()) << tag;
            }
            EXPECT_EQ(table->append(scriptedRow(table->schema(), 999)), rows.first().size() + 1);
        }
        EXPECT_EQ(freshFindings(stored), "");
        EXPECT_EQ(stored.journal->content, nullptr) << "the last one to close leaves no journal";
    }

    using Run = void (*)(const MemoryTable&, const std::shared_ptr<Faults>&, PossibleRows&);

    /// Makes the first, second, ... operation fail, until a run ends before that one.
    static void failEverywhere(bool lasts, Run run) {
        const MemoryTable origin = scriptedTable();
        const Rows first = rowsOf(*origin.open());
        std::size_t number = 1;
        for (bool isOver = false; !isOver; ++number) {
            SCOPED_TRACE("number " + std::to_string(number));
            const MemoryTable stored(origin.records->bytes, origin.index->bytes);
            const auto faults = faultAt(number, lasts);
            PossibleRows rows(first);
            ASSERT_NO_THROW(run(stored, faults, rows));
            ASSERT_NO_THROW(expectSound(stored, rows));
            if (HasFailure()) {
                return;
            }
            isOver = (*faults).*GetParam().fault.done < number;
        }
        const std::size_t faults = number - 2; // the last run met no fault, and the count is one further
        EXPECT_GT(faults, 0U) << "nothing failed";
        RecordProperty("faults", static_cast<int>(faults));
    }
};

TEST_P(NthFaultTest, AFaultThatPassesIsReportedAndTheSameProcessGoesOn) {
    failEverywhere(false, runPastTheFault);
}

TEST_P(NthFaultTest, AFaultThatLastsLosesNothingThatWasAcknowledged) {
    failEverywhere(true, runIntoTheFault);
}

constexpr Fault noRead{"Read", &Faults::failingRead, &Faults::reads, ErrorCode::Io, false};
constexpr Fault noWrite{"Write", &Faults::failingWrite, &Faults::writes, ErrorCode::Io, false};
constexpr Fault noRoom{"NoRoom", &Faults::failingWrite, &Faults::writes, ErrorCode::DiskFull, false};
constexpr Fault tornWrite{"ShortWrite", &Faults::failingWrite, &Faults::writes, ErrorCode::Io, true};
constexpr Fault tornNoRoom{"ShortWriteNoRoom", &Faults::failingWrite, &Faults::writes, ErrorCode::DiskFull,
                           true};
constexpr Fault noSync{"Sync", &Faults::failingSync, &Faults::syncs, ErrorCode::Io, false};
constexpr Fault noRoomToSync{"SyncNoRoom", &Faults::failingSync, &Faults::syncs, ErrorCode::DiskFull, false};
constexpr Fault noJournal{"JournalStep", &Faults::failingJournalStep, &Faults::journalSteps, ErrorCode::Io,
                          false};
constexpr Fault noRoomForJournal{"JournalStepNoRoom", &Faults::failingJournalStep, &Faults::journalSteps,
                                 ErrorCode::DiskFull, false};

std::vector<Plan> plans() {
    std::vector<Plan> all;
    for (const Fault& fault : {noRead, noWrite, noRoom, tornWrite, tornNoRoom, noSync, noRoomToSync,
                               noJournal, noRoomForJournal}) {
        for (const Durability durability : {Durability::Process, Durability::Disk}) {
            all.push_back({fault, durability});
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Faults, NthFaultTest, ::testing::ValuesIn(plans()), [](const auto& test) {
    return std::string(test.param.fault.name) +
           (test.param.durability == Durability::Disk ? "ToDisk" : "ToProcess");
});

} // namespace
