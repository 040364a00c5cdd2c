// Builds the trees of an index from sorted keys, bottom up and in one pass over the file.
#pragma once

#include <string>
#include <vector>

#include "dbase/mdx/index_file.h"
#include "dbase/mdx/page_set.h"

namespace dbase {

/// Hands out the blocks of an index from the first one on, except those that are taken: always the tag
/// headers, so that the definitions of the tags stay readable whatever happens meanwhile. Writes consecutive
/// blocks in large pieces.
class BlockWriter {
public:
    BlockWriter(IndexFile& index, PageSet taken);

    /// Adds a block; its bytes are written together with its neighbours'.
    PageNumber put(std::span<const char> block);
    void flush();
    /// First page after everything written, tag headers included.
    [[nodiscard]] PageNumber end() const;

private:
    IndexFile& index_;
    PageSet taken_;
    PageNumber next_;
    std::vector<char> pending_;
    PageNumber pendingStart_ = 0;
};

/// Takes one tag's entries in order and writes its tree.
class TreeBuilder {
public:
    TreeBuilder(IndexFile& index, const Tag& tag, BlockWriter& blocks);

    void add(std::string_view key, RecordNumber record);
    /// Writes what is left and the inner blocks. The caller stores the root in the tag's header.
    [[nodiscard]] TreeRoot finish();
    /// Number of blocks written, for the size in the tag's header.
    [[nodiscard]] std::uint32_t blockCount() const { return blockCount_; }

private:
    struct Child {
        PageNumber page;
        std::string lastKey;
    };
    void closeLeaf();
    [[nodiscard]] PageNumber putInner(std::span<const Child> children);

    const Tag& tag_;
    BlockWriter& blocks_;
    std::vector<char> block_;
    std::uint32_t count_ = 0;
    std::uint32_t blockCount_ = 0;
    std::vector<Child> children_;
};

} // namespace dbase
