// Sums of bytes: the same for the same bytes in whatever pieces, another one for any change.
#include "dbase/system/checksum.h"

#include <algorithm>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace dbase;

std::string someBytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 131 + i / 7);
    }
    return bytes;
}

std::uint64_t interleaved(const std::string& bytes, std::size_t piece) {
    InterleavedChecksum sum(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        sum.add(std::span(bytes).subspan(at, std::min(piece, bytes.size() - at)));
    }
    return sum.value();
}

TEST(InterleavedChecksum, DoesNotDependOnThePiecesInWhichBytesCome) {
    for (const std::size_t size : {0, 1, 31, 32, 33, 500, 4096, 5000}) {
        const std::string bytes = someBytes(size);
        EXPECT_EQ(interleaved(bytes, 32), interleaved(bytes, 8192)) << size;
        EXPECT_EQ(interleaved(bytes, 1024), interleaved(bytes, 8192)) << size;
    }
}

TEST(InterleavedChecksum, ChangesWithEachBit) {
    std::string bytes = someBytes(75); // whole steps, a word and a rest
    std::set<std::uint64_t> sums{interleaved(bytes, 32)};
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        sums.insert(interleaved(bytes, 32));
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
    }
    EXPECT_EQ(sums.size(), bytes.size() * 8 + 1);
}

TEST(InterleavedChecksum, ChangesWhenWordsChangePlacesAndWithTheLength) {
    const std::string bytes = someBytes(64);
    std::string turned = bytes;
    std::swap_ranges(turned.begin(), turned.begin() + 8, turned.begin() + 8);
    EXPECT_NE(interleaved(bytes, 64), interleaved(turned, 64));
    EXPECT_NE(interleaved(std::string(64, '\0'), 64), interleaved(std::string(65, '\0'), 96));
}

} // namespace
