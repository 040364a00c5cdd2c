// The lines of a text of any size, through one buffer.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "loading/text_source.h"

namespace ambrel::directory {

/// Lines end in LF or CR LF; empty ones, and the sign that old systems end a file with, are skipped. Errors:
/// anything the source throws.
class LineReader {
public:
    /// A longer line belongs to another kind of file.
    static constexpr std::size_t maxLength = std::size_t{1} << 14;

    static constexpr std::size_t defaultBufferSize = std::size_t{1} << 20;

    explicit LineReader(loading::TextSource source, std::size_t bufferSize = defaultBufferSize);
    /// Of a text that outlives the lines: they remain valid.
    explicit LineReader(std::string_view text)
        : bytes_(text.size()), data_(text.empty() ? "" : text.data()), end_(text.size()), isExhausted_(true) {
    }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// Reads the next line; false if there are no more.
    [[nodiscard]] bool next();
    /// The line read last, valid until the next one is read; without meaning if it is too long.
    [[nodiscard]] std::string_view line() const { return line_; }
    [[nodiscard]] bool isTooLong() const { return isTooLong_; }
    /// Its number, from 1; empty lines count.
    [[nodiscard]] std::uint64_t number() const { return number_; }
    /// The bytes up to the end of the line.
    [[nodiscard]] std::uint64_t bytes() const { return bytes_ - (end_ - at_); }

private:
    [[nodiscard]] bool nextOfAnyKind();
    [[nodiscard]] bool refill();
    void skipRest();

    loading::TextSource source_;
    std::vector<char> buffer_;
    std::uint64_t bytes_ = 0; // read so far
    const char* data_;
    std::size_t at_ = 0, end_ = 0; // of the bytes not used yet
    bool isExhausted_ = false, isTooLong_ = false;
    std::uint64_t number_ = 0;
    std::string_view line_;
};

} // namespace ambrel::directory
