// A writer among fifteen readers that never rest: each lets it go first before long. What the readers may do
// meanwhile is counted in processor time, which other programs on the machine do not lengthen. And a reader
// beside a load, which goes on reading whatever the load does.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>

#include <sched.h>
#include <sys/mman.h>

#include "StreetFolder.h"
#include "dbase/dataset/dataset.h"
#include "dbase/lock/read_scope.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "support/LongForm.h"

namespace {

using namespace resistance;
using std::chrono::nanoseconds;

constexpr std::size_t readerCount = 15;

/// What each reader has spent so far, in memory of all processes.
struct ReadersAtWork {
    std::array<std::atomic<std::int64_t>, readerCount> spent; // processor time, in ns
    std::atomic<bool> mustStop;

    [[nodiscard]] std::array<std::int64_t, readerCount> now() const {
        std::array<std::int64_t, readerCount> values{};
        for (std::size_t i = 0; i < readerCount; ++i) {
            values.at(i) = spent.at(i);
        }
        return values;
    }
};

std::int64_t ownProcessorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

enum class Reading { OneByOne, InOneScope, InShortScopes, InEveryWay };

class ReadersThatNeverRest : public StreetFolder, public ::testing::WithParamInterface<Reading> {
protected:
    static constexpr std::uint32_t rows = 300;

    ReadersThatNeverRest() {
        void* memory =
            mmap(nullptr, sizeof(ReadersAtWork), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no shared memory");
        }
        readers_ = new (memory) ReadersAtWork();
        const auto table = dbase::Table::open(tableFile());
        for (std::uint32_t serial = 0; serial < rows; ++serial) {
            table->append(streetRecord(table->schema(), {.serial = serial}));
        }
    }
    ~ReadersThatNeverRest() override { munmap(readers_, sizeof(ReadersAtWork)); }

    static Reading readingOf(std::size_t reader) {
        return GetParam() == Reading::InEveryWay ? static_cast<Reading>(reader % 3) : GetParam();
    }
    void read(std::size_t reader) const {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        std::optional<dbase::ReadScope> scope;
        const Reading reading = readingOf(reader);
        for (std::uint32_t i = 0; !readers_->mustStop; ++i) {
            if (reading != Reading::OneByOne &&
                (!scope || (reading == Reading::InShortScopes && i % 100 == 0))) {
                scope.reset();
                scope.emplace();
            }
            if (!streets.seek({{"CODIGO1", codeOf(i % rows)}}, dbase::SeekMode::Exact)) {
                throw std::runtime_error("not found: " + codeOf(i % rows));
            }
            if (i % 32 == 0) {
                readers_->spent.at(reader) = ownProcessorTime();
            }
        }
    }
    void startReaders() {
        for (std::size_t i = 0; i < readerCount; ++i) {
            children_.push_back(
                std::make_unique<ChildProcess>(telling([this, i](const ChildProcess::Link& link) {
                    link.tell();
                    read(i);
                    return 0;
                })));
        }
        for (const auto& child : children_) {
            child->await();
        }
        for (const auto& spent : readers_->spent) {
            while (spent == 0) {
                sched_yield();
            }
        }
    }
    void stopReaders() {
        readers_->mustStop = true;
        for (const auto& child : children_) {
            EXPECT_EQ(child->join(), 0);
        }
        children_.clear();
    }

    ReadersAtWork* readers_;
    std::vector<std::unique_ptr<ChildProcess>> children_;
};

TEST_P(ReadersThatNeverRest, LetAWaitingWriterGoFirst) {
    startReaders();
    const int posts = ambrel::test::longForm(100, 1000);
    std::int64_t most = 0;
    nanoseconds longest{0};
    {
        const auto table = dbase::Table::open(tableFile());
        for (int i = 0; i < posts; ++i) {
            const auto before = readers_->now();
            const auto begin = std::chrono::steady_clock::now();
            table->append(streetRecord(table->schema(), {.serial = rows + static_cast<std::uint32_t>(i)}));
            longest = std::max<nanoseconds>(longest, std::chrono::steady_clock::now() - begin);
            const auto after = readers_->now();
            for (std::size_t reader = 0; reader < readerCount; ++reader) {
                most = std::max(most, after.at(reader) - before.at(reader));
            }
        }
    }
    stopReaders();
    std::printf("longest wait %.1f ms; meanwhile one reader spent %.1f ms at most\n",
                static_cast<double>(longest.count()) / 1e6, static_cast<double>(most) / 1e6);
    EXPECT_LT(most, 100'000'000);
    expectSound();
}

/// A reader whose every read is counted, and the longest of them noted, while another process loads.
class ReaderBesideALoad : public StreetFolder {
protected:
    struct Reads {
        std::atomic<std::uint64_t> done;
        std::atomic<std::int64_t> longest; // ns
        std::atomic<bool> mustStop;
    };

    ReaderBesideALoad() {
        void* memory =
            mmap(nullptr, sizeof(Reads), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no shared memory");
        }
        reads_ = new (memory) Reads();
        load(0, before, {});
    }
    ~ReaderBesideALoad() override { munmap(reads_, sizeof(Reads)); }

    void load(std::uint32_t firstSerial, std::uint32_t rows, const dbase::Progress& progress) const {
        dbase::BulkLoader loader(tableFile(), dbase::BulkLoader::Mode::Append);
        for (std::uint32_t i = 0; i < rows; ++i) {
            loader.add(streetRecord(loader.schema(), {.serial = firstSerial + i}));
            if (progress && i % 10'000 == 0) {
                progress(0, 1);
            }
        }
        loader.finish(progress);
    }
    /// As a list of another workstation reads for a key.
    void readUntilStopped() const {
        dbase::Dataset streets("DB", "POSTAL", "CODIGO1");
        streets.open();
        for (std::uint32_t i = 0; !reads_->mustStop; ++i) {
            const auto begin = std::chrono::steady_clock::now();
            if (!streets.seek({{"CODIGO1", codeOf(i % before)}}, dbase::SeekMode::Exact)) {
                throw std::runtime_error("not found: " + codeOf(i % before));
            }
            const nanoseconds taken = std::chrono::steady_clock::now() - begin;
            reads_->longest = std::max<std::int64_t>(reads_->longest, taken.count());
            ++reads_->done;
        }
    }

    static constexpr std::uint32_t before = 2000;
    Reads* reads_;
};

TEST_F(ReaderBesideALoad, ReadsOnAtEachOfItsStepsUntilTheEnd) {
    ChildProcess reader(telling([this](const ChildProcess::Link& link) {
        link.tell();
        readUntilStopped();
        return 0;
    }));
    reader.await();
    int steps = 0;
    load(before, static_cast<std::uint32_t>(ambrel::test::longForm(30'000, 100'000)),
         [&](std::uint64_t, std::uint64_t) {
             for (const std::uint64_t done = reads_->done; reads_->done < done + 2;) { // the second began now
                 if (reader.hasEnded()) {
                     throw std::runtime_error("the reader has failed");
                 }
                 sched_yield();
             }
             ++steps;
         });
    reads_->mustStop = true;
    EXPECT_EQ(reader.join(), 0);
    EXPECT_GT(steps, 5);
    std::printf("longest read %.1f ms\n", static_cast<double>(reads_->longest) / 1e6);
    expectSound();
}

std::string nameOfReading(const ::testing::TestParamInfo<Reading>& reading) {
    return std::array{"OneByOne", "InOneScope", "InShortScopes", "InEveryWay"}.at(
        static_cast<std::size_t>(reading.param));
}

INSTANTIATE_TEST_SUITE_P(Of, ReadersThatNeverRest,
                         ::testing::Values(Reading::OneByOne, Reading::InOneScope, Reading::InShortScopes,
                                           Reading::InEveryWay),
                         nameOfReading);

} // namespace
