// Inserts into and removes from the B-tree of one tag.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dbase/mdx/tree_cursor.h"

namespace dbase {

/// Changes a tree within the index file's gathered changes; writes nothing. Errors: Error(BadIndex,
/// TooLarge).
class TreeEditor {
public:
    TreeEditor(IndexFile& index, const Tag& tag) : index_(index), tag_(tag) {}

    /// Adds an entry, in record-number order among equal keys, unless it exists already.
    void insert(std::string_view key, RecordNumber record);
    /// False if there is no such entry.
    [[nodiscard]] bool remove(std::string_view key, RecordNumber record);

private:
    using Path = std::vector<TreeCursor::Level>;
    struct Item {
        std::uint32_t pointer; // record or child
        std::string key;
    };
    struct Inner {
        std::vector<Item> items; // children, each with the separator after it
        PageNumber last = 0;     // the last child
    };

    /// One fewer than the keys of a leaf: other engines break trees with fuller inner blocks.
    [[nodiscard]] std::size_t maxSeparators() const { return tag_.maxKeys - 1U; }
    [[nodiscard]] std::uint32_t count(PageNumber page) const;
    [[nodiscard]] static std::vector<Item> itemsOf(const TreeNode& node);
    [[nodiscard]] Inner readInner(const TreeCursor::Level& level) const;
    [[nodiscard]] Inner readInner(PageNumber page) const;
    void writeInner(PageNumber page, const Inner& inner);
    void putItem(std::span<char> block, std::uint32_t i, std::uint32_t pointer, std::string_view key) const;
    void insertIntoLeaf(Path path, std::string_view key, RecordNumber record);
    void splitLeaf(Path path, std::string_view key, RecordNumber record);
    void insertChild(Path path, const std::string& separator, PageNumber left, PageNumber right);
    void unlinkLeaf(Path path);
    void removeChild(Path path);
    void joinLoneChild(Path path, PageNumber child);
    void setSeparatorAbove(Path path, std::string_view key);
    void keepEnds(PageNumber oldLeaf, PageNumber newFirst, PageNumber newLast);

    IndexFile& index_;
    const Tag& tag_;
};

} // namespace dbase
