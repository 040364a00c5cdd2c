// Walks and seeks in the B-tree of one tag. Keeps a stack of (page, slot), because the pages have no links to
// their neighbours.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "dbase/mdx/index_file.h"

namespace dbase {

/// One block of a tree, with checked item arithmetic.
class TreeNode {
public:
    /// Errors: Error(BadIndex) for a count that its block cannot hold.
    TreeNode(const IndexFile& index, const Tag& tag, PageNumber page, std::vector<char>& buffer);

    /// Number of keys: entries of a leaf, separators of an inner block.
    [[nodiscard]] std::uint32_t count() const { return count_; }
    [[nodiscard]] bool isLeaf() const { return isLeaf_; }
    /// The record of an entry, or a child; the one at count() is the last child.
    [[nodiscard]] std::uint32_t pointer(std::uint32_t i) const;
    [[nodiscard]] std::string_view key(std::uint32_t i) const {
        return {items_ + i * itemLength_ + mdx::itemKey, keyLength_};
    }
    /// First item whose key is at or after (upperBound: after) the given one; count() if there is none.
    [[nodiscard]] std::uint32_t lowerBound(const KeyOrder& order, std::string_view key) const;
    [[nodiscard]] std::uint32_t upperBound(const KeyOrder& order, std::string_view key) const;

private:
    const char* items_;
    std::uint32_t count_;
    std::uint32_t itemLength_, keyLength_;
    bool isLeaf_;
};

/// The caller holds the structure lock during every call.
class TreeCursor {
public:
    struct Level {
        PageNumber page;
        std::uint32_t slot; // child of an inner block, entry of a leaf
    };
    static constexpr std::size_t maxDepth = 30;

    TreeCursor(const IndexFile& index, const Tag& tag) : index_(&index), tag_(&tag) {}

    // Each returns true if the cursor is on an entry afterwards. Errors: Error(BadIndex).
    bool first();
    bool last();
    bool next();
    bool prior();
    /// First entry at or after the key; a shorter key is compared on its own length.
    bool seek(std::string_view key);
    /// The same for several cursors of one tree, each with its key: the waits for their blocks overlap.
    static void seekTogether(std::span<TreeCursor> cursors, std::span<const std::string_view> keys);
    /// Moves to where an entry after all equal keys belongs: the slot may be one past the last of its leaf,
    /// so only path() and prior() are meaningful afterwards.
    void placeAfter(std::string_view key);
    /// First entry of the next leaf.
    bool nextLeaf();
    /// The entry at a share of the tree (0 to 1), as if all blocks held equally many.
    bool seekShare(double share);
    /// The entry of one record; steps through equal keys, whatever their order.
    bool find(std::string_view key, RecordNumber record);

    [[nodiscard]] bool isOnEntry() const { return onEntry_; }
    [[nodiscard]] std::string_view key() const { return {key_.data(), tag_->keyLength}; }
    [[nodiscard]] RecordNumber record() const { return record_; }
    [[nodiscard]] const Tag& tag() const { return *tag_; }

    /// True if the stack still leads from the root of the tree to the same entry: then the cursor can move
    /// on, even if the file was changed in between.
    [[nodiscard]] bool stillHolds() const;

    /// The stack, root first; its last level is the leaf, even if the cursor is after the leaf's last entry.
    [[nodiscard]] std::span<const Level> path() const { return {levels_.data(), depth_}; }
    /// The share of the tree before the entry (0 to 1), as if all blocks held equally many.
    [[nodiscard]] double share() const;
    /// Entries that follow in the same leaf, the current one included.
    [[nodiscard]] std::uint32_t entriesLeftInLeaf() const;
    /// The leaf. Valid until the next call.
    [[nodiscard]] TreeNode leaf() const {
        return TreeNode(*index_, *tag_, levels_[depth_ - 1].page, buffer_);
    }
    /// Moves to an entry of the same leaf that the caller has read before.
    void moveInLeaf(std::uint32_t slot, RecordNumber record, std::string_view key);

private:
    enum class Bound { First, Last, Lower, Upper };
    bool descend(Bound bound, std::string_view key);
    bool descendFrom(PageNumber page, Bound bound, std::string_view key);
    PageNumber startAtRoot();
    std::optional<PageNumber> step(PageNumber page, Bound bound, std::string_view key);
    bool land(const TreeNode& leaf);
    void countLeaf(int direction);
    bool priorLeaf();

    const IndexFile* index_;
    const Tag* tag_;
    std::array<Level, maxDepth> levels_;
    std::size_t depth_ = 0;
    bool onEntry_ = false;
    std::int64_t steps_ = 0; // net leaves forward since the last descent from the root
    RecordNumber record_ = 0;
    std::array<char, maxKeyLength> key_;
    mutable std::vector<char> buffer_;
};

} // namespace dbase
