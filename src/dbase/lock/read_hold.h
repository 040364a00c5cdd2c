// The lock that read scopes keep on one table; see read_scope.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "dbase/lock/locks.h"

namespace dbase {

/// How long a scope may keep writers waiting.
inline constexpr std::chrono::milliseconds longestHold{20};

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
    /// its locks long enough, releases all of them and lets the writers waiting for them go first.
    void giveWay();
    /// Call inside a read, which holds the lock and has found the table sound. Does nothing outside scopes.
    void keep();
    void letGo();
    /// Identifies the time since keep(), during which the table does not change; 0 if the lock is not kept.
    [[nodiscard]] std::uint64_t number() const { return number_; }

private:
    friend class ReadScope;

    void letWritersIn();

    File& file_;
    StructureLock::Holders& holders_;
    std::optional<StructureLock> lock_;
    std::uint64_t number_ = 0;
    ReadHold* next_ = nullptr; // in the list of those that this thread keeps
};

/// The clock of the holds; null for the system's.
void setHoldClock(std::chrono::nanoseconds (*clock)());

} // namespace dbase
