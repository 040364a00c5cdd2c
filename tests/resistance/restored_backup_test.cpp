// Backups put back, in every way that people do it, beside the journal of a program that died or of a machine
// that stopped: the table is the backup, or has every acknowledged row; it is sound, or the check finds that
// it is not.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "ScriptedRun.h"
#include "dbase/journal/journal_place.h"
#include "dbase/system/error.h"
#include "dbase/system/notices.h"
#include "support/LongForm.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;

struct Backup {
    Bytes records, index;
    Rows rows;
};

class RestoredBackups : public ::testing::Test {
protected:
    RestoredBackups() {
        before_ = setNoticeHandler([this](const std::string&) { ++notices_; });
    }
    ~RestoredBackups() override {
        setBootIdentity(ownIdentity_);
        setNoticeHandler(before_);
    }

    [[nodiscard]] static std::string tableOf(const TemporaryFolder& folder) { return folder / "GUION.DBF"; }
    [[nodiscard]] static std::string indexOf(const TemporaryFolder& folder) { return folder / "GUION.MDX"; }

    /// A program adds and changes rows, all of them acknowledged, and ends by itself or is killed.
    void work(const std::string& path, Rows& rows, std::mt19937& random, bool isKilled) {
        std::vector<std::pair<RecordNumber, Bytes>> posts;
        const Schema schema = Table::open(path)->schema();
        for (int left = 1 + static_cast<int>(random() % 6); left > 0; --left) {
            const Bytes row = scriptedRow(schema, ++last_);
            const bool isNew = random() % 3 != 0;
            const auto number =
                static_cast<RecordNumber>(isNew ? rows.size() + 1 : 1 + random() % rows.size());
            posts.emplace_back(number, row);
            rows.resize(std::max<std::size_t>(rows.size(), number));
            rows[number - 1] = row;
        }
        ChildProcess child([&](const ChildProcess::Link& link) {
            const auto table = Table::open(path);
            for (const auto& [number, row] : posts) {
                if (number > table->records().recordCount()) {
                    static_cast<void>(table->append(row, Durability::Disk));
                } else {
                    table->overwrite(number, storedRecord(*table, number), row, Durability::Disk);
                }
            }
            if (isKilled) {
                link.tell();
                link.await();
            }
            return 0;
        });
        if (isKilled) {
            child.await();
            child.kill();
        } else {
            EXPECT_EQ(child.join(), 0);
        }
    }

    static void putBack(const std::string& path, const Bytes& bytes, bool isExchanged) {
        writeFile(isExchanged ? path + ".x" : path, bytes);
        if (isExchanged) {
            std::filesystem::rename(path + ".x", path);
        }
    }
    [[nodiscard]] static Rows open(const std::string& path) {
        const auto table = Table::open(path);
        return rowsOf(*table);
    }

    int notices_ = 0;
    int last_ = 200;

private:
    std::string ownIdentity_ = bootIdentity();
    NoticeHandler before_;
};

TEST_F(RestoredBackups, AreTheTableOrAreFound) {
    for (int seed = 1; seed <= longForm(40, 600); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(static_cast<unsigned>(seed));
        const TemporaryFolder folder;
        const std::string path = tableOf(folder), index = indexOf(folder);
        setBootIdentity("the first start");
        createTable(folder.path(), scriptedDefinition());
        last_ = 0;
        Rows rows;
        {
            const auto table = Table::open(path);
            for (int i = 0; i < 5; ++i) {
                rows.push_back(scriptedRow(table->schema(), ++last_));
                static_cast<void>(table->append(rows.back()));
            }
        }
        const bool isMadeAtWork = random() % 2 == 0;
        work(path, rows, random, isMadeAtWork);
        const Backup backup{readFile(path), readFile(index), rows};
        if (!isMadeAtWork || random() % 2 == 0) { // else the journal of the backup goes on
            static_cast<void>(open(path));
        }
        const bool isSameSession = std::filesystem::exists(folder / "GUION.AMJ");
        work(path, rows, random, true);
        const bool isExchanged = random() % 2 == 0;
        const unsigned halves = 1 + static_cast<unsigned>(random() % 3); // records, index or both
        if (halves & 1) {
            putBack(path, backup.records, isExchanged);
        }
        if (halves & 2) {
            putBack(index, backup.index, isExchanged);
        }
        if (random() % 4 != 0) {
            setBootIdentity("the second start");
        }
        SCOPED_TRACE((isExchanged ? "exchanged " : "copied over ") + std::to_string(halves) +
                     (isMadeAtWork ? ", made at work" : "") + (isSameSession ? ", of the same journal" : ""));
        notices_ = 0;
        const Rows found = open(path);
        EXPECT_LE(notices_, 1);
        if (halves == 2) {
            EXPECT_EQ(difference(rows, found), "") << "the records were not touched";
        } else if (halves == 3 && !(isSameSession && !isExchanged)) {
            EXPECT_EQ(difference(backup.rows, found), "");
            EXPECT_EQ(notices_, 1);
        } else if (isExchanged) {
            EXPECT_EQ(difference(backup.rows, found), "");
        } else if (isSameSession) { // the promise names it
            EXPECT_TRUE(difference(backup.rows, found).empty() || difference(rows, found).empty());
        }
        const bool isHalfOfTheSame = isSameSession && halves == 2;
        if (!isHalfOfTheSame &&
            (halves != 1 || isExchanged)) { // the check finds the others where they disagree
            EXPECT_EQ(findings(path), "");
        }
        const int said = notices_;
        EXPECT_EQ(difference(found, open(path)), "");
        EXPECT_EQ(notices_, said) << "said twice";
        ASSERT_FALSE(HasFailure());
    }
}

} // namespace
