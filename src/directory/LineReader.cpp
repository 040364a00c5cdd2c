// Cuts a text into lines.
#include "directory/LineReader.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace ambrel::directory {

LineReader::LineReader(loading::TextSource source, std::size_t bufferSize)
    : source_(std::move(source)), buffer_(std::max(bufferSize, maxLength + 1)), data_(buffer_.data()) {}

bool LineReader::next() {
    constexpr char endOfOldFiles = '\x1A';
    while (nextOfAnyKind()) {
        if (line_.ends_with('\r')) {
            line_.remove_suffix(1);
        }
        if (isTooLong_ || (!line_.empty() && line_.front() != endOfOldFiles)) {
            return true;
        }
    }
    return false;
}

bool LineReader::nextOfAnyKind() {
    isTooLong_ = false;
    std::size_t searched = 0;
    while (true) {
        const std::size_t size = end_ - at_;
        const char* const begin = data_ + at_;
        const void* const found = std::memchr(begin + searched, '\n', size - searched);
        if (found != nullptr || size > maxLength || isExhausted_) {
            const std::size_t length =
                found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - begin) : size;
            if (found == nullptr && size == 0) {
                return false;
            }
            ++number_;
            isTooLong_ = length > maxLength;
            line_ = {begin, std::min(length, maxLength)};
            at_ += length + (found != nullptr ? 1 : 0);
            if (found == nullptr && !isExhausted_) {
                skipRest();
            }
            return true;
        }
        searched = size;
        isExhausted_ = !refill();
    }
}

// The beginning of a line moves to the front of the buffer, which has room for more than the longest.
bool LineReader::refill() {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(at_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= std::exchange(at_, 0);
    const std::size_t got = source_(std::span(buffer_).subspan(end_));
    end_ += got;
    bytes_ += got;
    return got > 0;
}

// Bytes of a line that is too long. Its beginning is given up as well: nobody could show more than that it
// is.
void LineReader::skipRest() {
    line_ = {};
    while (true) {
        at_ = end_ = 0;
        if (!refill()) {
            isExhausted_ = true;
            return;
        }
        if (const void* const found = std::memchr(buffer_.data(), '\n', end_)) {
            at_ = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) + 1;
            return;
        }
    }
}

} // namespace ambrel::directory
