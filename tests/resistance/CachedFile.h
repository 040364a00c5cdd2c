// A file on a disk with a cache: what was written since its last sync may have arrived or not, sector by
// sector, in any order, and independently of the file's growth.
#pragma once

#include <random>
#include <vector>

#include "dbase/support/StoredTable.h"

namespace dbase::test {

/// The unit that a disk writes wholly or not at all.
inline constexpr std::size_t sectorBytes = 512;

/// Writes bytes into a content, which grows where it is too short.
void put(Bytes& content, std::uint64_t offset, std::span<const char> bytes);

class CachedFile {
public:
    explicit CachedFile(Bytes onDisk = {}) : onDisk_(std::move(onDisk)) {}

    void write(std::uint64_t offset, std::span<const char> bytes);
    void resize(std::uint64_t size);
    void sync();
    /// The content left if the power fails now.
    [[nodiscard]] Bytes survivor(std::mt19937& random) const;

private:
    struct Change {
        std::uint64_t offset; // of a write; else the size
        Bytes bytes;
        bool isWrite;
    };
    static void apply(Bytes& content, const Change& change);

    Bytes onDisk_;
    std::vector<Change> pending_;
};

} // namespace dbase::test
