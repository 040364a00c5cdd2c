// A checksum of bytes, eight at a time: detects chance, half-written blocks and other files, not malice.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "dbase/system/bytes.h"

namespace dbase {

class Checksum {
public:
    /// `size`: of all the bytes that will be added.
    explicit Checksum(std::uint64_t size) : sum_(0x9E3779B97F4A7C15 ^ size) {}

    /// Adds bytes; in every piece but the last one their number must be a multiple of eight.
    void add(std::span<const char> bytes) {
        std::size_t at = 0;
        for (; at + 8 <= bytes.size(); at += 8) {
            mix(load64(bytes.data() + at));
        }
        std::memcpy(rest_, bytes.data() + at, bytes.size() - at);
    }
    void addWord(std::uint64_t word) { mix(word); }
    [[nodiscard]] std::uint64_t value() {
        mix(load64(rest_));
        return sum_;
    }

private:
    void mix(std::uint64_t word) {
        sum_ = (sum_ ^ word) * 0xFF51AFD7ED558CCD;
        sum_ ^= sum_ >> 32;
    }

    std::uint64_t sum_;
    char rest_[8] = {};
};

/// The same for long files: four sums side by side, as each step of one has to wait for the step before.
class InterleavedChecksum {
public:
    /// `size`: of all the bytes that will be added.
    explicit InterleavedChecksum(std::uint64_t size)
        : sums_{Checksum(size), Checksum(size), Checksum(size), Checksum(size)} {}

    /// Adds bytes; in every piece but the last one their number must be a multiple of 32.
    void add(std::span<const char> bytes) {
        std::size_t at = 0;
        for (; at + 8 * sums_.size() <= bytes.size(); at += 8 * sums_.size()) {
            for (std::size_t lane = 0; lane < sums_.size(); ++lane) {
                sums_[lane].addWord(load64(bytes.data() + at + 8 * lane));
            }
        }
        sums_.front().add(bytes.subspan(at));
    }
    [[nodiscard]] std::uint64_t value() {
        for (std::size_t lane = 1; lane < sums_.size(); ++lane) {
            sums_.front().addWord(sums_[lane].value());
        }
        return sums_.front().value();
    }

private:
    std::array<Checksum, 4> sums_;
};

[[nodiscard]] inline std::uint64_t checksum(std::span<const char> bytes) {
    Checksum sum(bytes.size());
    sum.add(bytes);
    return sum.value();
}

} // namespace dbase
