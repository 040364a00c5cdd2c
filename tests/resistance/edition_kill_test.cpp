// Loads of the official street directory are killed at random instants: afterwards the tables are those from
// before or those of the edition, all of them, and the load can be repeated and taken back.
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/support/ChildProcess.h"
#include "dbase/system/databases.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/TemporaryFolder.h"
#include "tools/edition/NextEdition.h"

namespace fs = std::filesystem;

namespace {

using ambrel::test::longForm;
using Clock = std::chrono::steady_clock;

constexpr std::array<const char*, 3> tables{"MUNICIPI", "POSTAL", "PROCEDEN"};

/// The rows of the three tables, sorted; a table that is missing has none.
using Rows = std::array<std::vector<std::string>, tables.size()>;

class EditionKills : public testing::Test {
protected:
    EditionKills() {
        for (const char* const name : {"first", "second"}) {
            fs::create_directory(work_ / name);
        }
        first_ = edition::writeEdition(work_ / "first", edition::inventedPlaces(60), {.stretches = 3000});
        second_ = edition::writeNextEdition(first_, work_ / "second", 100);
    }

    [[nodiscard]] std::string folder() const { return work_ / "tables"; }

    std::vector<std::string> loadOf(const edition::Files& files) const {
        return {"callejero",   "cargar",     folder(),    "--tramos",     files.stretches,     "--vias",
                files.streets, "--unidades", files.units, "--municipios", files.municipalities};
    }

    /// Kills loads of an edition into tables as they are now.
    void killLoadsOf(const edition::Files& files, int cycles) {
        const Rows before = rows();
        fs::remove_all(work_ / "before");
        if (fs::exists(folder())) {
            fs::copy(folder(), work_ / "before");
        }
        const auto start = Clock::now();
        expectDone(loadOf(files));
        whole_ = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        const Rows after = rows();
        ASSERT_TRUE(before != after);
        for (int cycle = 0; cycle < cycles && !HasFailure(); ++cycle) {
            SCOPED_TRACE("cycle " + std::to_string(cycle));
            fs::remove_all(folder());
            if (fs::exists(work_ / "before")) {
                fs::copy(work_ / "before", folder());
            }
            killOne(files, cycle);
            verify(files, before, after);
        }
        std::cout << "resistance: " << testing::UnitTest::GetInstance()->current_test_info()->name()
                  << ": cycles=" << cycles << " killed=" << killed_ << " old=" << old_ << " new=" << new_
                  << '\n';
        EXPECT_GT(killed_, 0);
    }

    edition::Files first_, second_;

    /// Runs the program to its end.
    void expectDone(const std::vector<std::string>& arguments) {
        std::cout.flush(); // lest the child write it, too
        EXPECT_EQ(dbase::test::ChildProcess(program(arguments)).join(), 0) << said();
    }

private:
    [[nodiscard]] std::function<int(const dbase::test::ChildProcess::Link&)>
    program(std::vector<std::string> arguments) const {
        return [arguments = std::move(arguments),
                output = work_ / "output"](const dbase::test::ChildProcess::Link&) mutable {
            std::vector<char*> pointers{const_cast<char*>("ambcp")};
            for (std::string& one : arguments) {
                pointers.push_back(one.data());
            }
            pointers.push_back(nullptr);
            if (std::freopen(output.c_str(), "w", stdout) != nullptr &&
                dup2(STDOUT_FILENO, STDERR_FILENO) >= 0) {
                execv(AMBCP_PATH, pointers.data());
            }
            return 127;
        };
    }

    /// What the last program wrote.
    [[nodiscard]] std::string said() const {
        std::ostringstream text;
        text << std::ifstream(work_ / "output").rdbuf();
        return text.str();
    }

    [[nodiscard]] std::int64_t below(std::int64_t limit) {
        return std::uniform_int_distribution<std::int64_t>(0, limit - 1)(random_);
    }

    static void spin(std::chrono::microseconds time) {
        const auto end = Clock::now() + time;
        while (Clock::now() < end) {
        }
    }

    /// At any instant of the load, or soon after a file has appeared that stands for one of its steps.
    void killOne(const edition::Files& files, int cycle) {
        static constexpr std::array steps{"", "POSTAL.DBF.nuevo", "callejero.deshacer", "INTENCION.AMI",
                                          "INTENCION.AMI"};
        const std::string step = steps.at(static_cast<std::size_t>(cycle) % steps.size());
        dbase::test::ChildProcess load(program(loadOf(files)));
        if (step.empty()) {
            spin(std::chrono::microseconds(below(whole_.count())));
        } else {
            while (!fs::exists(folder() + '/' + step) && !load.hasEnded()) {
            }
            spin(std::chrono::microseconds(below(step == "INTENCION.AMI" ? 20'000 : whole_.count() / 2)));
        }
        load.kill();
        const int end = load.join();
        EXPECT_TRUE(end == 0 || end == -SIGKILL) << end;
        killed_ += end == -SIGKILL ? 1 : 0;
        for (int openers = static_cast<int>(below(3)); openers > 0; --openers) {
            dbase::test::ChildProcess opener(program({"comprobar", folder()}));
            spin(std::chrono::microseconds(below(20'000)));
            opener.kill();
            opener.join();
        }
    }

    void verify(const edition::Files& files, const Rows& before, const Rows& after) {
        if (hasAllTables()) { // what was being exchanged is not compared with what it replaces
            const int checked = dbase::test::ChildProcess(program({"comprobar", folder()})).join();
            EXPECT_TRUE(checked == 0 || said().find("terminó mientras escribía") != std::string::npos)
                << said();
        }
        const Rows found = rows(); // opening a table ends what was stopped
        if (found != Rows()) {
            expectDone({"comprobar", folder()});
        }
        const bool isOld = found == before;
        EXPECT_TRUE(isOld || found == after) << "neither the directory from before nor the edition's";
        ++(isOld ? old_ : new_);
        expectDone(loadOf(files));
        EXPECT_TRUE(rows() == after) << "repeated, it is not the edition";
        expectDone({"comprobar", folder()});
        expectDone({"deshacer", lastUndoFile()});
        EXPECT_TRUE(rows() == before) << "taken back, it is not what there was";
        expectDone({"comprobar", folder()});
        for (const auto& entry : fs::directory_iterator(folder())) {
            const std::string name = entry.path().filename().string();
            EXPECT_TRUE(name.find(".nuevo") == std::string::npos && name != "INTENCION.AMI")
                << name << " is left";
        }
    }

    /// Whether the load has created what it did not find.
    [[nodiscard]] bool hasAllTables() const {
        const auto all = {"MUNICIMJ", "MUNICIPI", "POSTAL", "PROVIN", "TIPO_VIA"};
        return std::ranges::all_of(
            all, [&](const char* table) { return fs::exists(folder() + '/' + table + ".DBF"); });
    }

    /// That of the load which changed the tables; an earlier one announces what was not carried out.
    [[nodiscard]] std::string lastUndoFile() const {
        std::string last = folder() + "/callejero.deshacer";
        for (int number = 2; fs::exists(folder() + "/callejero-" + std::to_string(number) + ".deshacer");
             ++number) {
            last = folder() + "/callejero-" + std::to_string(number) + ".deshacer";
        }
        return last;
    }

    [[nodiscard]] Rows rows() const {
        dbase::setDatabaseFolder("CALLEJERO", folder());
        Rows found;
        if (!fs::exists(folder())) {
            return found;
        }
        for (std::size_t i = 0; i < tables.size(); ++i) {
            if (!dbase::findTableFile(folder(), tables.at(i))) {
                continue;
            }
            dbase::Dataset table("CALLEJERO", tables.at(i));
            table.open();
            dbase::forEachRow(table, [&] {
                std::string row;
                for (const dbase::Column& column : table.schema().columns) {
                    row += table.field(column.name).text() + '|';
                }
                found.at(i).push_back(std::move(row));
            });
            std::ranges::sort(found.at(i));
        }
        return found;
    }

    TemporaryFolder work_;
    std::mt19937 random_{ambrel::test::seedOfThisRun()};
    std::chrono::microseconds whole_{};
    int killed_ = 0, old_ = 0, new_ = 0;
};

TEST_F(EditionKills, TheFirstEditionIntoANewFolderIsThereWholeOrNotAtAll) {
    killLoadsOf(first_, longForm(5, 200));
}

TEST_F(EditionKills, TheFirstEditionIsThereWholeOrNotAtAll) {
    expectDone({"crear", folder()});
    killLoadsOf(first_, longForm(5, 200));
}

TEST_F(EditionKills, TheNextEditionIsThereWholeOrNotAtAll) {
    std::vector<std::string> first = loadOf(first_);
    first.emplace_back("--sin-deshacer");
    expectDone(first);
    killLoadsOf(second_, longForm(5, 400));
}

} // namespace
