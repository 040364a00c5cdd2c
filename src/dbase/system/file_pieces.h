// The pieces in which long files are written and read.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "dbase/system/file.h"

namespace dbase {

/// A load or rebuild writes a piece at once, and pieces lie at multiples of this in the file: a system that
/// keeps files in large pages maps each by a single entry, and seeks wait less for address translation.
inline constexpr std::uint64_t pieceBytes = std::uint64_t{2} << 20;

/// Reads the first bytes of a file; `use` receives the offset of each piece, and its bytes, which it may
/// change.
template<typename Use>
void forEachPiece(const File& file, std::uint64_t size, const Use& use) {
    std::vector<char> buffer(static_cast<std::size_t>(std::min(size, pieceBytes)));
    for (std::uint64_t at = 0; at < size; at += pieceBytes) {
        const std::span piece(buffer.data(), static_cast<std::size_t>(std::min(pieceBytes, size - at)));
        file.read(at, piece);
        use(at, piece);
    }
}

} // namespace dbase
