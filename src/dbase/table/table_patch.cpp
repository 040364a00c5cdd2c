// Writes, reads and applies patches.
#include "dbase/table/table_patch.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
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
constexpr std::size_t numberBytes = 4, sumBytes = 8, blockBytes = OverlayFile::blockBytes;
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

/// The part of a block that lies before the end of a file.
std::span<char> partOf(std::span<char, blockBytes> block, std::uint64_t at, std::uint64_t size) {
    return block.first(
        static_cast<std::size_t>(std::min<std::uint64_t>(blockBytes, size - std::min(at, size))));
}

std::uint64_t sumBelow(const OverlayFile& file, OverlayFile::BlockNumber number) {
    const std::uint64_t at = std::uint64_t{number} * blockBytes;
    std::array<char, blockBytes> block{};
    const std::span<char> its = partOf(block, at, file.below().size());
    if (!its.empty()) {
        file.below().read(at, its);
    }
    return sumOfBlocks(at, its);
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
    store64(bytes.data() + head::recordsBefore, records.below().size());
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
    records.forEachChanged([&](OverlayFile::BlockNumber number, std::span<const char>) {
        std::array<char, sumBytes> sum{};
        store64(sum.data(), sumBelow(records, number));
        out.add(sum);
    });
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
        size != head::size + std::uint64_t{count} * (numberBytes + blockBytes) +
                    std::uint64_t{recordCount_} * sumBytes) {
        return false;
    }
    std::vector<char> numbers(count * numberBytes);
    file_->read(head::size, numbers);
    for (std::size_t i = 0; i < count; ++i) {
        numbers_.push_back(load32(numbers.data() + i * numberBytes));
    }
    std::vector<char> sums(recordCount_ * sumBytes);
    file_->read(head::size + numbers.size(), sums);
    for (std::size_t i = 0; i < recordCount_; ++i) {
        sumsBefore_.push_back(load64(sums.data() + i * sumBytes));
    }
    return recordsBefore_ <= recordsAfter_ && recordsAfter_ < maxFileSize && indexAfter_ < maxFileSize &&
           areBlocksOf(recordBlocks(), recordsAfter_) && areBlocksOf(indexBlocks(), indexAfter_);
}

Fingerprint TablePatch::restOf(const Fingerprint& before) const {
    return {before.size, std::accumulate(sumsBefore_.begin(), sumsBefore_.end(), before.sum, std::minus())};
}

std::optional<Fingerprint> TablePatch::restAmid(const File& records, const Fingerprint& present) const {
    if (present.size < recordsBefore_ || present.size > recordsAfter_) {
        return std::nullopt;
    }
    Fingerprint rest{recordsBefore_, present.sum};
    std::array<char, blockBytes> block{};
    for (std::size_t i = 0; i < recordCount_; ++i) {
        const std::uint64_t at = std::uint64_t{numbers_[i]} * blockBytes;
        const std::span<char> its = partOf(block, at, present.size);
        if (its.empty()) {
            break; // all others have yet to come
        }
        records.read(at, its);
        if (!isAsItWas(i, its) && !isAsItWillBe(i, its)) {
            return std::nullopt;
        }
        rest.sum -= sumOfBlocks(at, its);
    }
    return rest;
}

// Zeros follow it where the file has grown and the disk has lost what was written there.
bool TablePatch::isAsItWas(std::size_t block, std::span<const char> present) const {
    const std::uint64_t at = std::uint64_t{numbers_[block]} * blockBytes;
    const auto before = static_cast<std::size_t>(
        std::min<std::uint64_t>(present.size(), recordsBefore_ - std::min(at, recordsBefore_)));
    return sumOfBlocks(at, present.first(before)) == sumsBefore_[block] &&
           std::ranges::all_of(present.subspan(before), [](char byte) { return byte == 0; });
}

bool TablePatch::isAsItWillBe(std::size_t block, std::span<const char> present) const {
    std::array<char, blockBytes> after{};
    file_->read(placeOf(block), after);
    return std::ranges::equal(present, std::span(after).first(present.size()));
}

/// In the patch, of its bytes.
std::uint64_t TablePatch::placeOf(std::size_t block) const {
    return head::size + numbers_.size() * numberBytes + sumsBefore_.size() * sumBytes +
           std::uint64_t{block} * blockBytes;
}

void TablePatch::reserve(File& records, File& index) const {
    records.reserve(recordsAfter_);
    index.reserve(indexAfter_);
}

/// `numbers`: part of all those of the patch. `change` may change each block before it is written.
template<typename Change>
void TablePatch::apply(File& target, Numbers numbers, std::uint64_t size, const Change& change) const {
    std::uint64_t from = placeOf(static_cast<std::size_t>(numbers.data() - numbers_.data()));
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
            stamp.inUpdate = stamp.isHalfChanged = true;
            stamp.session = session;
            std::ranges::copy(encodeStamp(stamp), its.begin());
        }
    });
}

} // namespace dbase
