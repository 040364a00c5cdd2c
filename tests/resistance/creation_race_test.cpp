// Processes that create, replace and open the same tables at the same time, and are killed while they do.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

#include "dbase/support/ChildProcess.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/table_definition.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using ambrel::test::seedOfThisRun;
namespace fs = std::filesystem;
using Processes = std::vector<std::unique_ptr<ChildProcess>>;

TableDefinition definition() {
    return {.name = "CARRERA",
            .columns = {{"AUTOR", ColumnType::Numeric, 6, 0, 0}, {"NOMBRE", ColumnType::Character, 60, 0, 0}},
            .tags = {{.name = "AUTOR", .expression = "AUTOR"}, {.name = "NOMBRE", .expression = "NOMBRE"}}};
}

Bytes rowOf(const Schema& schema, int author, int number) {
    return makeRecord(schema, {std::to_string(author), "FILA " + std::to_string(number)});
}

/// Starts processes that wait for each other, lets them go at once, and returns their exit codes.
std::vector<int> atOnce(int processes, const std::function<int(int)>& work) {
    Processes all;
    for (int i = 0; i < processes; ++i) {
        all.push_back(std::make_unique<ChildProcess>([&, i](const ChildProcess::Link& link) {
            link.tell();
            link.await();
            return work(i);
        }));
    }
    for (const auto& process : all) {
        process->await();
    }
    for (const auto& process : all) {
        process->tell();
    }
    std::vector<int> codes;
    for (const auto& process : all) {
        codes.push_back(process->join());
    }
    return codes;
}

std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

// --- Creation

int createIfMissingThenPost(const std::string& folder, int author) {
    try {
        createTable(folder, definition());
    } catch (const Error& error) {
        if (error.code() != ErrorCode::Exists) {
            return 1;
        }
    }
    const auto table = Table::open(folder + "/CARRERA.DBF");
    static_cast<void>(table->append(rowOf(table->schema(), author, 1), Durability::Disk));
    return 0;
}

TEST(CreationRace, ProcessesThatCreateIfMissingAndThenPostLoseNothing) {
    const int rounds = longForm(60, 2400);
    for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round) {
        const int processes = round % 4 == 3 ? 8 : 3;
        const TemporaryFolder folder;
        const auto codes =
            atOnce(processes, [&](int author) { return createIfMissingThenPost(folder.path(), author); });
        EXPECT_EQ(codes, std::vector<int>(static_cast<std::size_t>(processes), 0)) << "round " << round;
        // Of programs that leave at the same instant none is the last; this one removes their journal.
        EXPECT_EQ(order(*Table::open(folder / "CARRERA.DBF"), "AUTOR").size(),
                  static_cast<std::size_t>(processes))
            << "round " << round;
        EXPECT_EQ(findings(folder / "CARRERA.DBF"), "");
        EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"CARRERA.DBF", "CARRERA.MDX"}));
    }
    std::printf("resistance: creations raced=%d\n", rounds);
}

int runAmbcp(const std::string& folder) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execl(AMBCP_PATH, AMBCP_PATH, "crear", "--muestra", folder.c_str(), static_cast<char*>(nullptr));
    return 127;
}

TEST(CreationRace, OfTwoCommandsThatCreateTheSampleOneDoesAndTheOtherChangesNothing) {
    const int rounds = longForm(6, 120);
    const char* const tables[] = {"MUNICIPI", "POSTAL", "PROVIN", "TIPO_VIA", "MUNICIMJ"};
    const TemporaryFolder alone;
    ASSERT_EQ(atOnce(1, [&](int) { return runAmbcp(alone.path()); }), std::vector<int>{0});
    for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round) {
        const TemporaryFolder folder;
        std::vector<int> codes = atOnce(2, [&](int) { return runAmbcp(folder.path()); });
        std::ranges::sort(codes);
        EXPECT_EQ(codes, (std::vector<int>{0, 2})) << "round " << round;
        for (const std::string table : tables) {
            EXPECT_EQ(findings(folder / (table + ".DBF")), "") << "round " << round;
            EXPECT_EQ(readFile(folder / (table + ".DBF")), readFile(alone / (table + ".DBF"))) << table;
        }
        EXPECT_EQ(filesIn(folder.path()), filesIn(alone.path()));
    }
    std::printf("resistance: pairs of commands=%d\n", rounds);
}

// --- Replacement

constexpr int rowsOfVersion = 40;

/// Replaces the table by rows of another author; false if it is in use.
bool replaceBy(const std::string& path, int author) {
    try {
        BulkLoader loader(path, BulkLoader::Mode::Replace);
        for (int number = 0; number < rowsOfVersion; ++number) {
            loader.add(rowOf(loader.schema(), author, number));
        }
        loader.finish();
        return true;
    } catch (const Error& error) {
        if (error.code() != ErrorCode::LockTimeout && error.code() != ErrorCode::Replaced) {
            throw;
        }
        return false;
    }
}

/// Opens the table, reads it by both tags, edits a row and adds none. What is wrong; empty if nothing is.
std::string useOnce(const std::string& path) {
    try {
        const auto table = Table::open(path);
        if (table->isReadOnly()) {
            return table->readOnlyReason();
        }
        for (const char* const tag : {"AUTOR", "NOMBRE"}) {
            if (order(*table, tag).size() != rowsOfVersion) {
                return std::string(tag) + " has " + std::to_string(order(*table, tag).size()) + " entries";
            }
        }
        const Bytes first = storedRecord(*table, 1), last = storedRecord(*table, rowsOfVersion);
        if (!std::equal(first.begin(), first.begin() + 7, last.begin())) {
            return "rows of two tables";
        }
        Bytes changed = first;
        changed[20] = changed[20] == 'X' ? 'Y' : 'X';
        table->overwrite(1, first, changed);
    } catch (const Error& error) {
        if (error.code() == ErrorCode::RecordChanged) { // another station was faster
            return {};
        }
        return error.what();
    }
    return {};
}

class ReplacementRace : public ::testing::Test {
protected:
    ReplacementRace() {
        createTable(folder_.path(), definition());
        EXPECT_TRUE(replaceBy(path(), 0));
    }
    [[nodiscard]] std::string path() const { return folder_ / "CARRERA.DBF"; }
    void expectSound() const {
        EXPECT_EQ(useOnce(path()), "");
        EXPECT_EQ(findings(path()), "");
    }

    TemporaryFolder folder_;
};

TEST_F(ReplacementRace, StationsThatOpenWhileItIsReplacedSeeOneTableOrTheOther) {
    const int replacements = longForm(200, 4000);
    for (const int stations : {1, 3, 6}) {
        Processes all;
        for (int i = 0; i < stations; ++i) {
            all.push_back(std::make_unique<ChildProcess>([&](const ChildProcess::Link& link) {
                std::string wrong;
                int uses = 0;
                while (wrong.empty() && fs::exists(folder_ / "CARRERA.DBF") && !fs::exists(folder_ / "fin")) {
                    wrong = useOnce(path());
                    ++uses;
                    // A replacement needs a moment in which no station has the table open.
                    usleep(static_cast<useconds_t>(1000 * stations * (1 + uses % 7)));
                }
                link.send(wrong);
                return 0;
            }));
        }
        std::vector<int> codes = atOnce(2, [&](int replacer) {
            for (int done = 0; done < replacements / 6;) {
                done += replaceBy(path(), replacer + 1) ? 1 : 0;
            }
            return 0;
        });
        EXPECT_EQ(codes, (std::vector<int>{0, 0}));
        folder_.write("fin", "");
        for (const auto& station : all) {
            EXPECT_EQ(station->receive(), "") << stations << " stations";
            station->join();
        }
        fs::remove(folder_ / "fin");
        expectSound();
        EXPECT_EQ(filesIn(folder_.path()), (std::vector<std::string>{"CARRERA.DBF", "CARRERA.MDX"}));
    }
    std::printf("resistance: replacements among stations=%d\n", replacements);
}

TEST_F(ReplacementRace, AProgramKilledWhileItReplacesLeavesTheOldTableOrTheNewOne) {
    const int kills = longForm(60, 2000);
    std::mt19937 random(seedOfThisRun());
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        ChildProcess replacer([&](const ChildProcess::Link& link) {
            link.tell();
            for (int author = 1;; ++author) {
                static_cast<void>(replaceBy(path(), author));
            }
            return 0;
        });
        replacer.await();
        usleep(static_cast<useconds_t>(random() % 6000));
        replacer.kill();
        replacer.join();
        expectSound();
    }
    EXPECT_TRUE(replaceBy(path(), 1));
    EXPECT_EQ(filesIn(folder_.path()), (std::vector<std::string>{"CARRERA.DBF", "CARRERA.MDX"}));
    std::printf("resistance: replacing programs killed=%d\n", kills);
}

TEST_F(ReplacementRace, AProgramKilledWhileItCreatesLeavesATableOrNone) {
    const int kills = longForm(60, 2000);
    std::mt19937 random(seedOfThisRun());
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        const TemporaryFolder folder;
        ChildProcess creator([&](const ChildProcess::Link& link) {
            link.tell();
            createTable(folder.path(), definition());
            return 0;
        });
        creator.await();
        usleep(static_cast<useconds_t>(random() % 1500));
        creator.kill();
        creator.join();
        EXPECT_EQ(createIfMissingThenPost(folder.path(), 1), 0);
        EXPECT_EQ(findings(folder / "CARRERA.DBF"), "");
        createTable(folder.path(), definition(), IfExists::Replace);
        EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"CARRERA.DBF", "CARRERA.MDX"}));
    }
    std::printf("resistance: creating programs killed=%d\n", kills);
}

} // namespace
