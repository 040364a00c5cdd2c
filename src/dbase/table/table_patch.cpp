// Writes, reads and applies patches.
#include "dbase/table/table_patch.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "dbase/mdx/update_stamp.h"
#include "dbase/system/bytes.h"
#include "dbase/system/file_pieces.h"

namespace dbase {

namespace {

constexpr std::string_view magic = "AMBPARCH";
namespace head { // offsets
constexpr std::size_t recordsBefore = 8, recordsAfter = 16, indexAfter = 24, recordBlocks = 32,
                      indexBlocks = 36, size = 40;
}
constexpr std::size_t numberBytes = 4, blockBytes = OverlayFile::blockBytes;
static_assert(blockBytes == Fingerprint::blockBytes);
static_assert(mdx::stamp + mdx::stampSize <= blockBytes);

/// Collects bytes, and writes them in long pieces.
class Appending {
public:
    explicit Appending(File& to) : to_(to) { bytes_.reserve(pieceBytes + blockBytes); }

    void add(std::span<const char> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        if (bytes_.size() >= pieceBytes) {
            flush();
        }
    }
    void flush() {
        to_.write(at_, bytes_);
        at_ += bytes_.size();
        bytes_.clear();
    }

private:
    File& to_;
    std::uint64_t at_ = 0;
    std::vector<char> bytes_;
};

std::size_t changedIn(const OverlayFile& file) {
    std::size_t count = 0;
    file.forEachChanged([&](OverlayFile::BlockNumber, std::span<const char>) { ++count; });
    return count;
}

/// Of a file with this size.
bool areBlocksOf(std::span<const OverlayFile::BlockNumber> numbers, std::uint64_t size) {
    return std::ranges::is_sorted(numbers, std::less_equal()) &&
           (numbers.empty() || std::uint64_t{numbers.back()} * blockBytes < size);
}

} // namespace

void TablePatch::write(File& to, const OverlayFile& records, const OverlayFile& index) {
    std::array<char, head::size> bytes{};
    std::ranges::copy(magic, bytes.begin());
    store64(bytes.data() + head::recordsBefore, records.sizeBelow());
    store64(bytes.data() + head::recordsAfter, records.size());
    store64(bytes.data() + head::indexAfter, index.size());
    store32(bytes.data() + head::recordBlocks, static_cast<std::uint32_t>(changedIn(records)));
    store32(bytes.data() + head::indexBlocks, static_cast<std::uint32_t>(changedIn(index)));
    Appending out(to);
    out.add(bytes);
    for (const OverlayFile* const file : {&records, &index}) {
        file->forEachChanged([&](OverlayFile::BlockNumber number, std::span<const char>) {
            std::array<char, numberBytes> itsBytes{};
            store32(itsBytes.data(), number);
            out.add(itsBytes);
        });
    }
    for (const OverlayFile* const file : {&records, &index}) {
        file->forEachChanged([&](OverlayFile::BlockNumber, std::span<const char> block) { out.add(block); });
    }
    out.flush();
}

std::optional<TablePatch> TablePatch::in(const File& file) {
    TablePatch patch(file);
    return patch.read() ? std::optional(std::move(patch)) : std::nullopt;
}

bool TablePatch::read() {
    const std::uint64_t size = file_->size();
    std::array<char, head::size> bytes{};
    if (size < bytes.size()) {
        return false;
    }
    file_->read(0, bytes);
    recordsBefore_ = load64(bytes.data() + head::recordsBefore);
    recordsAfter_ = load64(bytes.data() + head::recordsAfter);
    indexAfter_ = load64(bytes.data() + head::indexAfter);
    recordCount_ = load32(bytes.data() + head::recordBlocks);
    const std::size_t count = recordCount_ + load32(bytes.data() + head::indexBlocks);
    if (!std::ranges::equal(std::span(bytes).first(magic.size()), magic) ||
        size != head::size + std::uint64_t{count} * (numberBytes + blockBytes)) {
        return false;
    }
    std::vector<char> numbers(count * numberBytes);
    file_->read(head::size, numbers);
    for (std::size_t i = 0; i < count; ++i) {
        numbers_.push_back(load32(numbers.data() + i * numberBytes));
    }
    return recordsBefore_ <= recordsAfter_ && recordsAfter_ < maxFileSize && indexAfter_ < maxFileSize &&
           areBlocksOf(recordBlocks(), recordsAfter_) && areBlocksOf(indexBlocks(), indexAfter_);
}

Fingerprint TablePatch::restOf(const File& records, const Fingerprint& whole) const {
    Fingerprint rest{std::min(whole.size, recordsBefore_), whole.sum};
    std::array<char, blockBytes> block{};
    for (const OverlayFile::BlockNumber number : recordBlocks()) {
        const std::uint64_t at = std::uint64_t{number} * blockBytes;
        if (at < whole.size) {
            const std::span its = std::span(block).first(
                static_cast<std::size_t>(std::min<std::uint64_t>(blockBytes, whole.size - at)));
            records.read(at, its);
            rest.sum -= sumOfBlocks(at, its);
        }
    }
    return rest;
}

void TablePatch::reserve(File& records, File& index) const {
    records.reserve(recordsAfter_);
    index.reserve(indexAfter_);
}

/// `numbers`: part of all those of the patch. `change` may change each block before it is written.
template<typename Change>
void TablePatch::apply(File& target, Numbers numbers, std::uint64_t size, const Change& change) const {
    const auto first = static_cast<std::uint64_t>(numbers.data() - numbers_.data());
    std::uint64_t from = head::size + numbers_.size() * numberBytes + first * blockBytes;
    std::vector<char> piece;
    while (!numbers.empty()) {
        piece.resize(std::min<std::size_t>(numbers.size() * blockBytes, pieceBytes));
        file_->read(from, piece);
        from += piece.size();
        for (std::span<char> left = piece; !left.empty();) {
            std::size_t count = 1; // of blocks that follow each other
            while (count * blockBytes < left.size() && numbers[count] == numbers.front() + count) {
                ++count;
            }
            const std::uint64_t place = std::uint64_t{numbers.front()} * blockBytes;
            const std::span<char> blocks = left.first(count * blockBytes);
            change(place, blocks);
            target.write(place, blocks.first(static_cast<std::size_t>(
                                    std::min<std::uint64_t>(blocks.size(), size - place))));
            left = left.subspan(blocks.size());
            numbers = numbers.subspan(count);
        }
    }
    if (target.size() < size) {
        target.resize(size);
    }
    target.sync();
}

// The rows are on the disk before the header that counts them: programs that look at a table before they open
// it would otherwise take it for one that has lost its end.
void TablePatch::applyToRecords(File& records) const {
    const Numbers all = recordBlocks();
    const std::size_t inHeader = !all.empty() && all.front() == 0 ? 1 : 0;
    for (const Numbers numbers : {all.subspan(inHeader), all.first(inHeader)}) {
        apply(records, numbers, recordsAfter_, [](std::uint64_t, std::span<char>) {});
    }
}

void TablePatch::applyToIndex(File& index, std::uint64_t session) const {
    apply(index, indexBlocks(), indexAfter_, [&](std::uint64_t place, std::span<char> blocks) {
        if (place == 0) {
            const std::span<char> its = blocks.subspan(mdx::stamp, mdx::stampSize);
            StampBytes bytes;
            std::ranges::copy(its, bytes.begin());
            UpdateStamp stamp = decodeStamp(bytes);
            stamp.inUpdate = true;
            stamp.session = session;
            std::ranges::copy(encodeStamp(stamp), its.begin());
        }
    });
}

} // namespace dbase
