// A disk without room: a file system of 1 MiB that is really full where it may be mounted, and everywhere a
// limit on the size of files. Acknowledged changes stay, the error says what is wrong, and work goes on once
// there is room.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include "ScriptedRun.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::FileSizeLimit;
using Mode = BulkLoader::Mode;

/// A small file system over a folder, for this process only.
class SmallDisk {
public:
    explicit SmallDisk(std::string folder) : folder_(std::move(folder)) {
        isThere_ = unshare(CLONE_NEWNS) == 0 &&
                   mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   mount("ambrel", folder_.c_str(), "tmpfs", 0, "size=1m") == 0;
        problem_ = isThere_ ? std::string() : std::strerror(errno);
    }
    ~SmallDisk() {
        if (isThere_) {
            umount2(folder_.c_str(), MNT_DETACH);
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    /// Why there is none; empty when there is.
    [[nodiscard]] const std::string& problem() const { return problem_; }

private:
    std::string folder_, problem_;
    bool isThere_ = false;
};

enum class Kind { SmallDisk, FileSizeLimit };

class FullDiskTest : public ::testing::TestWithParam<std::tuple<Kind, Durability>> {
protected:
    void SetUp() override {
        if (kind() == Kind::SmallDisk) {
            disk_.emplace(folder_.path());
            if (!disk_->problem().empty()) {
                GTEST_SKIP() << "wants root, to mount a small file system: " << disk_->problem();
            }
        }
        createTable(folder_.path(), scriptedDefinition());
        schema_ = Table::open(path())->schema();
    }

    [[nodiscard]] static Kind kind() { return std::get<Kind>(GetParam()); }
    [[nodiscard]] std::string path() const { return folder_ / "GUION.DBF"; }
    [[nodiscard]] Bytes row(int number) const { return scriptedRow(schema_, number); }

    [[nodiscard]] static Durability durability() { return std::get<Durability>(GetParam()); }
    [[nodiscard]] std::shared_ptr<Table> open() const { return Table::open(path()); }

    void load(Mode mode, int from, int to) const {
        BulkLoader loader(path(), mode);
        for (int number = from; number <= to; ++number) {
            loader.add(row(number));
        }
        loader.finish();
    }

    /// Leaves room for some hundreds of rows in addition to the existing ones.
    void takeRoom() {
        if (kind() == Kind::FileSizeLimit) {
            limit_.emplace(300'000); // a journal's room is allocated at once, and must fit
            return;
        }
        constexpr std::uintmax_t left = 500'000;
        const std::uintmax_t free = std::filesystem::space(folder_.path()).available;
        std::ofstream(folder_ / "LASTRE", std::ios::binary)
            << std::string(static_cast<std::size_t>(free - std::min(free, left)), 'x');
    }
    void giveRoom() {
        limit_.reset();
        std::filesystem::remove(folder_ / "LASTRE");
    }

    /// Loads nearly as many rows as the limit allows; syncing each of them would take long.
    void loadNearlyToTheLimit() const {
        if (kind() == Kind::FileSizeLimit) {
            load(Mode::Append, 1, 900);
        }
    }

    /// Adds rows until there is no room. Returns their number.
    static int fill(Table& table, const std::function<Bytes(int)>& row) {
        const auto rows = static_cast<int>(table.records().recordCount());
        for (int number = rows + 1;; ++number) {
            try {
                static_cast<void>(table.append(row(number), durability()));
            } catch (const Error& error) {
                expectFull(error);
                return number - 1;
            }
        }
    }
    static void expectFull(const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::DiskFull) << error.what();
        EXPECT_NE(std::string(error.what()).find("libere espacio"), std::string::npos) << error.what();
        EXPECT_NE(error.file().find("GUION."), std::string::npos) << error.file();
    }

    /// Expects rows 1 to `rows`, each as it was added, and a sound table.
    void expectRows(int rows) const {
        const auto table = Table::open(path());
        ASSERT_EQ(table->records().recordCount(), static_cast<RecordNumber>(rows));
        for (int number = 1; number <= rows; ++number) {
            ASSERT_EQ(storedRecord(*table, static_cast<RecordNumber>(number)), row(number)) << number;
        }
        EXPECT_EQ(order(*table, "NOMBRE").size(), static_cast<std::size_t>(rows));
        EXPECT_EQ(findings(path()), "");
    }

    TemporaryFolder folder_;
    std::optional<SmallDisk> disk_; // destroyed before its folder
    std::optional<FileSizeLimit> limit_;
    Schema schema_;
};

TEST_P(FullDiskTest, AppendsFillItAndGoOnWhenThereIsRoom) {
    loadNearlyToTheLimit();
    takeRoom();
    int rows = 0;
    {
        const auto table = open();
        const auto before = static_cast<int>(table->records().recordCount());
        rows = fill(*table, [&](int number) { return row(number); });
        EXPECT_GT(rows, before + 20);
        for (int attempt = 0; attempt < 3; ++attempt) {
            expectFull(errorOf([&] {
                for (int number = rows + 1;; ++number, ++rows) { // a smaller change may still fit
                    static_cast<void>(table->append(row(number), durability()));
                }
            }));
        }
        expectRows(rows);
        giveRoom();
        EXPECT_EQ(table->append(row(rows + 1), durability()), static_cast<RecordNumber>(rows + 1))
            << "in the same process";
    }
    expectRows(rows + 1);
}

TEST_P(FullDiskTest, AFullDiskIsStillRead) {
    loadNearlyToTheLimit();
    takeRoom();
    const int rows = fill(*open(), [&](int number) { return row(number); });
    expectRows(rows);
    giveRoom();
    EXPECT_EQ(open()->append(row(rows + 1), durability()), static_cast<RecordNumber>(rows + 1));
    expectRows(rows + 1);
}

TEST_P(FullDiskTest, ChangesInPlaceAreWholeOrNotThere) {
    loadNearlyToTheLimit();
    takeRoom();
    const auto table = open();
    const int rows = fill(*table, [&](int number) { return row(number); });
    Rows expected = rowsOf(*table);
    for (RecordNumber record = 1; record <= static_cast<RecordNumber>(rows); record += 41) {
        const Bytes after = row(static_cast<int>(record) + 3000);
        try {
            table->overwrite(record, expected[record - 1], after, durability());
            expected[record - 1] = after;
        } catch (const Error& error) {
            expectFull(error);
        }
        ASSERT_EQ(difference(expected, rowsOf(*table)), "") << record;
    }
    EXPECT_EQ(findings(path()), "");
    giveRoom();
    table->erase(1, expected[0], durability());
    EXPECT_EQ(storedRecord(*table, 1)[0], '*');
    EXPECT_EQ(findings(path()), "");
}

TEST_P(FullDiskTest, ALoadThatDoesNotFitLeavesTheTableAsItWas) {
    constexpr int before = 50, loaded = 20'000;
    load(Mode::Append, 1, before);
    takeRoom();
    for (const Mode mode : {Mode::Append, Mode::Replace}) {
        expectFull(errorOf([&] { load(mode, before + 1, loaded); }));
        expectRows(before);
    }
    giveRoom();
    load(Mode::Append, before + 1, 2 * before);
    expectRows(2 * before);
}

/// The rows fit, but the tags built from them do not.
TEST_P(FullDiskTest, ALoadWhoseTagsDoNotFitLeavesTheTableAsItWas) {
    constexpr int before = 50;
    load(Mode::Append, 1, before);
    takeRoom();
    int fitting = 0;
    for (int rows = 500; rows < 4000; rows += 250) { // for some of these only the tags do not fit
        try {
            load(Mode::Append, before + fitting + 1, before + rows);
            fitting = rows;
        } catch (const Error& error) {
            expectFull(error);
        }
        expectRows(before + fitting);
        ASSERT_FALSE(HasFatalFailure());
    }
    EXPECT_GT(fitting, 0);
    giveRoom();
    EXPECT_EQ(open()->append(row(before + fitting + 1), durability()),
              static_cast<RecordNumber>(before + fitting + 1));
    expectRows(before + fitting + 1);
}

std::string nameOf(const std::tuple<Kind, Durability>& plan) {
    return std::string(std::get<Kind>(plan) == Kind::SmallDisk ? "SmallDisk" : "FileSizeLimit") +
           (std::get<Durability>(plan) == Durability::Disk ? "ToDisk" : "ToProcess");
}

INSTANTIATE_TEST_SUITE_P(Disks, FullDiskTest,
                         ::testing::Combine(::testing::Values(Kind::SmallDisk, Kind::FileSizeLimit),
                                            ::testing::Values(Durability::Process, Durability::Disk)),
                         [](const auto& test) { return nameOf(test.param); });

} // namespace
