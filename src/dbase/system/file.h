// A file as the engine needs it: positioned reads and writes, size, sync, byte-range locks and, if the system
// offers it, a view of its bytes in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "dbase/system/file_status.h"

namespace dbase {

enum class OpenMode { ReadOnly, ReadWrite, Create };
enum class LockKind { Shared, Exclusive };

struct LockRange {
    std::uint64_t offset;
    std::uint64_t length; // 0: to the end and beyond
};

/// Files of this size or larger are refused: the classic engines count bytes in 31 bits.
inline constexpr std::uint64_t maxFileSize = 0x7FFFFFFF;

class File {
public:
    virtual ~File() = default;
    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] virtual const std::string& path() const = 0;
    [[nodiscard]] virtual bool isWritable() const = 0;

    /// Errors of everything below: Error(Io, DiskFull), which names the file.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Asked of the system each time. One in memory is root's.
    [[nodiscard]] virtual FileStatus status() const { return {}; }
    /// Reads exactly the bytes requested; Error(Io) if the file ends before them.
    virtual void read(std::uint64_t offset, std::span<char> bytes) const = 0;
    virtual void write(std::uint64_t offset, std::span<const char> bytes) = 0;
    /// Writes over existing bytes. A death may leave a first part of them, but no half of an aligned number.
    virtual void rewrite(std::uint64_t offset, std::span<const char> bytes) { write(offset, bytes); }
    virtual void resize(std::uint64_t size) = 0;
    /// Takes room on the disk for the file to grow to this size, where the system can: writes up to there
    /// then do not fail for lack of it.
    virtual void reserve(std::uint64_t /*size*/) {}
    /// Flushes the data to the disk.
    virtual void sync() = 0;
    /// Hints that it will be flushed: the system may begin with what was written so far.
    virtual void beginSync() {}
    /// Hints that its bytes will hardly be read again: the system may use their memory for others.
    virtual void dropCache() {}

    /// Whether the file is on another machine: then this one refreshes its cached bytes only when a lock on
    /// the file is taken, and sends changes only when one is released.
    [[nodiscard]] virtual bool isRemote() const { return false; }

    /// Start of a read-only view of the whole file that follows its changes and growth; null if there is
    /// none. Only bytes below size() may be read. If another process truncates the file meanwhile, they read
    /// as 0 and viewIsTorn() returns true.
    [[nodiscard]] virtual const char* view() const { return nullptr; }
    [[nodiscard]] virtual bool viewIsTorn() const { return false; }
    /// Renews a torn view, up to the file's present end.
    virtual void renewView() {}

    /// Advisory lock of this open file; two opens of one file exclude each other, even within one process.
    /// False if another holder has it.
    [[nodiscard]] virtual bool tryLock(LockRange range, LockKind kind) = 0;
    virtual void unlock(LockRange range) noexcept = 0;
    /// Whether another holder has any lock in the range. Needs no write permission.
    [[nodiscard]] virtual bool isLockedByOthers(LockRange range) const = 0;
};

/// Opens a file on disk; Create creates or empties it. Errors: Error(NotFound, AccessDenied, Io).
[[nodiscard]] std::unique_ptr<File> openFile(const std::string& path, OpenMode mode);

} // namespace dbase
