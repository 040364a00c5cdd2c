// The lock that read scopes keep on one table; see read_scope.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "dbase/lock/locks.h"

namespace dbase {

/// How long a scope may keep writers waiting.
inline constexpr std::chrono::milliseconds longestHold{20};
/// How often reads without a scope, in close succession, look for waiting writers.
inline constexpr std::chrono::milliseconds longestRun{5};
/// How long readers wait for a waiting writer to have its turn: several times as long as they read before, so
/// that even many readers are all waiting at some moment.
inline constexpr std::chrono::milliseconds longestPause{100};

/// The shared structure lock of an open table, kept from one read to the next. It counts as a reader besides
/// the reads themselves, so that releasing it during a read leaves that read its lock. The table must outlive
/// it.
class ReadHold {
public:
    ReadHold(File& file, StructureLock::Holders& holders) : file_(file), holders_(holders) {}
    ~ReadHold() { letGo(); }
    ReadHold(const ReadHold&) = delete;
    ReadHold& operator=(const ReadHold&) = delete;

    /// Call before each read, and before each use of what an earlier one returned. If this thread has kept
    /// its locks, or read without a scope, for long enough, releases all of them and lets the writers waiting
    /// for them go first.
    void giveWay();
    /// Call inside a read, which holds the lock and has found the table sound. Does nothing outside scopes.
    void keep();
    void letGo();
    /// Identifies the time since keep(), during which the table does not change; 0 if the lock is not kept.
    [[nodiscard]] std::uint64_t number() const { return number_; }

private:
    friend class ReadScope;

    void giveWayUnscoped();
    void giveWayInScope();
    void letWritersIn();

    File& file_;
    StructureLock::Holders& holders_;
    std::optional<StructureLock> lock_;
    std::uint64_t number_ = 0;
    std::chrono::nanoseconds looked_{0}; // when reads without a scope last looked for writers
    ReadHold* next_ = nullptr;           // in the list of those that this thread keeps
};

/// The clock of the holds; null for the system's.
void setHoldClock(std::chrono::nanoseconds (*clock)());

} // namespace dbase
