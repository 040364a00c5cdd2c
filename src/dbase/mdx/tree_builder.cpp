// Builds a tree from sorted keys, from its leaves up to its root, and writes its blocks.
#include "dbase/mdx/tree_builder.h"

#include <algorithm>
#include <cstring>

#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/file_pieces.h"

namespace dbase {

namespace {
std::uint64_t pieceOf(PageNumber page) { return page * pageBytes / pieceBytes; }
} // namespace

BlockWriter::BlockWriter(IndexFile& index, PageSet taken)
    : index_(index), taken_(std::move(taken)), next_(mdx::firstBlock) {}

PageNumber BlockWriter::put(std::span<const char> block) {
    const PageNumber pages = index_.blockPages();
    if (taken_.hasAny(next_, pages)) {
        flush();
        while (taken_.hasAny(next_, pages)) {
            next_ += pages;
        }
    }
    if (pending_.empty()) {
        pendingStart_ = next_;
    }
    pending_.insert(pending_.end(), block.begin(), block.end());
    const PageNumber page = next_;
    next_ += pages;
    if (std::uint64_t{next_} * pageBytes >= maxFileSize) {
        throw Error(ErrorCode::TooLarge, index_.path(), "el índice llegaría a 2 GiB");
    }
    if (pieceOf(next_) != pieceOf(pendingStart_)) {
        flush();
    }
    return page;
}

void BlockWriter::flush() {
    if (!pending_.empty()) {
        index_.file().write(std::uint64_t{pendingStart_} * pageBytes, pending_);
        index_.file().beginSync();
        pending_.clear();
    }
}

PageNumber BlockWriter::end() const {
    PageNumber end = std::max(next_, mdx::firstBlock);
    for (const Tag& tag : index_.tags()) {
        end = std::max(end, tag.headerPage + index_.blockPages());
    }
    return end;
}

TreeBuilder::TreeBuilder(IndexFile& index, const Tag& tag, BlockWriter& blocks)
    : tag_(tag), blocks_(blocks), block_(index.blockSize()) {}

void TreeBuilder::add(std::string_view key, RecordNumber record) {
    // One entry in eight stays free, so that the first insertions do not split every leaf they touch.
    if (count_ >= tag_.maxKeys - tag_.maxKeys / 8U) {
        closeLeaf();
    }
    char* item = block_.data() + mdx::items + std::size_t{count_} * tag_.itemLength;
    store32(item, record);
    std::memcpy(item + mdx::itemKey, key.data(), tag_.keyLength);
    ++count_;
}

void TreeBuilder::closeLeaf() {
    store32(block_.data() + mdx::keyCount, count_);
    std::string lastKey;
    if (count_ > 0) {
        lastKey.assign(block_.data() + mdx::items + std::size_t{count_ - 1} * tag_.itemLength + mdx::itemKey,
                       tag_.keyLength);
    }
    children_.push_back({blocks_.put(block_), std::move(lastKey)});
    ++blockCount_;
    std::fill(block_.begin(), block_.end(), '\0');
    count_ = 0;
}

PageNumber TreeBuilder::putInner(std::span<const Child> children) {
    std::vector<char> block(block_.size());
    const std::size_t separators = children.size() - 1;
    store32(block.data() + mdx::keyCount, static_cast<std::uint32_t>(separators));
    for (std::size_t i = 0; i < children.size(); ++i) {
        char* item = block.data() + mdx::items + i * tag_.itemLength;
        store32(item, children[i].page);
        if (i < separators) {
            std::memcpy(item + mdx::itemKey, children[i].lastKey.data(), tag_.keyLength);
        }
    }
    ++blockCount_;
    return blocks_.put(block);
}

TreeRoot TreeBuilder::finish() {
    TreeRoot root;
    root.holdsKeys = count_ > 0; // a leaf is closed only when the next entry comes
    closeLeaf();
    root.firstLeaf = children_.front().page;
    root.lastLeaf = children_.back().page;
    const std::size_t most = tag_.maxKeys; // children of an inner block: one more than its separators
    while (children_.size() > 1) {
        // Distributed evenly, so that no inner block is left with a single child.
        const std::size_t blocks = (children_.size() + most - 1) / most;
        std::vector<Child> above;
        std::size_t from = 0;
        for (std::size_t i = 0; i < blocks; ++i) {
            const std::size_t to = children_.size() * (i + 1) / blocks;
            const std::span<const Child> part(children_.data() + from, to - from);
            above.push_back({putInner(part), part.back().lastKey});
            from = to;
        }
        children_ = std::move(above);
    }
    root.root = children_.front().page;
    return root;
}

} // namespace dbase
