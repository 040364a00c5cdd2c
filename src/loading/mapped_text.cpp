// Maps a file, and moves a window of memory along it.
#include "loading/mapped_text.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dbase/system/system_reason.h"
#include "loading/failure.h"

namespace loading {

namespace {

constexpr std::size_t pieceBytes = std::size_t{2} << 20; // brought into memory at once
constexpr std::size_t keptBytes = std::size_t{16} << 20; // behind the reader

} // namespace

std::unique_ptr<MappedText> MappedText::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a pipe must not block
    if (descriptor < 0) {
        throw Failure(path + ": no se puede abrir: " + dbase::systemReason(errno));
    }
    struct stat status = {};
    const bool isFile = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
    std::unique_ptr<MappedText> text(
        new MappedText(path, descriptor, isFile ? static_cast<std::size_t>(status.st_size) : 0));
    return text->view_.data() != nullptr ? std::move(text) : nullptr;
}

MappedText::MappedText(std::string path, int descriptor, std::size_t size)
    : path_(std::move(path)), descriptor_(descriptor), size_(size), view_(descriptor, size) {}

MappedText::~MappedText() { ::close(descriptor_); }

// Without these hints the system brings in and keeps what it likes.
void MappedText::reach(std::size_t offset) {
    const auto advise = [&](std::size_t from, std::size_t to, int advice) {
        // Another thread may still read what is given back; it is then brought in again.
        static_cast<void>(madvise(const_cast<char*>(view_.data()) + from, to - from, advice));
    };
    while (end_ < size_ && end_ <= offset) {
        const std::size_t next = std::min(end_ + pieceBytes, size_);
        advise(end_, next, MADV_WILLNEED);
        end_ = next;
    }
    for (; begin_ + pieceBytes + keptBytes <= offset; begin_ += pieceBytes) {
        advise(begin_, begin_ + pieceBytes, MADV_DONTNEED);
    }
}

void MappedText::requireWhole() const {
    struct stat status = {};
    if (view_.isTorn() || fstat(descriptor_, &status) != 0 ||
        static_cast<std::size_t>(status.st_size) < size_) {
        throw Failure(path_ + ": otro programa lo ha cortado mientras se leía");
    }
}

} // namespace loading
