// A file that lives in memory.
#include "MemoryFile.h"

#include <algorithm>

#include "dbase/system/error.h"

namespace dbase::test {

std::uint64_t MemoryContent::nextInode() {
    static std::uint64_t last = 0;
    return ++last;
}

MemoryFile::MemoryFile(std::shared_ptr<MemoryContent> content, std::string path, bool writable)
    : content_(std::move(content)), path_(std::move(path)), writable_(writable) {}

MemoryFile::~MemoryFile() {
    std::erase_if(content_->locks, [this](const MemoryContent::Lock& lock) { return lock.owner == this; });
}

FileStatus MemoryFile::status() const {
    FileStatus status;
    status.inode = content_->inode;
    return status;
}

void MemoryFile::read(std::uint64_t offset, std::span<char> bytes) const {
    if (offset + bytes.size() > content_->bytes.size()) {
        throw Error(ErrorCode::Io, path_, "el fichero termina antes de lo esperado");
    }
    std::copy_n(content_->bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
}

void MemoryFile::write(std::uint64_t offset, std::span<const char> bytes) {
    if (!writable_) {
        throw Error(ErrorCode::AccessDenied, path_, "no se puede escribir");
    }
    if (offset + bytes.size() > content_->bytes.size()) {
        content_->bytes.resize(offset + bytes.size());
    }
    std::copy(bytes.begin(), bytes.end(), content_->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

void MemoryFile::resize(std::uint64_t size) {
    if (!writable_) {
        throw Error(ErrorCode::AccessDenied, path_, "no se puede cambiar el tamaño");
    }
    content_->bytes.resize(size);
}

bool MemoryFile::tryLock(LockRange range, LockKind kind) {
    for (const MemoryContent::Lock& lock : content_->locks) {
        const bool overlaps = lock.range.offset < range.offset + range.length &&
                              range.offset < lock.range.offset + lock.range.length;
        if (lock.owner != this && overlaps &&
            (kind == LockKind::Exclusive || lock.kind == LockKind::Exclusive)) {
            return false;
        }
    }
    unlock(range); // a second lock of the same opening replaces the first
    content_->locks.push_back({this, range, kind});
    return true;
}

bool MemoryFile::isLockedByOthers(LockRange range) const {
    return std::any_of(content_->locks.begin(), content_->locks.end(), [&](const MemoryContent::Lock& lock) {
        return lock.owner != this && lock.range.offset < range.offset + range.length &&
               range.offset < lock.range.offset + lock.range.length;
    });
}

void MemoryFile::unlock(LockRange range) noexcept {
    std::erase_if(content_->locks, [&](const MemoryContent::Lock& lock) {
        // A length of 0 reaches to the end of the file, as for the system.
        return lock.owner == this &&
               (range.length == 0 ? lock.range.offset >= range.offset : lock.range.offset == range.offset);
    });
}

} // namespace dbase::test
