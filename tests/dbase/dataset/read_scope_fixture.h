// Two tables that a test reads under one lock, on a clock of its own.
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/lock/locks.h"
#include "dbase/lock/read_hold.h"
#include "dbase/lock/read_scope.h"
#include "dbase/table/table.h"
#include "support/TableTest.h"

namespace dbase {

/// A clock that the test moves.
struct OwnClock {
    OwnClock() {
        setHoldClock([] { return now; });
    }
    ~OwnClock() { setHoldClock(nullptr); }
    OwnClock(const OwnClock&) = delete;
    OwnClock& operator=(const OwnClock&) = delete;

    static inline std::chrono::nanoseconds now = std::chrono::hours(1);
};

class ReadScopeTest : public ambrel::test::TableTest {
protected:
    ReadScopeTest() {
        for (const char* name : {"ONE", "TWO"}) {
            std::vector<ambrel::test::Row> rows;
            for (int i = 0; i < 300; ++i) {
                rows.push_back({codeOf(i)});
            }
            createTable(ambrel::test::defineTable(name, {"CODE C6"}, {"CODE"}), rows);
        }
        OwnClock::now += std::chrono::hours(1); // long after the last test
    }
    static std::string codeOf(int row) { return std::to_string(1000 + 10 * row); }
    /// For another process, whose failures reach this one only as exceptions.
    static void require(bool condition) {
        if (!condition) {
            throw std::runtime_error("not found");
        }
    }
    static bool find(Dataset& table, const std::string& code) {
        return table.seek({{"CODE", code}}, SeekMode::Exact);
    }
    static void insert(Dataset& table, const std::string& code) {
        table.append();
        table.field("CODE").setText(code);
        table.post();
    }
    /// As another program sees it.
    [[nodiscard]] bool isLocked(const std::string& table = "ONE") const {
        return openFile(folder / (table + ".MDX"), OpenMode::ReadOnly)->isLockedByOthers(structureLock);
    }
    [[nodiscard]] std::uint64_t hold() { return one_.openTable().holdNumber(); }

    OwnClock clock_;
    Dataset one_{"DB", "ONE", "CODE"}, two_{"DB", "TWO", "CODE"};
};

} // namespace dbase
