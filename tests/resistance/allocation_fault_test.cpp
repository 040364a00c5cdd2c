// Memory runs out at the n-th request of an operation, for every n: the operation throws, holds no lock
// afterwards, leaves the table sound, and can be repeated. A program of its own, because it replaces the
// allocation of the whole program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>

#include "ScriptedRun.h"
#include "dbase/dataset/dataset.h"
#include "dbase/lock/locks.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/write_scope.h"
#include "support/TemporaryFolder.h"

namespace {

/// How the memory fails.
struct Shortage {
    bool isOn = false;
    bool lasts = false; // every request after the failing one fails too
    std::size_t failing = 0, requests = 0;
    const char* operation = "";

    [[nodiscard]] bool strikes() {
        if (!isOn) {
            return false;
        }
        ++requests;
        return requests == failing || (lasts && requests > failing);
    }
};
Shortage shortage;

void* allocate(std::size_t size) {
    if (shortage.strikes()) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

[[noreturn]] void tellAndAbort() {
    std::fprintf(stderr, "terminated: request %zu of %s\n", shortage.failing, shortage.operation);
    std::abort();
}

} // namespace

// Not inlined: the compiler would take malloc and delete in one function for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace {

using namespace dbase;
using namespace dbase::test;

/// An operation prepared with unlimited memory; calling the result runs it with the shortage.
using Ready = std::function<void()>;

class AllocationFaultTest : public ::testing::Test {
protected:
    AllocationFaultTest() {
        std::set_terminate(tellAndAbort);
        const MemoryTable origin = scriptedTable();
        tableBytes_ = origin.records->bytes;
        indexBytes_ = origin.index->bytes;
        setDatabaseFolder("MEMORIA", folder_.path());
        putBack();
        firstRows_ = rowsOf(*Table::open(path()));
    }

    ~AllocationFaultTest() override { setDatabaseFolder("MEMORIA", {}); }

    [[nodiscard]] std::string path() const { return folder_ / "GUION.DBF"; }
    [[nodiscard]] std::string indexPath() const { return folder_ / "GUION.MDX"; }

    /// Makes the first, second, ... request of memory fail, once and from then on. `prepare` gets the open
    /// table; `effects`: the states of the rows that the operation may leave, the last one when it succeeds.
    void failEverywhere(const char* operation,
                        const std::function<Ready(const std::shared_ptr<Table>&)>& prepare,
                        const std::vector<Rows>& effects) {
        shortage.operation = operation;
        for (const bool lasts : {false, true}) {
            bool isOver = false;
            for (std::size_t number = 1; !isOver; ++number) {
                SCOPED_TRACE(std::string(operation) + (lasts ? ", from request " : ", request ") +
                             std::to_string(number));
                putBack();
                {
                    auto table = Table::open(path());
                    const Ready ready = prepare(table);
                    const bool isDone = runShort(ready, number, lasts);
                    isOver = isDone && shortage.requests < number;
                    expectNoLocks();
                    expectOneOf(effects, rowsOf(*table), isDone);
                    if (!isDone) {
                        ASSERT_NO_THROW(prepare(table)()) << "with all the memory";
                    }
                }
                expectSound();
                if (HasFatalFailure() || HasNonfatalFailure()) {
                    return;
                }
            }
        }
    }
    /// The same for an operation that changes no row.
    void failEverywhere(const char* operation,
                        const std::function<Ready(const std::shared_ptr<Table>&)>& prepare) {
        failEverywhere(operation, prepare, {firstRows_});
    }

    static Ready changed(const Step& step, const std::shared_ptr<Table>& table) {
        return [step, table, rows = rowsOf(*table)] { step.run(*table, rows, Durability::Process); };
    }
    void failInStep(const Step& step) {
        failEverywhere(step.name.c_str(),
                       [&](const std::shared_ptr<Table>& table) { return changed(step, table); },
                       {firstRows_, step.effect(firstRows_)});
    }

    /// A cursor on the table by name.
    [[nodiscard]] static std::shared_ptr<Dataset> cursor() {
        auto dataset = std::make_shared<Dataset>("MEMORIA", "GUION", "NOMBRE");
        dataset->open();
        return dataset;
    }

    void putBack() const {
        std::filesystem::remove(folder_ / "GUION.AMJ");
        writeFile(path(), tableBytes_);
        writeFile(indexPath(), indexBytes_);
    }

    /// True when nothing was thrown.
    static bool runShort(const Ready& ready, std::size_t number, bool lasts) {
        shortage.failing = number;
        shortage.lasts = lasts;
        shortage.requests = 0;
        shortage.isOn = true;
        try {
            ready();
            shortage.isOn = false;
            return true;
        } catch (const std::bad_alloc&) {
            shortage.isOn = false;
            return false;
        } catch (const std::exception& error) {
            shortage.isOn = false;
            ADD_FAILURE() << "raised something else: " << error.what();
            return false;
        }
    }

    void expectNoLocks() const {
        const auto records = openFile(path(), OpenMode::ReadWrite);
        const auto index = openFile(indexPath(), OpenMode::ReadWrite);
        EXPECT_TRUE(index->tryLock(structureLock, LockKind::Exclusive)) << "the structure lock is still held";
        EXPECT_TRUE(records->tryLock(wholeTableLock, LockKind::Exclusive))
            << "the header or a record is still locked";
    }

    static void expectOneOf(const std::vector<Rows>& effects, const Rows& found, bool isDone) {
        if (isDone) {
            EXPECT_EQ(difference(effects.back(), found), "");
        } else {
            EXPECT_NE(std::ranges::find(effects, found), effects.end())
                << difference(effects.front(), found) << "; " << difference(effects.back(), found);
        }
    }

    void expectSound() const {
        EXPECT_EQ(findings(path()), "");
        EXPECT_FALSE(std::filesystem::exists(folder_ / "GUION.AMJ"));
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 2)
            << "something was left in the folder";
    }

    TemporaryFolder folder_;
    Bytes tableBytes_, indexBytes_;
    Rows firstRows_;
};

TEST_F(AllocationFaultTest, OpeningATable) {
    failEverywhere("open", [&](const std::shared_ptr<Table>&) {
        return [this] { // files of its own, because the process's Table is already open
            const Table table(openFile(path(), OpenMode::ReadWrite),
                              openFile(indexPath(), OpenMode::ReadWrite));
        };
    });
}

TEST_F(AllocationFaultTest, OpeningATableOfTheProcess) {
    shortage.operation = "Table::open";
    for (std::size_t number = 1; number < 5000; ++number) {
        std::shared_ptr<Table> table; // closed with unlimited memory
        const std::string name = path();
        const bool isDone = runShort([&] { table = Table::open(name); }, number, false);
        if (isDone && shortage.requests < number) {
            EXPECT_GT(number, 1U) << "nothing was asked for";
            return;
        }
        table.reset();
        ASSERT_EQ(findings(path()), "") << number;
        const auto records = openFile(path(), OpenMode::ReadWrite);
        EXPECT_TRUE(records->tryLock(presenceLock, LockKind::Exclusive)) << "it counts as open: " << number;
    }
    FAIL() << "opening never came to its end";
}

TEST_F(AllocationFaultTest, OpeningACursor) {
    failEverywhere("Dataset::open", [&](const std::shared_ptr<Table>&) {
        const auto dataset = std::make_shared<Dataset>("MEMORIA", "GUION", "NOMBRE");
        return [dataset] { dataset->open(); };
    });
}

TEST_F(AllocationFaultTest, Seeking) {
    failEverywhere("seek", [](const std::shared_ptr<Table>&) {
        const auto dataset = cursor();
        const auto key = std::make_shared<Key>(Key{{"NOMBRE", "CALLE 1"}});
        return [dataset, key] { EXPECT_TRUE(dataset->seek(*key, SeekMode::Nearest)); };
    });
}

TEST_F(AllocationFaultTest, Walking) {
    failEverywhere("walk", [](const std::shared_ptr<Table>&) {
        const auto dataset = cursor();
        return [dataset] {
            std::size_t rows = 1;
            for (dataset->first(); dataset->next();) {
                ++rows;
            }
            while (dataset->prior()) {
                --rows;
            }
            EXPECT_EQ(rows, 1U);
        };
    });
}

TEST_F(AllocationFaultTest, Filtering) {
    failEverywhere("filter", [](const std::shared_ptr<Table>&) {
        const auto dataset = cursor();
        const std::string filter = "NUM>=140 AND NOMBRE<>'CALLE 1001'";
        return [dataset, filter] {
            dataset->setFilter(filter);
            dataset->first();
            while (dataset->next()) {
            }
            dataset->clearFilter();
        };
    });
}

TEST_F(AllocationFaultTest, PostingThroughACursor) {
    Rows after = firstRows_;
    after.push_back(scriptedRow(Table::open(path())->schema(), 999));
    failEverywhere("post",
                   [&](const std::shared_ptr<Table>& table) {
                       const auto dataset = cursor();
                       const Bytes row = scriptedRow(table->schema(), 999);
                       const std::string street = valueOf(table->schema(), row, "NOMBRE");
                       return [dataset, street] {
                           try {
                               dataset->append();
                               dataset->field("NOMBRE").setText(street);
                               dataset->field("NUM").setText("999");
                               dataset->post();
                           } catch (...) {
                               dataset->cancel();
                               throw;
                           }
                       };
                   },
                   {firstRows_, after});
}

TEST_F(AllocationFaultTest, ChangingSeveralRowsTogether) {
    Rows after = firstRows_;
    for (const int row : {998, 999}) {
        after.push_back(scriptedRow(Table::open(path())->schema(), row));
    }
    failEverywhere("scope",
                   [&](const std::shared_ptr<Table>& table) {
                       return [table, added = Rows(after.end() - 2, after.end())] {
                           WriteScope scope(*table, WriteScope::Writing::Together);
                           for (const Bytes& row : added) {
                               table->append(row, Durability::Process);
                           }
                           scope.commit();
                       };
                   },
                   {firstRows_, after});
}

TEST_F(AllocationFaultTest, EveryKindOfChange) {
    Schema schema = Table::open(path())->schema();
    std::vector<std::string> seen;
    for (const Step& step : shortScript(schema)) {
        const std::string kind = step.name.substr(0, step.name.find(' '));
        if (kind == "walk" || std::ranges::find(seen, kind) != seen.end()) {
            continue; // one of each
        }
        seen.push_back(kind);
        failInStep(step);
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_EQ(seen.size(), 7U);
}

class AllocationInLoadTest : public AllocationFaultTest {
protected:
    static constexpr int added = 30;

    [[nodiscard]] Rows withAdded(Rows rows) const {
        for (int i = 0; i < added; ++i) {
            rows.push_back(scriptedRow(schema_, i));
        }
        return rows;
    }
    [[nodiscard]] Ready load(BulkLoader::Mode mode) const {
        return [this, mode, rows = withAdded({})] {
            BulkLoader loader(path(), mode);
            for (const Bytes& row : rows) {
                loader.add(row);
            }
            loader.finish();
        };
    }

    Schema schema_ = Table::open(path())->schema();
};

TEST_F(AllocationInLoadTest, AddingRows) {
    failEverywhere("load", [&](const std::shared_ptr<Table>&) { return load(BulkLoader::Mode::Append); },
                   {firstRows_, withAdded(firstRows_)});
}

TEST_F(AllocationInLoadTest, ReplacingRows) {
    shortage.operation = "replacing load";
    const Rows after = withAdded({});
    for (const bool lasts : {false, true}) {
        for (std::size_t number = 1;; ++number) {
            SCOPED_TRACE(number);
            putBack();
            const Ready ready = load(BulkLoader::Mode::Replace);
            const bool isDone = runShort(ready, number, lasts);
            const bool isOver = isDone && shortage.requests < number;
            const Rows found = rowsOf(*Table::open(path()));
            expectOneOf({firstRows_, after}, found, isDone);
            ASSERT_NO_THROW(ready()) << "with all the memory";
            expectSound();
            ASSERT_FALSE(HasFailure());
            if (isOver) {
                break;
            }
        }
    }
}

} // namespace
