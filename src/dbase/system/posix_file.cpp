// Files on disk: positioned system calls, open-file-description locks, a guarded memory view.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "dbase/system/error.h"
#include "dbase/system/file.h"
#include "dbase/system/file_copy.h"
#include "dbase/system/file_pieces.h"
#include "dbase/system/file_size_limit.h"
#include "dbase/system/mapped_view.h"
#include "dbase/system/posix_file.h"
#include "dbase/system/system_reason.h"

namespace dbase {

void raise(const std::string& path, const char* action) {
    const int number = errno;
    ErrorCode code = ErrorCode::Io;
    std::string advice;
    if (number == ENOENT || number == ENOTDIR) {
        code = ErrorCode::NotFound;
    } else if (number == EACCES || number == EPERM || number == EROFS) {
        code = ErrorCode::AccessDenied;
    } else if (number == ENOSPC || number == EDQUOT || number == EFBIG) {
        code = ErrorCode::DiskFull;
        advice = number == EFBIG ? "; suba ese límite (ulimit -f) o libere espacio y repita la operación"
                                 : "; libere espacio y repita la operación";
    }
    throw Error(code, path, std::string(action) + ": " + systemReason(number) + advice);
}

namespace {

bool liesElsewhere(int descriptor) {
    constexpr long cifs = 0xFF534D42; // missing from some versions of the system's header
    struct statfs system = {};
    if (fstatfs(descriptor, &system) != 0) {
        return false;
    }
    const auto type = static_cast<long>(static_cast<unsigned int>(system.f_type));
    return type == NFS_SUPER_MAGIC || type == SMB_SUPER_MAGIC || type == SMB2_SUPER_MAGIC || type == cifs ||
           type == FUSE_SUPER_MAGIC || type == V9FS_MAGIC || type == AFS_SUPER_MAGIC ||
           type == CEPH_SUPER_MAGIC;
}

struct flock requestOf(LockRange range, short type) {
    struct flock request = {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    request.l_start = static_cast<off_t>(range.offset);
    request.l_len = static_cast<off_t>(range.length);
    return request;
}

/// Stores the number at the beginning of the bytes and goes on after it, if there is one at a multiple of its
/// size.
template<typename Number>
bool storeOne(char*& to, std::span<const char>& bytes) {
    if (bytes.size() < sizeof(Number) || reinterpret_cast<std::uintptr_t>(to) % sizeof(Number) != 0) {
        return false;
    }
    Number number;
    std::memcpy(&number, bytes.data(), sizeof number);
    std::atomic_ref(*reinterpret_cast<Number*>(to)).store(number, std::memory_order_release);
    to += sizeof number;
    bytes = bytes.subspan(sizeof number);
    return true;
}

/// A death of the process between two stores leaves those before it.
void storeInOrder(char* to, std::span<const char> bytes) {
    while (storeOne<std::uint64_t>(to, bytes) || storeOne<std::uint32_t>(to, bytes) ||
           storeOne<char>(to, bytes)) {
    }
}

constexpr std::size_t largestList = 4096;

FileStatus statusFrom(const struct stat& status, const char* list, ssize_t listSize) {
    return {status.st_dev,
            status.st_ino,
            status.st_nlink,
            status.st_uid,
            status.st_gid,
            status.st_mode & 0777,
            listSize > 0 ? std::string(list, static_cast<std::size_t>(listSize)) : std::string()};
}

class PosixFile final : public File {
public:
    PosixFile(std::string path, int descriptor, bool writable)
        : path_(std::move(path)), descriptor_(descriptor), writable_(writable),
          remote_(liesElsewhere(descriptor)), view_(descriptor, maxFileSize) {}
    ~PosixFile() override { ::close(descriptor_); }

    const std::string& path() const override { return path_; }
    bool isWritable() const override { return writable_; }
    bool isRemote() const override { return remote_; }

    // A server is asked for it; here it is known without a question for the file's times (see
    // posix_folders.cpp).
    std::uint64_t size() const override {
        struct stat status = {};
        if (remote_ ? fstat(descriptor_, &status) != 0
                    : (status.st_size = lseek(descriptor_, 0, SEEK_END)) < 0) {
            raise(path_, "no se puede leer el tamaño");
        }
        return static_cast<std::uint64_t>(status.st_size);
    }

    FileStatus status() const override {
        if (const auto status = statusOf(descriptor_)) {
            return *status;
        }
        raise(path_, "no se puede consultar");
    }

    void read(std::uint64_t offset, std::span<char> bytes) const override {
        while (!bytes.empty()) {
            const ssize_t got = pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                raise(path_, "no se puede leer");
            }
            if (got == 0) {
                throw Error(ErrorCode::Io, path_,
                            "el fichero termina antes de lo esperado (posición " + std::to_string(offset) +
                                ")");
            }
            bytes = bytes.subspan(static_cast<std::size_t>(got));
            offset += static_cast<std::uint64_t>(got);
        }
    }

    void write(std::uint64_t offset, std::span<const char> bytes) override {
        const FileSizeSignal signal;
        while (!bytes.empty()) {
            const ssize_t put = pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (put < 0 && errno == EINTR) {
                continue;
            }
            if (put < 0) {
                raise(path_, "no se puede escribir");
            }
            bytes = bytes.subspan(static_cast<std::size_t>(put));
            offset += static_cast<std::uint64_t>(put);
        }
    }

    // As a store into memory: a small write into one of a system's large pages for files costs a hundred
    // times as much.
    void rewrite(std::uint64_t offset, std::span<const char> bytes) override {
        if (!store(offset, bytes)) {
            write(offset, bytes);
        }
    }

    void resize(std::uint64_t size) override {
        const FileSizeSignal signal;
        knownEnd_ = 0;
        if (ftruncate(descriptor_, static_cast<off_t>(size)) != 0) {
            raise(path_, "no se puede cambiar el tamaño");
        }
    }

    void reserve(std::uint64_t size) override {
        const FileSizeSignal signal;
        const std::uint64_t present = this->size();
        if (size > present &&
            fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(present),
                      static_cast<off_t>(size - present)) != 0 &&
            (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) {
            raise(path_, "no se puede escribir");
        }
    }

    void sync() override {
        if (fdatasync(descriptor_) != 0) {
            raise(path_, "no se puede asegurar en el disco");
        }
    }

    /// Has the system copy another file from its beginning; returns how many bytes it has copied.
    [[nodiscard]] std::uint64_t copyFrom(const PosixFile& other, std::uint64_t size) {
        const FileSizeSignal signal;
        off64_t from = 0, to = 0;
        while (static_cast<std::uint64_t>(from) < size) {
            const ssize_t put = copy_file_range(other.descriptor_, &from, descriptor_, &to,
                                                size - static_cast<std::uint64_t>(from), 0);
            if (put > 0 || (put < 0 && errno == EINTR)) {
                continue;
            }
            if (put < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO)) {
                raise(path_, "no se puede escribir");
            }
            break; // it cannot do it between these file systems
        }
        return static_cast<std::uint64_t>(from);
    }

    void beginSync() override {
        static_cast<void>(sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE)); // or else sync() does
    }
    void dropCache() override { static_cast<void>(posix_fadvise(descriptor_, 0, 0, POSIX_FADV_DONTNEED)); }

    const char* view() const override { return view_.data(); }
    bool viewIsTorn() const override { return view_.isTorn(); }
    void renewView() override { view_.renew(); }

    bool tryLock(LockRange range, LockKind kind) override {
        struct flock request = requestOf(range, kind == LockKind::Shared ? F_RDLCK : F_WRLCK);
        while (fcntl(descriptor_, F_OFD_SETLK, &request) != 0) {
            if (errno == EAGAIN || errno == EACCES) {
                return false;
            }
            if (errno != EINTR) {
                raise(path_, "no se puede bloquear");
            }
        }
        return true;
    }

    void unlock(LockRange range) noexcept override {
        struct flock request = requestOf(range, F_UNLCK);
        while (fcntl(descriptor_, F_OFD_SETLK, &request) != 0 && errno == EINTR) {
        }
    }

    bool isLockedByOthers(LockRange range) const override {
        struct flock request = requestOf(range, F_WRLCK);
        if (fcntl(descriptor_, F_OFD_GETLK, &request) != 0) {
            raise(path_, "no se pueden consultar los bloqueos");
        }
        return request.l_type != F_UNLCK;
    }

private:
    /// False if the bytes may not have arrived: no room on the disk, or another program has cut the file.
    bool store(std::uint64_t offset, std::span<const char> bytes) {
        const std::uint64_t end = offset + bytes.size();
        if (end > knownEnd_) {
            knownEnd_ = std::min(size(), maxFileSize);
        }
        if (remote_ || end > knownEnd_ || bytes.size() > largestStore) {
            return false;
        }
        if (!stores_) {
            stores_.emplace(descriptor_, maxFileSize, MappedView::Access::Write);
        }
        if (stores_->data() == nullptr) {
            return false;
        }
        storeInOrder(stores_->writableData() + offset, bytes);
        std::atomic_signal_fence(std::memory_order_seq_cst); // a handler sets what comes next
        if (stores_->isTorn()) {
            stores_->renew();
            knownEnd_ = 0;
            return false;
        }
        return true;
    }

    static constexpr std::size_t largestStore = std::size_t{64} << 10; // more is faster as a write

    std::string path_;
    int descriptor_;
    bool writable_, remote_;
    MappedView view_;
    std::optional<MappedView> stores_; // made by the first one
    std::uint64_t knownEnd_ = 0;       // of the file; only other programs cut it
};

} // namespace

void copyContents(const File& from, File& to) {
    const std::uint64_t size = from.size();
    const auto* const source = dynamic_cast<const PosixFile*>(&from);
    auto* const target = dynamic_cast<PosixFile*>(&to);
    std::uint64_t at = source != nullptr && target != nullptr ? target->copyFrom(*source, size) : 0;
    std::vector<char> piece;
    while (at < size) {
        piece.resize(static_cast<std::size_t>(std::min(size - at, pieceBytes - at % pieceBytes)));
        from.read(at, piece);
        to.write(at, piece);
        at += piece.size();
    }
    to.beginSync(); // so that there is less to wait for at the end
}

std::unique_ptr<File> openFile(const std::string& path, OpenMode mode) {
    int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK; // a pipe in place of a table must not block
    if (mode == OpenMode::ReadOnly) {
        flags |= O_RDONLY;
    } else {
        flags |= mode == OpenMode::Create ? O_RDWR | O_CREAT | O_TRUNC : O_RDWR;
    }
    const int descriptor = ::open(path.c_str(), flags, 0666);
    if (descriptor < 0) {
        const bool mayPerhapsRead = errno == EACCES || errno == EPERM || errno == EROFS;
        raise(path, mayPerhapsRead && mode != OpenMode::ReadOnly ? "no se puede abrir para escribir"
                                                                 : "no se puede abrir");
    }
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        throw Error(ErrorCode::BadTable, path, "no es un fichero de datos");
    }
    return fileOf(descriptor, path, mode != OpenMode::ReadOnly);
}

std::unique_ptr<File> fileOf(int descriptor, const std::string& path, bool isWritable) {
    FileSizeSignal::lookForLimit();
    return std::make_unique<PosixFile>(path, descriptor, isWritable);
}

std::optional<FileStatus> statusOf(int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    char list[largestList];
    return statusFrom(status, list, fgetxattr(descriptor, accessListName, list, sizeof list));
}

std::optional<FileStatus> statusAt(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    char list[largestList];
    return statusFrom(status, list, getxattr(path.c_str(), accessListName, list, sizeof list));
}

} // namespace dbase
