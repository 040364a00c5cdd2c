// The positions of the locks, and the guards that hold them. See docs/locking.md.
#pragma once

#include <chrono>
#include <cstdint>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"
#include "dbase/system/file.h"

namespace dbase {

/// Byte offsets of the dBase scheme, far beyond the data, so that locked records stay readable.
namespace lock_offset {
inline constexpr std::uint64_t header = 0xEFFFFFFE;
inline constexpr std::uint64_t append = 0xEFFFFFFF;
inline constexpr std::uint64_t presence = 0xF0000010; // from here on ours: other programs do not use these
inline constexpr std::uint64_t opening = 0xF0000011;
inline constexpr std::uint64_t exchange = 0xF0000012;
inline constexpr std::uint64_t waiting = 0xF0000013;
inline constexpr std::uint64_t writing = 0xF0000014;
inline constexpr std::uint64_t loading = 0xF0000015;
inline constexpr std::uint64_t waitingReader = 0xF0000016;
} // namespace lock_offset

[[nodiscard]] constexpr LockRange recordLock(RecordNumber record) {
    return {lock_offset::header - record, 1};
}
/// On the .MDX (or the .DBF of a table without one): the whole structure.
inline constexpr LockRange structureLock{lock_offset::header, 1};
/// On the .DBF while a record is added: header and append byte in one.
inline constexpr LockRange appendLock{lock_offset::header, 2};
/// The same in any table: without an index the structure lock takes the header byte already.
[[nodiscard]] constexpr LockRange appendRange(bool hasIndex) {
    return hasIndex ? appendLock : LockRange{lock_offset::append, 1};
}

/// Every lock of an open file; if there is only one, releasing all is cheaper for the system.
inline constexpr LockRange everyLock{0, 0};
/// On the .DBF: header, append and every record byte, as the dBase family locks a whole table.
inline constexpr LockRange wholeTableLock{lock_offset::header - 1'000'000'000, 1'000'000'002};
/// On the .DBF: shared by all programs that have the table open, exclusive while its files are replaced.
inline constexpr LockRange presenceLock{lock_offset::presence, 1};
/// On the .DBF: shared by a program from its first change of the table on, exclusive for the last one of them
/// to leave.
inline constexpr LockRange writingLock{lock_offset::writing, 1};
/// On the .DBF while a program opens the table and, if it is alone, recovers what the last ones left.
inline constexpr LockRange openingLock{lock_offset::opening, 1};

/// On the .DBF and the journal of a network folder, shared: taking and releasing it inside the structure lock
/// makes this machine fetch the server's bytes again and send its own.
inline constexpr LockRange exchangeLock{lock_offset::exchange, 1};

/// Beside the structure lock, shared: a writer is waiting for that. Programs that keep reading check it from
/// time to time.
inline constexpr LockRange waitingLock{lock_offset::waiting, 1};
/// Beside the structure lock, exclusive: a load has shared its structure lock with readers, who need not make
/// way for the other writers, as it keeps those out.
inline constexpr LockRange loadingLock{lock_offset::loading, 1};
/// Beside the structure lock, shared: a reader is waiting for that. Programs that write group after group let
/// it in.
inline constexpr LockRange waitingReaderLock{lock_offset::waitingReader, 1};

/// How long an operation waits for all its locks together before it fails with Error(LockTimeout).
[[nodiscard]] std::chrono::milliseconds lockPatience();
void setLockPatience(std::chrono::milliseconds patience);
/// The clock of the waits; null for the system's.
void setLockClock(std::chrono::nanoseconds (*clock)());

/// One operation: during its lifetime the waits of this thread count together, those before it apart. They
/// nest; the outermost one counts.
class AMBREL_EXPORT LockWaits {
public:
    LockWaits();
    ~LockWaits();
    LockWaits(const LockWaits&) = delete;
    LockWaits& operator=(const LockWaits&) = delete;
};

/// Takes a lock, waiting no longer than the operation may still wait; waiting releases what read scopes keep.
/// Errors: Error(LockTimeout).
void holdLock(File& file, LockRange range, LockKind kind);

/// Call after releasing a structure lock that is soon taken again: pauses, and lets those who show that they
/// wait for it go first.
void letOthersIn(const File& file);

/// Holds one byte-range lock for a block.
class FileLock {
public:
    struct AlreadyHeld {};
    static constexpr AlreadyHeld alreadyHeld{};

    /// Takes the lock with holdLock().
    FileLock(File& file, LockRange range, LockKind kind) : file_(file), range_(range) {
        holdLock(file, range, kind);
    }
    /// Takes over a lock that the caller obtained with tryLock().
    FileLock(File& file, LockRange range, AlreadyHeld) : file_(file), range_(range) {}
    ~FileLock() { file_.unlock(range_); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    File& file_;
    LockRange range_;
};

/// Holds the structure lock of one open table for a block. Locks belong to the open file: a second lock
/// through the same opening would change the first, and releasing it would drop both, so the holders of one
/// opening are counted here.
class StructureLock {
public:
    struct Holders {
        unsigned readers = 0;
        bool isChanging = false;
        LockRange release = structureLock; // released at the end
        File* exchanged = nullptr;         // another file of the table, in a network folder
    };

    /// An exclusive lock releases what this thread's read scopes keep. Readers share the lock; a read or
    /// change during a change through the same opening (from a progress callback, say) fails at once with
    /// Error(LockTimeout).
    StructureLock(File& file, Holders& holders, LockKind kind);
    ~StructureLock();
    StructureLock(const StructureLock&) = delete;
    StructureLock& operator=(const StructureLock&) = delete;

    /// Turns an exclusive lock into a shared one, without letting another writer in between.
    void share();
    /// Turns a shared lock into an exclusive one; no other writer comes in between if none else does this.
    /// Errors: as of the constructor; the lock is then still shared.
    void exclude();
    [[nodiscard]] bool isShared() const { return kind_ == LockKind::Shared; }

private:
    void requireFree(LockKind kind, unsigned ownReads) const;
    File& file_;
    Holders& holders_;
    LockKind kind_;
};

} // namespace dbase
