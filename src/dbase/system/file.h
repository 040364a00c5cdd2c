// A file as the engine needs it: positioned reads and writes, size, sync, byte-range locks and, where the
// system offers it, a view of its bytes in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace dbase {

enum class OpenMode { ReadOnly, ReadWrite, Create };
enum class LockKind { Shared, Exclusive };

struct LockRange {
    std::uint64_t offset;
    std::uint64_t length; // 0: to the end and beyond
};

/// Files of this size and over are refused: the classic engines count bytes in 31 bits.
inline constexpr std::uint64_t maxFileSize = 0x7FFFFFFF;

class File {
public:
    virtual ~File() = default;
    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] virtual const std::string& path() const = 0;
    [[nodiscard]] virtual bool isWritable() const = 0;

    /// Errors of all below: Error(Io, DiskFull) naming the file.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Reads exactly the bytes asked for; a file that ends before is Error(Io).
    virtual void read(std::uint64_t offset, std::span<char> bytes) const = 0;
    virtual void write(std::uint64_t offset, std::span<const char> bytes) = 0;
    virtual void resize(std::uint64_t size) = 0;
    /// Data to the disk.
    virtual void sync() = 0;

    /// Whether it lies on another machine: then what this one remembers of it is only looked at anew when a
    /// lock is taken on it, and only sent when one is let go.
    [[nodiscard]] virtual bool isRemote() const { return false; }

    /// Start of a read-only view of the whole file that follows its changes and growth, or null when there is
    /// none. Only the bytes below size() may be looked at. When somebody cuts the file meanwhile they read as
    /// 0 and viewIsTorn() says so.
    [[nodiscard]] virtual const char* view() const { return nullptr; }
    [[nodiscard]] virtual bool viewIsTorn() const { return false; }
    /// Makes a torn view whole again, as far as the file reaches now.
    virtual void renewView() {}

    /// Advisory lock of this open file; two opens of one file exclude each other, also inside one process.
    /// False when somebody else holds it.
    [[nodiscard]] virtual bool tryLock(LockRange range, LockKind kind) = 0;
    virtual void unlock(LockRange range) noexcept = 0;
    /// Whether somebody else holds any lock there. Needs no permission to write.
    [[nodiscard]] virtual bool isLockedByOthers(LockRange range) const = 0;
};

/// Opens a file of the disk. Errors: Error(NotFound, AccessDenied, Io); Create makes it or empties it.
[[nodiscard]] std::unique_ptr<File> openFile(const std::string& path, OpenMode mode);

/// Puts the names of the files of a folder on the disk, as far as its file system can.
void syncFolderOf(const std::string& path);

/// Number that names an open file of the disk whatever its path ("device:inode").
[[nodiscard]] std::string fileIdentity(const std::string& path);

} // namespace dbase
