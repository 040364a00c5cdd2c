// A checksum of bytes, eight at a time: detects chance, half-written blocks and other files, not malice.
#pragma once

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

[[nodiscard]] inline std::uint64_t checksum(std::span<const char> bytes) {
    Checksum sum(bytes.size());
    sum.add(bytes);
    return sum.value();
}

} // namespace dbase
