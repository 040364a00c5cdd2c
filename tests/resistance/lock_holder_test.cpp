// One process holds a lock and dies, or holds it and stays: the others go on, or get an error, and none
// waits for ever.
#include <algorithm>
#include <csignal>
#include <memory>

#include <sched.h>

#include "RandomPosts.h"
#include "StreetFolder.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"

namespace {

using namespace resistance;
using dbase::ErrorCode;

class LockHolder : public StreetFolder, public ::testing::WithParamInterface<int> {
protected:
    using HoldLock = void (*)(dbase::Table&, const ChildProcess::Link&);
    using OthersWork = std::function<void(dbase::Table&, int, const ChildProcess::Link&)>;

    LockHolder() {
        const auto table = dbase::Table::open(tableFile());
        for (std::uint32_t serial = 0; serial < 50; ++serial) {
            table->append(streetRecord(table->schema(), {.serial = serial}));
        }
    }

    /// A process that takes locks and then does nothing until it gets a message, or is killed.
    std::unique_ptr<ChildProcess> hold(HoldLock holding) {
        return std::make_unique<ChildProcess>(telling([this, holding](const ChildProcess::Link& link) {
            const auto table = dbase::Table::open(tableFile());
            link.await(); // the others have it open, too
            holding(*table, link);
            return 0;
        }));
    }
    static void keep(const ChildProcess::Link& link) {
        link.tell();
        link.await();
    }
    static void holdStructure(dbase::Table& table, const ChildProcess::Link& link) {
        const dbase::FileLock lock(table.index()->file(), dbase::structureLock, dbase::LockKind::Exclusive);
        keep(link);
    }
    static void holdAppending(dbase::Table& table, const ChildProcess::Link& link) {
        const dbase::FileLock lock(table.records().file(), dbase::appendLock, dbase::LockKind::Exclusive);
        keep(link);
    }
    static void holdStructureInAChange(dbase::Table& table, const ChildProcess::Link& link) {
        const dbase::FileLock lock(table.index()->file(), dbase::structureLock, dbase::LockKind::Exclusive);
        dbase::UpdateStamp stamp = table.index()->stamp();
        stamp.inUpdate = true;
        ++stamp.counter;
        table.index()->file().write(dbase::mdx::stamp, dbase::encodeStamp(stamp));
        keep(link);
    }
    static void holdFirstRecord(dbase::Table& table, const ChildProcess::Link& link) {
        if (!table.tryLockRecord(1, &table)) {
            throw std::runtime_error("somebody holds the record");
        }
        keep(link);
    }

    /// Starts the others, which open the table, wait for a message, and then work.
    void startOthers(const OthersWork& work) {
        for (int i = 0; i < GetParam(); ++i) {
            others_.push_back(std::make_unique<ChildProcess>(telling([&, i](const ChildProcess::Link& link) {
                const auto table = dbase::Table::open(tableFile());
                keep(link);
                work(*table, i, link);
                return 0;
            })));
            others_.back()->await();
        }
    }
    void tellOthers() {
        for (const auto& other : others_) {
            other->tell();
        }
    }
    void awaitOthers() {
        for (const auto& other : others_) {
            other->await();
        }
    }
    void expectThatOthersFinish() {
        for (const auto& other : others_) {
            EXPECT_EQ(other->join(), 0);
        }
        others_.clear();
    }
    static void appendOne(dbase::Table& table, int i) {
        table.append(streetRecord(table.schema(), {.serial = 1000 + static_cast<std::uint32_t>(i)}));
    }
    void expectRows(std::size_t count) const {
        EXPECT_EQ(dbase::Table::open(tableFile())->records().recordCount(), count);
        expectSound();
    }

    /// All others report that they are at work before the lock's holder dies; then all of them finish.
    void killWhileOthersWork(HoldLock holding, const OthersWork& work) {
        const auto holder = hold(holding);
        startOthers(work);
        holder->tell();
        holder->await();
        tellOthers();
        awaitOthers();
        holder->kill();
        EXPECT_EQ(holder->join(), -SIGKILL);
        expectThatOthersFinish();
    }
    /// All others want to append while the lock is held, and do so once its holder is dead.
    void killWhileOthersAppend(HoldLock holding) {
        killWhileOthersWork(holding, [](dbase::Table& table, int i, const ChildProcess::Link& link) {
            link.tell();
            appendOne(table, i);
        });
        expectRows(50 + static_cast<std::size_t>(GetParam()));
    }
    /// All others get an error within their patience; when the holder releases the lock, they append.
    void refuseWhileOneStays(HoldLock holding, const std::function<void(dbase::Table&, int)>& attempt) {
        const auto holder = hold(holding);
        startOthers([&](dbase::Table& table, int i, const ChildProcess::Link& link) {
            dbase::setLockPatience(std::chrono::milliseconds(5));
            attempt(table, i);
            keep(link);
            dbase::setLockPatience(std::chrono::minutes(2));
            appendOne(table, i);
        });
        holder->tell();
        holder->await();
        tellOthers();
        awaitOthers();
        holder->tell();
        EXPECT_EQ(holder->join(), 0);
        tellOthers();
        expectThatOthersFinish();
        expectRows(50 + static_cast<std::size_t>(GetParam()));
    }
    /// Runs in a child, whose failures reach the parent only as exceptions.
    static void expectRefusal(ErrorCode code, const std::vector<std::string>& files,
                              const std::function<void()>& operation) {
        try {
            operation();
        } catch (const dbase::Error& error) {
            if (error.code() != code || std::ranges::find(files, error.file()) == files.end()) {
                throw;
            }
            return;
        }
        throw std::runtime_error("not refused");
    }

    std::vector<std::unique_ptr<ChildProcess>> others_;
};

TEST_P(LockHolder, OfTheStructureIsKilledAndTheOthersGoOn) { killWhileOthersAppend(holdStructure); }

TEST_P(LockHolder, OfTheStructureIsKilledInAChangeAndTheOthersGoOn) {
    killWhileOthersAppend(holdStructureInAChange);
}

TEST_P(LockHolder, OfTheAppendBytesIsKilledAndTheOthersGoOn) { killWhileOthersAppend(holdAppending); }

TEST_P(LockHolder, OfTheStructureStaysAndTheOthersAreNotified) {
    refuseWhileOneStays(holdStructure, [this](dbase::Table& table, int i) {
        expectRefusal(ErrorCode::LockTimeout, {indexFile()}, [&] { appendOne(table, i); });
        expectRefusal(ErrorCode::LockTimeout, {indexFile()}, [&] { table.read([] { return 0; }); });
    });
}

TEST_P(LockHolder, OfTheAppendBytesStaysAndTheOthersAreNotified) {
    refuseWhileOneStays(holdAppending, [this](dbase::Table& table, int i) {
        // The next in turn waits for the append bytes under the structure lock, the others wait for that
        // lock.
        expectRefusal(ErrorCode::LockTimeout, {tableFile(), indexFile()}, [&] { appendOne(table, i); });
    });
}

TEST_P(LockHolder, OfARecordStaysAndTheOthersAreNotified) {
    refuseWhileOneStays(holdFirstRecord, [this](dbase::Table&, int) {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        expectRefusal(ErrorCode::LockRefused, {tableFile()}, [&] { streets.edit(); });
        expectRefusal(ErrorCode::LockRefused, {tableFile()}, [&] { streets.erase(); });
        if (streets.lockCurrent()) {
            throw std::runtime_error("not refused");
        }
    });
}

/// Each of them changes the record many times, whenever it is allowed to: no change is lost.
TEST_P(LockHolder, OfARecordIsKilledAndTheOthersChangeItOneAfterAnother) {
    constexpr std::uint32_t each = 20;
    killWhileOthersWork(holdFirstRecord, [](dbase::Table&, int, const ChildProcess::Link& link) {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        link.tell();
        for (std::uint32_t done = 0; done < each;) {
            try {
                streets.refresh();
                streets.edit();
            } catch (const dbase::Error& error) {
                if (error.code() != ErrorCode::LockRefused && error.code() != ErrorCode::RecordChanged) {
                    throw;
                }
                sched_yield();
                continue;
            }
            StreetVersion row = currentRow(streets);
            ++row.version;
            setFields(streets, row);
            streets.post();
            ++done;
        }
    });
    {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        EXPECT_EQ(currentRow(streets),
                  (StreetVersion{.serial = 0, .version = each * static_cast<std::uint32_t>(GetParam())}));
        EXPECT_TRUE(isWhole(streets));
    }
    expectRows(50);
}

std::string nameOfCount(const ::testing::TestParamInfo<int>& count) { return std::to_string(count.param); }

INSTANTIATE_TEST_SUITE_P(Among, LockHolder, ::testing::Values(2, 4, 8, 16), nameOfCount);

} // namespace
