// The .MDX: file header, tag table, tag headers and blocks. Changes are gathered in memory and written
// together; the caller holds the locks.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dbase/expression/expression.h"
#include "dbase/mdx/key.h"
#include "dbase/mdx/tag_definition.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/system/file.h"

namespace dbase {

/// Number of a 512-byte page from the start of the file; a block is named by its first page.
using PageNumber = std::uint32_t;
inline constexpr std::size_t pageBytes = 512;

/// A tag as described in the header, and how its keys are built.
struct Tag {
    TagDefinition definition;
    PageNumber headerPage = 0;
    KeyType keyType = KeyType::Character;
    std::uint16_t keyLength = 0;  // bytes
    std::uint16_t itemLength = 0; // bytes: record or child number, key, padding to 4
    std::uint16_t maxKeys = 0;    // maximum of items in a leaf
    KeyOrder order;
    std::optional<Expression> key;       // empty if the expression is not understood
    std::optional<Expression> condition; // FOR
    std::string problem;                 // why key or condition is empty

    [[nodiscard]] bool isUnderstood() const { return problem.empty(); }
    /// True if every record, deleted ones included, has an entry.
    [[nodiscard]] bool holdsAllRecords() const { return !definition.unique && definition.condition.empty(); }
};

/// The part of a tag's header that changes with its tree.
struct TreeRoot {
    PageNumber root = 0;
    PageNumber firstLeaf = 0, lastLeaf = 0; // 0 if the last writer did not maintain them
    bool holdsKeys = false;
};

class IndexFile {
public:
    /// Reads header and tag table for a table of the given layout. Errors: Error(BadIndex, TooLarge, Io).
    IndexFile(std::unique_ptr<File> file, const Schema& schema);

    /// Errors: Error(BadExpression, BadIndex) for tags that format() would refuse. `path`: named in the text.
    static void checkTags(const std::string& path, const Schema& schema,
                          const std::vector<TagDefinition>& tags, unsigned blockPages = 2);
    /// Writes an index without keys, replacing the file's contents. Errors: Error(BadExpression, BadIndex)
    /// before anything is written.
    static void format(File& file, const Schema& schema, const std::string& tableName,
                       const std::vector<TagDefinition>& tags, const UpdateStamp& stamp,
                       unsigned blockPages = 2);

    [[nodiscard]] File& file() const { return *file_; }
    [[nodiscard]] const std::string& path() const { return file_->path(); }
    [[nodiscard]] const std::vector<Tag>& tags() const { return tags_; }
    [[nodiscard]] const Tag* findTag(std::string_view name) const;
    [[nodiscard]] std::size_t blockSize() const { return blockSize_; }
    [[nodiscard]] unsigned blockPages() const { return static_cast<unsigned>(blockSize_ / pageBytes); }
    [[nodiscard]] std::uint8_t languageDriver() const { return languageDriver_; }

    [[nodiscard]] UpdateStamp stamp() const;
    void writeStamp(const UpdateStamp& stamp);

    /// False for an index whose headers another program has written.
    [[nodiscard]] bool hasOwnHead() const;
    /// The first pages as we write them for these tags, keeping what changes with use (dates, free list,
    /// stamp).
    [[nodiscard]] std::vector<char> freshHead(const Schema& schema) const;
    /// The same for a tag's header, keeping its tree.
    [[nodiscard]] std::vector<char> freshTagHeader(const Tag& tag) const;

    // --- Blocks. Pointers stay valid until the next change of the same block.
    /// A block of the file, or its changed copy. `buffer` is filled only for files without a view. Errors:
    /// Error(BadIndex) for a number outside the file.
    [[nodiscard]] const char* block(PageNumber page, std::vector<char>& buffer) const;
    /// Hints that a block will be read.
    void prefetch(PageNumber page) const;
    /// For a block with unexpected zeros: checks that the file still contains it. Errors: Error(Io).
    void confirmBlock(PageNumber page) const;
    [[nodiscard]] TreeRoot treeRoot(const Tag& tag) const;

    // --- Changes, invisible in the file until writeChangesOrRestore().
    [[nodiscard]] std::span<char> changeBlock(PageNumber page);
    void setTreeRoot(const Tag& tag, const TreeRoot& root);
    /// A zeroed block from the free list or after the end.
    [[nodiscard]] PageNumber allocate(const Tag& tag);
    void release(PageNumber page);
    /// Writes new blocks first, then the pages that point at them, headers last. If a write fails, the old
    /// bytes are restored as far as possible; `restored` says whether that worked.
    void writeChangesOrRestore(bool& restored);
    void dropChanges();

    /// Number of pages now in the file, by its size.
    [[nodiscard]] PageNumber pageCount() const;
    /// Number of pages according to the header.
    [[nodiscard]] PageNumber announcedPages() const;
    [[noreturn]] void damaged(PageNumber page, const std::string& what) const;
    /// Makes the next use of the file's size query it again.
    void forgetSize() { knownSize_ = 0; }
    /// In a collating table, determines for each character tag whether its keys are ordered by weight or by
    /// byte, as engines differ. Errors: Error(BadIndex) if they follow neither order.
    void determineOrders();
    /// The order that the language driver prescribes, in which a rebuild sorts.
    [[nodiscard]] static KeyOrder prescribedOrder(const Tag& tag, const Schema& schema);
    /// Makes that the order of each tag.
    void resetOrders(const Schema& schema);
    /// First free block; 0 if there is none.
    [[nodiscard]] PageNumber freeList() const;

private:
    struct Change {
        std::vector<char> bytes, original;
        bool isNew = false;    // after the old end of the file
        bool isHeader = false; // a tag header or the file header: written last

        /// From the first bytes that differ from the original to the last ones.
        [[nodiscard]] std::span<const char> changed() const;
    };

    void readTags(const Schema& schema);
    [[nodiscard]] Tag readTag(std::span<const char> entry, const Schema& schema, std::size_t number) const;
    void readTagHeader(Tag& tag, std::size_t number) const;
    [[nodiscard]] Error badTag(const Tag& tag, std::size_t number, const std::string& what) const;
    void readBytes(std::uint64_t offset, std::span<char> bytes) const;
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    /// Whether the block at the head of the free list is plausible.
    [[nodiscard]] bool mayBeFree(PageNumber page) const;
    /// Adds a block after the end; `head` is the changed file header.
    [[nodiscard]] PageNumber grow(std::span<char> head);
    void refreshHead();
    [[nodiscard]] std::vector<std::pair<PageNumber, const Change*>> writingOrder() const;

    std::unique_ptr<File> file_;
    std::vector<Tag> tags_;
    std::size_t blockSize_ = 0;
    std::uint8_t languageDriver_ = 0;
    mutable std::uint64_t knownSize_ = 0;
    std::uint64_t grownSize_ = 0; // including blocks allocated but not yet written; 0 if there are none
    std::map<PageNumber, Change> changes_;
};

} // namespace dbase
