// Where the locks lie, and the guards that hold them. See docs/locking.md.
#pragma once

#include <chrono>
#include <cstdint>

#include "dbase/file.h"
#include "dbase/schema.h"

namespace dbase {

/// Byte offsets of the dBase scheme, far beyond the data, so that locked records stay readable.
namespace lock_offset {
inline constexpr std::uint64_t header = 0xEFFFFFFE;
inline constexpr std::uint64_t append = 0xEFFFFFFF;
inline constexpr std::uint64_t presence = 0xF0000010; // ours: no other program looks at it
} // namespace lock_offset

[[nodiscard]] constexpr LockRange recordLock(RecordNumber record) { return {lock_offset::header - record, 1}; }
/// On the .MDX (on the .DBF of a table without one): the whole structure.
inline constexpr LockRange structureLock{lock_offset::header, 1};
/// On the .DBF while a record is added: header and append byte in one.
inline constexpr LockRange appendLock{lock_offset::header, 2};

/// On the .DBF, shared by everybody who has the table open, exclusive while its files are replaced.
inline constexpr LockRange presenceLock{lock_offset::presence, 1};

/// How long a structure lock may keep an operation waiting before it fails with Error(LockTimeout).
[[nodiscard]] std::chrono::milliseconds lockPatience();
void setLockPatience(std::chrono::milliseconds patience);

/// Takes a lock, waiting at most lockPatience(). Errors: Error(LockTimeout).
void holdLock(File& file, LockRange range, LockKind kind);

/// Holds one byte-range lock for a block.
class FileLock {
public:
    /// As holdLock().
    FileLock(File& file, LockRange range, LockKind kind) : file_(file), range_(range) { holdLock(file, range, kind); }
    ~FileLock() { file_.unlock(range_); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    File& file_;
    LockRange range_;
};

} // namespace dbase
