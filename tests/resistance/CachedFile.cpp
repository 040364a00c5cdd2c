// Chooses what has arrived of the changes since the last sync.
#include "CachedFile.h"

#include <algorithm>
#include <array>
#include <map>

namespace dbase::test {

namespace {

using Sector = std::array<char, sectorBytes>;

/// A sector of the content, padded with zeros after its end.
Sector sectorAt(const Bytes& content, std::size_t number) {
    Sector sector{};
    const std::size_t begin = number * sectorBytes;
    if (begin < content.size()) {
        std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(begin),
                    std::min(sectorBytes, content.size() - begin), sector.begin());
    }
    return sector;
}

} // namespace

void put(Bytes& content, std::uint64_t offset, std::span<const char> bytes) {
    const auto at = static_cast<std::size_t>(offset);
    if (at + bytes.size() > content.size()) {
        content.resize(at + bytes.size());
    }
    std::ranges::copy(bytes, content.begin() + static_cast<std::ptrdiff_t>(at));
}

void CachedFile::write(std::uint64_t offset, std::span<const char> bytes) {
    pending_.push_back({offset, {bytes.begin(), bytes.end()}, true});
}

void CachedFile::resize(std::uint64_t size) { pending_.push_back({size, {}, false}); }

void CachedFile::sync() {
    for (const Change& change : pending_) {
        apply(onDisk_, change);
    }
    pending_.clear();
}

void CachedFile::apply(Bytes& content, const Change& change) {
    if (change.isWrite) {
        put(content, change.offset, change.bytes);
    } else {
        content.resize(static_cast<std::size_t>(change.offset));
    }
}

// Either the writes arrived in order up to one of them, or each sector is as one of them left it.
Bytes CachedFile::survivor(std::mt19937& random) const {
    Bytes content = onDisk_;
    if (random() % 3 == 0) {
        const std::size_t arrived = random() % (pending_.size() + 1);
        for (std::size_t i = 0; i < arrived; ++i) {
            apply(content, pending_[i]);
        }
        return content;
    }
    std::map<std::size_t, std::vector<Sector>> versions;
    std::vector<std::size_t> sizes{content.size()};
    for (const Change& change : pending_) {
        const std::size_t sizeBefore = content.size();
        apply(content, change);
        const auto begin = static_cast<std::size_t>(change.offset);
        const std::size_t end = change.isWrite ? begin + change.bytes.size() : std::max(begin, sizeBefore);
        for (std::size_t sector = begin / sectorBytes; sector * sectorBytes < end; ++sector) {
            versions[sector].push_back(sectorAt(content, sector));
        }
        if (content.size() != sizeBefore) {
            sizes.push_back(content.size());
        }
    }
    content = onDisk_;
    content.resize(sizes[random() % sizes.size()]);
    for (const auto& [number, states] : versions) {
        const std::size_t chosen = random() % (states.size() + 1), begin = number * sectorBytes;
        if (chosen > 0 && begin < content.size()) {
            std::copy_n(states[chosen - 1].begin(), std::min(sectorBytes, content.size() - begin),
                        content.begin() + static_cast<std::ptrdiff_t>(begin));
        }
    }
    return content;
}

} // namespace dbase::test
