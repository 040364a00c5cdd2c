// The power fails while programs that keep no journal add rows beside ours: every acknowledged row of ours is
// at its number, or, where another program has put its own row there since, once at the end of the table.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "RecordingDisk.h"
#include "ScriptedRun.h"
#include "dbase/dbf/table_layout.h"
#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "support/LongForm.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;

/// An acknowledged state of a record.
struct Post {
    RecordNumber number;
    Bytes row;
};

struct Recording {
    DiskImage origin;
    DiskLog log;
    std::vector<Post> posts;
};

class ForeignCuts : public ::testing::Test {
protected:
    ForeignCuts() {
        before_ = setNoticeHandler([this](const std::string&) { ++notices_; });
    }
    ~ForeignCuts() override {
        setBootIdentity(ownIdentity_);
        setNoticeHandler(before_);
    }

    /// Rows of ours and of another program, in turns drawn at random; each has a name of its own.
    static Recording record(unsigned seed) {
        setBootIdentity("the first start");
        std::mt19937 random(seed);
        const MemoryTable stored = scriptedTable();
        Recording run{DiskImage::of(stored), {}, {}};
        const auto log = std::make_shared<DiskLog>();
        {
            const auto table = openRecorded(stored, log);
            Rows rows = rowsOf(*table);
            for (int step = 1; step <= 25; ++step) {
                const Bytes row = scriptedRow(table->schema(), step);
                if (random() % 5 < 2) {
                    appendRecorded(stored, row, log);
                    rows.push_back(row);
                    continue;
                }
                RecordNumber number = 0;
                if (random() % 4 != 0) {
                    number = table->append(row, Durability::Disk);
                    rows.push_back(row);
                } else { // often one that the other program has just added
                    number = static_cast<RecordNumber>(rows.size() -
                                                       random() % std::min<std::size_t>(rows.size(), 6));
                    table->overwrite(number, rows[number - 1], row, Durability::Disk);
                    rows[number - 1] = row;
                }
                run.posts.push_back({number, row});
                log->push_back({DiskEvent::Kind::Acknowledge, DiskFile::Records, run.posts.size()});
            }
        }
        run.log = *log;
        return run;
    }

    /// Those of a table that also ends as it should.
    static Rows rowsWhenSound(const MemoryTable& stored) {
        Rows found = dbase::test::rowsWhenSound(stored, {"NOMBRE"});
        EXPECT_EQ(stored.records->bytes.back(), endMark);
        return found;
    }

    using Expected = std::map<RecordNumber, Bytes>;
    static Expected expectedOf(const Recording& run, std::size_t acknowledged) {
        Expected expected;
        for (std::size_t i = 0; i < acknowledged; ++i) {
            expected[run.posts[i].number] = run.posts[i].row;
        }
        if (acknowledged < run.posts.size()) { // in flight: either state
            expected.erase(run.posts[acknowledged].number);
        }
        return expected;
    }
    static void expectInPlace(const Expected& expected, const Rows& found) {
        for (const auto& [number, row] : expected) {
            EXPECT_TRUE(number <= found.size() && found[number - 1] == row)
                << "record " << number << " of " << found.size() << " should be \""
                << std::string(row.begin(), row.end()) << '"';
        }
    }
    static void expectOnce(const Expected& expected, const Rows& found) {
        for (const auto& [number, row] : expected) {
            EXPECT_EQ(std::ranges::count(found, row), 1)
                << "record " << number << ", \"" << std::string(row.begin(), row.end()) << '"';
        }
    }

    int notices_ = 0;

private:
    std::string ownIdentity_ = bootIdentity();
    NoticeHandler before_;
};

TEST_F(ForeignCuts, EveryRowOfOursReturnsToItsNumber) {
    for (int seed = 1; seed <= longForm(6, 400); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Recording run = record(static_cast<unsigned>(seed));
        setBootIdentity("the second start");
        std::mt19937 random(static_cast<unsigned>(seed));
        CachingDisk disk(run.origin);
        std::size_t acknowledged = 0;
        for (std::size_t i = 0; i < run.log.size(); ++i) {
            SCOPED_TRACE("event " + std::to_string(i) + ", post " + std::to_string(acknowledged + 1));
            disk.apply(run.log[i]);
            if (run.log[i].kind == DiskEvent::Kind::Acknowledge) {
                acknowledged = static_cast<std::size_t>(run.log[i].offset);
            }
            if (acknowledged == 0) {
                continue; // before there is a journal, the other program is by itself
            }
            expectInPlace(expectedOf(run, acknowledged), rowsWhenSound(disk.survivor(random).asTable()));
            ASSERT_FALSE(HasFailure());
        }
    }
    EXPECT_EQ(notices_, 0) << "nothing was lost";
}

/// The other program is the first to use the table after the restart; the recovery is cut as well.
TEST_F(ForeignCuts, ARowOfOursInWhosePlaceAnotherWasPutIsAddedOnce) {
    for (int seed = 1; seed <= longForm(3, 100); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Recording run = record(static_cast<unsigned>(seed));
        std::mt19937 random(static_cast<unsigned>(seed));
        CachingDisk disk(run.origin);
        std::size_t acknowledged = 0;
        for (std::size_t i = 0; i < run.log.size(); ++i) {
            disk.apply(run.log[i]);
            if (run.log[i].kind == DiskEvent::Kind::Acknowledge) {
                acknowledged = static_cast<std::size_t>(run.log[i].offset);
            }
            if (acknowledged == 0 || i % static_cast<std::size_t>(longForm(7, 3)) != 0) {
                continue;
            }
            SCOPED_TRACE("event " + std::to_string(i) + ", post " + std::to_string(acknowledged + 1));
            const MemoryTable stored = disk.survivor(random).asTable();
            const Schema schema = TableFile(std::make_unique<MemoryFile>(stored.records)).schema();
            for (int more = 0; more < static_cast<int>(random() % 4); ++more) {
                appendRecorded(stored, scriptedRow(schema, 100 + more), std::make_shared<DiskLog>());
            }
            const DiskImage found = DiskImage::of(stored);
            setBootIdentity("the second start");
            const auto recovery = std::make_shared<DiskLog>();
            openRecorded(stored, recovery).reset();
            expectOnce(expectedOf(run, acknowledged), rowsWhenSound(stored));
            setBootIdentity("the third start");
            CachingDisk second(found);
            for (const DiskEvent& event : *recovery) {
                second.apply(event);
                if (random() % 8 == 0) {
                    expectOnce(expectedOf(run, acknowledged),
                               rowsWhenSound(second.survivor(random).asTable()));
                }
            }
            ASSERT_FALSE(HasFailure());
        }
    }
}

} // namespace
