// The power fails at every place of a scripted run, and the process dies there: whatever is on the disk then,
// the next program to open the table recovers it, and every acknowledged post is in it.
#include <gtest/gtest.h>

#include <algorithm>

#include "RecordingDisk.h"
#include "ScriptedRun.h"
#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "support/LongForm.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using Kind = DiskEvent::Kind;

/// Steps done on a recording disk, and the rows before the first and after each of them.
struct Recorded {
    DiskImage origin;
    DiskLog log;
    std::vector<Rows> states;
    std::vector<bool> syncs;  // whether everything is on the disk after each step
    std::vector<bool> toDisk; // whether the step itself is
};

/// The number of acknowledged steps, and of those that a sync() has put on the disk.
struct Moment {
    std::size_t acknowledged = 0, synced = 0;
};

/// The durability of a run's changes; Mixed draws it for each.
enum class Keeping { Process, Disk, Mixed };

class Cuts : public ::testing::Test {
protected:
    Cuts() { setBootIdentity("the first start"); }
    ~Cuts() override { setBootIdentity(ownIdentity_); }

    using Script = std::function<std::vector<Step>(const Schema&)>;

    static Recorded record(Keeping keeping, const Script& script) {
        const MemoryTable stored = scriptedTable();
        Recorded recorded{DiskImage::of(stored), {}, {}, {}, {}};
        std::mt19937 random(7);
        const auto log = std::make_shared<DiskLog>();
        {
            const auto table = openRecorded(stored, log);
            recorded.states.push_back(rowsOf(*table));
            for (const Step& step : script(table->schema())) {
                const bool toDisk =
                    keeping == Keeping::Disk || (keeping == Keeping::Mixed && random() % 2 == 0);
                step.run(*table, recorded.states.back(), toDisk ? Durability::Disk : Durability::Process);
                recorded.states.push_back(step.effect(recorded.states.back()));
                recorded.syncs.push_back(step.syncs);
                recorded.toDisk.push_back(toDisk);
                log->push_back({Kind::Acknowledge, DiskFile::Records, recorded.states.size() - 1});
            }
            EXPECT_EQ(difference(recorded.states.back(), rowsOf(*table)), "");
        }
        EXPECT_FALSE(log->empty()) << "nothing to be cut";
        recorded.log = *log;
        return recorded;
    }
    static Script shortOne() { return shortScript; }
    static Script randomOne(unsigned seed, int steps) {
        return [=](const Schema& schema) { return randomScript(schema, seed, steps); };
    }

    static void follow(Moment& moment, const Recorded& run, const DiskEvent& event) {
        if (event.kind == Kind::Acknowledge) {
            moment.acknowledged = static_cast<std::size_t>(event.offset);
            if (run.syncs[moment.acknowledged - 1]) {
                moment.synced = moment.acknowledged;
            }
        }
    }

    /// The ways in which a write may arrive in parts: only its first sectors, or all but one.
    static std::vector<std::vector<bool>> tears(std::size_t sectors, std::mt19937& random) {
        std::vector<std::vector<bool>> all;
        if (sectors < 2) {
            return all;
        }
        const auto isTried = [&] { return sectors <= 8 || random() % sectors < 3; }; // some of a long write
        for (std::size_t arrived = 1; arrived < sectors; ++arrived) {
            if (isTried()) {
                std::fill_n(all.emplace_back(sectors, false).begin(), arrived, true);
            }
        }
        for (std::size_t lost = 0; lost + 1 < sectors; ++lost) { // the loss of the last is among the above
            if (isTried()) {
                all.emplace_back(sectors, true)[lost] = false;
            }
        }
        return all;
    }

    /// Calls `judge` with every image that a cut of an orderly disk can leave, and with what was acknowledged
    /// by then.
    static void cutEverywhere(const Recorded& run,
                              const std::function<void(const DiskImage&, const Moment&)>& judge) {
        std::mt19937 random(20240229);
        DiskImage image = run.origin;
        Moment moment;
        judge(image, moment);
        for (std::size_t i = 0; i < run.log.size(); ++i) {
            const DiskEvent& event = run.log[i];
            SCOPED_TRACE("event " + std::to_string(i) + ", step " + std::to_string(moment.acknowledged + 1));
            if (event.kind == Kind::Write) {
                for (const std::vector<bool>& tear : tears(sectorsOf(event), random)) {
                    DiskImage torn = image;
                    torn.applyTorn(event, tear);
                    SCOPED_TRACE("torn " + ::testing::PrintToString(tear));
                    judge(torn, moment);
                    if (HasFailure()) {
                        return;
                    }
                }
            }
            image.apply(event);
            follow(moment, run, event);
            if (event.kind != Kind::Sync) {
                judge(image, moment);
            }
            if (HasFailure()) {
                return;
            }
        }
    }

    static Rows rowsWhenSound(const DiskImage& image) {
        return dbase::test::rowsWhenSound(image.asTable(), {"NOMBRE", "NUMDES"});
    }

    static void expectAcknowledged(const DiskImage& image, const Recorded& run, const Moment& moment) {
        const Rows found = rowsWhenSound(image);
        const bool isNext = moment.acknowledged + 1 < run.states.size();
        const std::string now = difference(run.states[moment.acknowledged], found);
        const std::string next = isNext ? difference(run.states[moment.acknowledged + 1], found) : now;
        EXPECT_TRUE(now.empty() || next.empty()) << now << "; " << next;
    }

    /// Everything that a sync() or a post to the disk has put there is there; a record changed since consists
    /// of its states since then. A row added since, for which nobody has waited, may be missing, a deleted
    /// blank one, or torn, with blank sectors (docs/reliability.md, what is not promised).
    static void expectKept(const DiskImage& image, const Recorded& run, const Moment& moment) {
        const Rows found = rowsWhenSound(image);
        const std::size_t last = std::min(moment.acknowledged + 1, run.states.size() - 1);
        for (std::size_t i = 0; i < run.states[last].size() && !HasFailure(); ++i) {
            const std::size_t kept = keptState(run, moment, i);
            const std::span<const Rows> states(run.states.data() + kept, last - kept + 1);
            if (i < found.size()) {
                expectKnownShares(found[i], i, states);
            } else {
                EXPECT_LE(states.front().size(), i) << "a row was lost that was on the disk";
            }
        }
        EXPECT_LE(found.size(), run.states[last].size());
    }

    /// Everything that recovering an image does to the disk, during the second boot.
    static DiskLog recoveryOf(const DiskImage& image) {
        setBootIdentity("the second start");
        const auto log = std::make_shared<DiskLog>();
        const MemoryTable stored = image.asTable();
        openRecorded(stored, log).reset();
        return *log;
    }

    static Recorded recordCreation() {
        const MemoryTable stored(Bytes{}, Bytes{});
        Recorded recorded{DiskImage::of(stored), {}, {}, {}, {}};
        const auto log = std::make_shared<DiskLog>();
        createRecorded(stored, scriptedDefinition(), log);
        recorded.log = *log;
        return recorded;
    }

private:
    static constexpr std::size_t headerLength = 97, recordLength = 107; // of the scripted table

    /// The state up to which all changes of a record are on the disk.
    static std::size_t keptState(const Recorded& run, const Moment& moment, std::size_t record) {
        const auto rowAt = [&](std::size_t state) {
            return record < run.states[state].size() ? run.states[state][record] : Bytes();
        };
        for (std::size_t state = moment.acknowledged; state > moment.synced; --state) {
            if (run.toDisk[state - 1] && rowAt(state) != rowAt(state - 1)) {
                return state;
            }
        }
        return moment.synced;
    }

    static void expectKnownShares(const Bytes& found, std::size_t record, std::span<const Rows> states) {
        Bytes blank(found.size(), ' ');
        blank[0] = '*';
        const bool isNew = record >= states.front().size();
        if (isNew && found == blank) {
            return;
        }
        ASSERT_EQ(found.size(), recordLength);
        const std::size_t offset = headerLength + record * recordLength;
        for (std::size_t at = 0; at < found.size();) {
            const std::size_t size = std::min(found.size() - at, sectorBytes - (offset + at) % sectorBytes);
            const auto isShareOf = [&](const Bytes& state) {
                return std::equal(found.begin() + static_cast<std::ptrdiff_t>(at),
                                  found.begin() + static_cast<std::ptrdiff_t>(at + size),
                                  state.begin() + static_cast<std::ptrdiff_t>(at));
            };
            const bool isKnown = std::ranges::any_of(
                states, [&](const Rows& state) { return record < state.size() && isShareOf(state[record]); });
            // A recovery that was cut may have blanked one sector of a row of which others have arrived.
            EXPECT_TRUE(isKnown || (isNew && (isShareOf(Bytes(found.size(), '\0')) || isShareOf(blank))))
                << "record " << record + 1 << " holds what was never written: \""
                << std::string(found.begin(), found.end()) << '"';
            at += size;
        }
    }

    std::string ownIdentity_ = bootIdentity();
};

using Judge = void (*)(const DiskImage&, const Recorded&, const Moment&);

/// One of the runs, and the durability of its changes.
class CutRuns : public Cuts, public ::testing::WithParamInterface<Keeping> {
protected:
    static Recorded run() { return record(GetParam(), shortScript); }
    /// What a power failure must leave.
    static Judge judge() { return GetParam() == Keeping::Disk ? expectAcknowledged : expectKept; }

    static void cutEverywhere(const Recorded& recorded, Judge judge) {
        Cuts::cutEverywhere(
            recorded, [&](const DiskImage& image, const Moment& moment) { judge(image, recorded, moment); });
    }
};

TEST_P(CutRuns, AProcessThatDiesAnywhereLosesNothing) { cutEverywhere(run(), expectAcknowledged); }

TEST_P(CutRuns, AProcessThatDiesAnywhereInARandomRunLosesNothing) {
    for (int seed = 1; seed <= longForm(1, 40); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        cutEverywhere(record(GetParam(), randomOne(static_cast<unsigned>(seed), 25)), expectAcknowledged);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(CutRuns, ADiskThatKeepsTheOrderLosesNothing) {
    const Recorded recorded = run();
    setBootIdentity("the second start");
    cutEverywhere(recorded, judge());
}

/// The disk has a cache, and a power failure loses what was not synced.
TEST_P(CutRuns, ADiskThatLosesWhatWasNotSyncedLosesNoPost) {
    for (int seed = 1; seed <= longForm(6, 400); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(static_cast<unsigned>(seed));
        setBootIdentity("the first start");
        const Recorded recorded =
            record(GetParam(), seed == 1 ? shortOne() : randomOne(static_cast<unsigned>(seed), 30));
        setBootIdentity("the second start");
        CachingDisk disk(recorded.origin);
        Moment moment;
        for (std::size_t i = 0; i < recorded.log.size(); ++i) {
            SCOPED_TRACE("event " + std::to_string(i) + ", step " + std::to_string(moment.acknowledged + 1));
            disk.apply(recorded.log[i]);
            follow(moment, recorded, recorded.log[i]);
            judge()(disk.survivor(random), recorded, moment);
            ASSERT_FALSE(HasFailure());
        }
    }
}

/// The recovery is cut as well, by another power failure.
TEST_P(CutRuns, ARecoveryThatIsCutIsBegunAgain) {
    const Recorded recorded = run();
    std::mt19937 random(4);
    CachingDisk disk(recorded.origin);
    Moment moment;
    for (std::size_t i = 0; i < recorded.log.size(); ++i) {
        disk.apply(recorded.log[i]);
        follow(moment, recorded, recorded.log[i]);
        if (i % static_cast<std::size_t>(longForm(11, 3)) != 0) {
            continue;
        }
        SCOPED_TRACE("first cut after event " + std::to_string(i));
        const DiskImage found = disk.survivor(random);
        const DiskLog recovery = recoveryOf(found);
        setBootIdentity("the third start");
        CachingDisk second(found);
        DiskImage orderly = found;
        for (std::size_t j = 0; j < recovery.size(); ++j) {
            SCOPED_TRACE("second cut after event " + std::to_string(j));
            second.apply(recovery[j]);
            orderly.apply(recovery[j]);
            judge()(orderly, recorded, moment);
            judge()(second.survivor(random), recorded, moment);
            ASSERT_FALSE(HasFailure());
        }
    }
}

std::string nameOf(Keeping keeping) {
    return keeping == Keeping::Disk ? "Disk" : keeping == Keeping::Process ? "Process" : "Mixed";
}

INSTANTIATE_TEST_SUITE_P(Keepings, CutRuns,
                         ::testing::Values(Keeping::Process, Keeping::Disk, Keeping::Mixed),
                         [](const auto& test) { return nameOf(test.param); });

// --- Before the table exists

TEST_F(Cuts, ATableThatIsBeingMadeOpensOrIsRefused) {
    const Recorded creation = recordCreation();
    setBootIdentity("the second start");
    std::mt19937 random(5);
    int opened = 0;
    Cuts::cutEverywhere(creation, [&](const DiskImage& image, const Moment&) {
        const MemoryTable stored = image.asTable();
        try {
            const auto table = stored.open();
            EXPECT_EQ(table->records().recordCount(), 0U);
            ++opened;
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()).find("MEMORIA."), std::string::npos) << error.what();
        }
    });
    EXPECT_GT(opened, 0);
}

} // namespace
