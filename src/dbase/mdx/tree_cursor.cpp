// Seeking and walking in a tree: a stack of pages and slots.
#include "dbase/mdx/tree_cursor.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"

namespace dbase {

TreeNode::TreeNode(const IndexFile& index, const Tag& tag, PageNumber page, std::vector<char>& buffer)
    : itemLength_(tag.itemLength), keyLength_(tag.keyLength) {
    const char* const block = index.block(page, buffer);
    items_ = block + mdx::items;
    count_ = load32(block + mdx::keyCount);
    if (count_ > (index.blockSize() - mdx::items) / itemLength_) {
        index.damaged(page, "dice tener " + std::to_string(count_) + " claves y no caben");
    }
    const std::size_t end = mdx::items + std::size_t{count_} * itemLength_;
    isLeaf_ = end + 4 > index.blockSize() || load32(block + end) == 0;
    if (count_ == 0 || pointer(count_ - 1) == 0) {
        index.confirmBlock(page);
    }
}

std::uint32_t TreeNode::pointer(std::uint32_t i) const {
    return load32(items_ + std::size_t{i} * itemLength_);
}

std::uint32_t TreeNode::lowerBound(const KeyOrder& order, std::string_view wanted) const {
    std::uint32_t low = 0, high = count_;
    while (low < high) {
        const std::uint32_t middle = (low + high) / 2;
        if (order.compare(key(middle), wanted) < 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

std::uint32_t TreeNode::upperBound(const KeyOrder& order, std::string_view wanted) const {
    std::uint32_t low = 0, high = count_;
    while (low < high) {
        const std::uint32_t middle = (low + high) / 2;
        if (order.compare(key(middle), wanted) <= 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

bool TreeCursor::land(const TreeNode& leaf) {
    Level& level = levels_[depth_ - 1];
    onEntry_ = level.slot < leaf.count();
    if (onEntry_) {
        record_ = leaf.pointer(level.slot);
        std::memcpy(key_.data(), leaf.key(level.slot).data(), tag_->keyLength);
    }
    return onEntry_;
}

PageNumber TreeCursor::startAtRoot() {
    depth_ = 0;
    steps_ = 0;
    return index_->treeRoot(*tag_).root;
}

bool TreeCursor::descend(Bound bound, std::string_view key) { return descendFrom(startAtRoot(), bound, key); }

bool TreeCursor::descendFrom(PageNumber page, Bound bound, std::string_view key) {
    std::optional<PageNumber> below = page;
    while (below) {
        // The search touches cache lines all over the block: requests them together instead of waiting for
        // each.
        index_->prefetch(*below);
        below = step(*below, bound, key);
    }
    return onEntry_;
}

/// Reads one block of the way down; returns the next one, or lands if it is a leaf.
std::optional<PageNumber> TreeCursor::step(PageNumber page, Bound bound, std::string_view key) {
    if (depth_ == maxDepth) {
        index_->damaged(page, "el árbol del tag " + tag_->definition.name + " no termina");
    }
    const TreeNode node(*index_, *tag_, page, buffer_);
    std::uint32_t slot = 0;
    switch (bound) {
    case Bound::First:
        break;
    case Bound::Last:
        slot = node.count() - (node.isLeaf() && node.count() > 0 ? 1 : 0);
        break;
    case Bound::Lower:
        slot = node.lowerBound(tag_->order, key);
        break;
    case Bound::Upper:
        slot = node.upperBound(tag_->order, key);
        break;
    }
    levels_[depth_++] = {page, slot};
    if (!node.isLeaf()) {
        return node.pointer(slot);
    }
    land(node);
    return std::nullopt;
}

void TreeCursor::countLeaf(int direction) {
    // A tree whose pages point at one another in circles has no end, but a file cannot hold more leaves than
    // fit in it. Moving back and forth between two leaves does not count.
    constexpr std::int64_t between = 256; // asking for the size is a system call
    steps_ += direction;
    if (steps_ % between == 0 &&
        static_cast<std::uint64_t>(std::abs(steps_)) > index_->file().size() / tag_->itemLength + 1) {
        index_->damaged(levels_[0].page, "el árbol del tag " + tag_->definition.name + " se repite");
    }
}

bool TreeCursor::nextLeaf() {
    std::size_t level = depth_ - 1;
    while (level > 0) {
        --level;
        const TreeNode node(*index_, *tag_, levels_[level].page, buffer_);
        if (node.isLeaf()) {
            index_->damaged(levels_[level].page, "cambió mientras se leía");
        }
        if (levels_[level].slot < node.count()) {
            const PageNumber child = node.pointer(++levels_[level].slot);
            depth_ = level + 1;
            countLeaf(+1);
            if (descendFrom(child, Bound::First, {})) {
                return true;
            }
            level = depth_ - 1;
        }
    }
    onEntry_ = false;
    return false;
}

bool TreeCursor::priorLeaf() {
    std::size_t level = depth_ - 1;
    while (level > 0) {
        --level;
        if (levels_[level].slot > 0) {
            const TreeNode node(*index_, *tag_, levels_[level].page, buffer_);
            if (levels_[level].slot > node.count()) {
                index_->damaged(levels_[level].page, "cambió mientras se leía");
            }
            const PageNumber child = node.pointer(--levels_[level].slot);
            depth_ = level + 1;
            countLeaf(-1);
            if (descendFrom(child, Bound::Last, {})) {
                return true;
            }
            level = depth_ - 1;
        }
    }
    onEntry_ = false;
    return false;
}

bool TreeCursor::first() { return descend(Bound::First, {}) || nextLeaf(); }
bool TreeCursor::last() { return descend(Bound::Last, {}) || priorLeaf(); }

// Separators may be larger than the last key below them, so the bound may lie in the next leaf.
bool TreeCursor::seek(std::string_view key) { return descend(Bound::Lower, key) || nextLeaf(); }
void TreeCursor::placeAfter(std::string_view key) { descend(Bound::Upper, key); }

void TreeCursor::seekTogether(std::span<TreeCursor> cursors, std::span<const std::string_view> keys) {
    std::vector<std::optional<PageNumber>> below; // where each goes on; nowhere from a leaf
    below.reserve(cursors.size());
    for (TreeCursor& cursor : cursors) {
        below.push_back(cursor.startAtRoot());
    }
    for (bool goesOn = !cursors.empty(); goesOn;) { // a level at a time
        goesOn = false;
        for (std::size_t i = 0; i < cursors.size(); ++i) {
            if (below[i] && (below[i] = cursors[i].step(*below[i], Bound::Lower, keys[i]))) {
                cursors[i].index_->prefetch(*below[i]);
                goesOn = true;
            }
        }
    }
    for (TreeCursor& cursor : cursors) {
        if (!cursor.onEntry_) {
            cursor.nextLeaf();
        }
    }
}

bool TreeCursor::seekShare(double share) {
    depth_ = 0;
    steps_ = 0;
    PageNumber page = index_->treeRoot(*tag_).root;
    while (true) {
        if (depth_ == maxDepth) {
            index_->damaged(page, "el árbol del tag " + tag_->definition.name + " no termina");
        }
        const TreeNode node(*index_, *tag_, page, buffer_);
        const std::uint32_t branches = std::max<std::uint32_t>(node.count() + (node.isLeaf() ? 0 : 1), 1);
        const double wanted = std::clamp(share, 0.0, 1.0) * branches;
        const std::uint32_t slot = std::min(static_cast<std::uint32_t>(wanted), branches - 1);
        share = wanted - slot;
        levels_[depth_++] = {page, slot};
        if (node.isLeaf()) {
            return land(node) || nextLeaf();
        }
        page = node.pointer(slot);
    }
}

double TreeCursor::share() const {
    double share = 0;
    for (std::size_t level = depth_; level-- > 0;) {
        const TreeNode node(*index_, *tag_, levels_[level].page, buffer_);
        const std::uint32_t branches = node.count() + (node.isLeaf() ? 0 : 1);
        share = branches == 0 ? 0 : std::min((levels_[level].slot + share) / branches, 1.0);
    }
    return share;
}

bool TreeCursor::next() {
    const TreeNode leaf(*index_, *tag_, levels_[depth_ - 1].page, buffer_);
    if (++levels_[depth_ - 1].slot < leaf.count()) {
        return land(leaf);
    }
    return nextLeaf();
}

bool TreeCursor::prior() {
    if (levels_[depth_ - 1].slot > 0) {
        const TreeNode leaf(*index_, *tag_, levels_[depth_ - 1].page, buffer_);
        --levels_[depth_ - 1].slot;
        if (land(leaf)) {
            return true;
        }
    }
    return priorLeaf();
}

bool TreeCursor::find(std::string_view key, RecordNumber record) {
    // Equal in order, not in bytes: engines differ in how they encode the digits of a number or a blank date.
    const auto isEqual = [&](const TreeCursor& at) { return tag_->order.compare(at.key(), key) == 0; };
    bool on = seek(key);
    const PageNumber firstLeaf = on ? levels_[depth_ - 1].page : 0;
    bool hasTriedLast = false;
    for (; on && isEqual(*this); on = next()) {
        if (record_ == record) {
            return true;
        }
        if (!hasTriedLast && levels_[depth_ - 1].page != firstLeaf) {
            // Equal keys on more than one leaf: a record that was added lately is on the last one.
            hasTriedLast = true;
            TreeCursor last(*index_, *tag_);
            last.placeAfter(key);
            const PageNumber lastLeaf = last.levels_[last.depth_ - 1].page;
            for (bool back = last.prior(); back && isEqual(last); back = last.prior()) {
                if (last.record_ == record) {
                    *this = last;
                    return true;
                }
                if (last.levels_[last.depth_ - 1].page != lastLeaf) {
                    break;
                }
            }
        }
    }
    return false;
}

bool TreeCursor::stillHolds() const {
    if (!onEntry_ || index_->treeRoot(*tag_).root != levels_[0].page) {
        return false;
    }
    for (std::size_t level = 0; level + 1 < depth_; ++level) {
        const auto [page, slot] = levels_[level];
        const TreeNode node(*index_, *tag_, page, buffer_);
        if (node.isLeaf() || slot > node.count() || node.pointer(slot) != levels_[level + 1].page) {
            return false;
        }
    }
    const auto [page, slot] = levels_[depth_ - 1];
    const TreeNode leaf(*index_, *tag_, page, buffer_);
    return leaf.isLeaf() && slot < leaf.count() && leaf.pointer(slot) == record_ && leaf.key(slot) == key();
}

std::uint32_t TreeCursor::entriesLeftInLeaf() const {
    const std::uint32_t count = leaf().count(), slot = levels_[depth_ - 1].slot;
    return count > slot ? count - slot : 0;
}

void TreeCursor::moveInLeaf(std::uint32_t slot, RecordNumber record, std::string_view key) {
    levels_[depth_ - 1].slot = slot;
    record_ = record;
    std::memcpy(key_.data(), key.data(), tag_->keyLength);
}

} // namespace dbase
