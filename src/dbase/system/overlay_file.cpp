// Keeps changed blocks, and reads the others from the file below.
#include "dbase/system/overlay_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "dbase/system/error.h"
#include "dbase/system/file_copy.h"

namespace dbase {

namespace {

/// Calls `step` with each part of a range that lies in one block: its offset, and its bytes.
template<typename Byte, typename Step>
void forEachPart(std::uint64_t offset, std::span<Byte> bytes, const Step& step) {
    while (!bytes.empty()) {
        const std::size_t room = OverlayFile::blockBytes - offset % OverlayFile::blockBytes,
                          size = std::min(room, bytes.size());
        step(offset, bytes.first(size));
        offset += size;
        bytes = bytes.subspan(size);
    }
}

} // namespace

OverlayFile::OverlayFile(std::unique_ptr<File> base, std::function<std::unique_ptr<File>()> makeCopy,
                         std::size_t mostBlocks)
    : base_(std::move(base)), makeCopy_(std::move(makeCopy)), mostBlocks_(mostBlocks),
      baseSize_(base_->size()), size_(baseSize_) {}

const OverlayFile::Block* OverlayFile::changed(std::uint64_t offset) const {
    const std::uint64_t number = offset / blockBytes;
    return number < places_.size() && places_[number] != 0 ? &blocks_[places_[number] - 1] : nullptr;
}

OverlayFile::Block& OverlayFile::toChange(std::uint64_t offset) {
    const std::uint64_t number = offset / blockBytes, begin = number * blockBytes;
    if (number >= places_.size()) {
        places_.resize(std::max<std::size_t>(number + 1, places_.size() * 2));
    }
    if (places_[number] == 0) {
        Block& block = blocks_.emplace_back();
        readBelow(begin, block);
        places_[number] = static_cast<std::uint32_t>(blocks_.size());
    }
    return blocks_[places_[number] - 1];
}

/// Zeros beyond its end.
void OverlayFile::readBelow(std::uint64_t offset, std::span<char> bytes) const {
    const auto there = static_cast<std::size_t>(
        std::min<std::uint64_t>(bytes.size(), baseSize_ - std::min(baseSize_, offset)));
    std::ranges::fill(bytes.subspan(there), '\0');
    const char* const view = base_->view();
    if (view != nullptr && there > 0) {
        std::memcpy(bytes.data(), view + offset, there);
    }
    if ((view == nullptr || base_->viewIsTorn()) && there > 0) {
        base_->read(offset, bytes.first(there));
    }
}

void OverlayFile::read(std::uint64_t offset, std::span<char> bytes) const {
    if (copy_) {
        return copy_->read(offset, bytes);
    }
    if (offset + bytes.size() > size_) {
        throw Error(ErrorCode::Io, path(),
                    "el fichero termina antes de lo esperado (posición " + std::to_string(offset) + ")");
    }
    forEachPart(offset, bytes, [&](std::uint64_t at, std::span<char> part) {
        if (const Block* const block = changed(at)) {
            std::memcpy(part.data(), block->data() + at % blockBytes, part.size());
        } else {
            readBelow(at, part);
        }
    });
}

void OverlayFile::write(std::uint64_t offset, std::span<const char> bytes) {
    if (!copy_ && blocks_.size() + bytes.size() / blockBytes >= mostBlocks_) {
        moveToCopy();
    }
    if (copy_) {
        return copy_->write(offset, bytes);
    }
    forEachPart(offset, bytes, [&](std::uint64_t at, std::span<const char> part) {
        std::memcpy(toChange(at).data() + at % blockBytes, part.data(), part.size());
    });
    size_ = std::max(size_, offset + bytes.size());
}

void OverlayFile::resize(std::uint64_t size) {
    if (!copy_ && size < size_) {
        moveToCopy();
    }
    if (copy_) {
        return copy_->resize(size);
    }
    size_ = size;
}

void OverlayFile::sync() {
    if (copy_) {
        copy_->sync();
    }
}

void OverlayFile::beginSync() {
    if (copy_) {
        copy_->beginSync();
    }
}

void OverlayFile::forEachChanged(const Visit& visit) const {
    for (std::size_t number = 0; number < places_.size(); ++number) {
        if (places_[number] != 0) {
            visit(static_cast<BlockNumber>(number), blocks_[places_[number] - 1]);
        }
    }
}

void OverlayFile::moveToCopy() {
    std::unique_ptr<File> copy = makeCopy_();
    copyContents(*base_, *copy);
    forEachChanged([&](BlockNumber number, std::span<const char> block) {
        const std::uint64_t at = std::uint64_t{number} * blockBytes;
        copy->write(at,
                    block.first(static_cast<std::size_t>(std::min<std::uint64_t>(blockBytes, size_ - at))));
    });
    if (size_ > baseSize_) {
        copy->resize(size_);
    }
    copy_ = std::move(copy);
    blocks_.clear();
    places_.clear();
}

} // namespace dbase
