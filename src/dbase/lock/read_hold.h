// What read scopes keep of one table; see read_scope.h.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "dbase/lock/locks.h"

namespace dbase {

/// How long a scope keeps writers waiting before it lets them in.
inline constexpr std::chrono::milliseconds longestHold{20};

/// The shared structure lock of an open table, kept from one read to the next: one more reader beside the
/// reads themselves, so that letting go of it in the middle of a read leaves that read its lock. The table
/// must outlive it.
class ReadHold {
public:
    ReadHold(File& file, StructureLock::Holders& holders) : file_(file), holders_(holders) {}
    ~ReadHold() { letGo(); }
    ReadHold(const ReadHold&) = delete;
    ReadHold& operator=(const ReadHold&) = delete;

    /// Comes before each read, and before each use of what an earlier one brought. When this thread has kept
    /// its locks for long enough, it lets go of all of them, and writers that wait for one of them go first.
    void giveWay();
    /// Inside a read, which has the lock and found the table sound. Nothing outside of scopes.
    void keep();
    void letGo();
    /// Names the time since keep(), in which nobody changes the table; 0 while the lock is not kept.
    [[nodiscard]] std::uint64_t number() const { return number_; }

private:
    friend class ReadScope;

    void letWritersIn();

    File& file_;
    StructureLock::Holders& holders_;
    std::optional<StructureLock> lock_;
    std::uint64_t number_ = 0;
    ReadHold* next_ = nullptr; // of those that this thread keeps
};

/// The clock of the holds; null for the system's.
void setHoldClock(std::chrono::nanoseconds (*clock)());

} // namespace dbase
