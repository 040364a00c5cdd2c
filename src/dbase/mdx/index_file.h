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

/// What the header keeps of one tag, and how its keys are made.
struct Tag {
    TagDefinition definition;
    PageNumber headerPage = 0;
    KeyType keyType = KeyType::Character;
    std::uint16_t keyLength = 0;  // bytes
    std::uint16_t itemLength = 0; // bytes: record or child number, key, padding to 4
    std::uint16_t maxKeys = 0;    // items a leaf may hold
    KeyOrder order;
    std::optional<Expression> key;       // empty when the expression is not understood
    std::optional<Expression> condition; // FOR
    std::string problem;                 // why key or condition is empty

    [[nodiscard]] bool isUnderstood() const { return problem.empty(); }
    /// True when every record, deleted ones included, has an entry.
    [[nodiscard]] bool holdsAllRecords() const { return !definition.unique && definition.condition.empty(); }
};

/// Part of a tag's header that moves with its tree.
struct TreeRoot {
    PageNumber root = 0;
    PageNumber firstLeaf = 0, lastLeaf = 0; // 0 where the last writer did not keep them
    bool holdsKeys = false;
};

class IndexFile {
public:
    /// Reads header and tag table for a table of the given layout. Errors: Error(BadIndex, TooLarge, Io).
    IndexFile(std::unique_ptr<File> file, const Schema& schema);

    /// Errors: Error(BadExpression, BadIndex) for tags that format() would refuse. `path`: for its text.
    static void checkTags(const std::string& path, const Schema& schema,
                          const std::vector<TagDefinition>& tags, unsigned blockPages = 2);
    /// Writes an index without keys over whatever the file holds. Errors: Error(BadExpression, BadIndex)
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

    /// False for an index whose headers some other program wrote.
    [[nodiscard]] bool hasOwnHead() const;
    /// The first pages as we write them for these tags, what moves with use (dates, free list, stamp) taken
    /// over.
    [[nodiscard]] std::vector<char> freshHead(const Schema& schema) const;
    /// The same for a tag's header, its tree taken over.
    [[nodiscard]] std::vector<char> freshTagHeader(const Tag& tag) const;

    // --- Blocks. Pointers stay valid until the next change of the same block.
    /// A block of the file, or its changed copy. `buffer` is filled only for files without a view. Errors:
    /// Error(BadIndex) for a number outside the file.
    [[nodiscard]] const char* block(PageNumber page, std::vector<char>& buffer) const;
    /// For a block with zeros where something should be: asks whether the file was cut before its end.
    /// Errors: Error(Io).
    void confirmBlock(PageNumber page) const;
    [[nodiscard]] TreeRoot treeRoot(const Tag& tag) const;

    // --- Changes, invisible in the file until writeChanges().
    [[nodiscard]] std::span<char> changeBlock(PageNumber page);
    void setTreeRoot(const Tag& tag, const TreeRoot& root);
    /// A zeroed block from the free list or behind the end.
    [[nodiscard]] PageNumber allocate(const Tag& tag);
    void release(PageNumber page);
    /// New blocks first, then the pages that point at them, headers last. When a write fails the old bytes
    /// are put back as far as possible; `restored` tells whether that worked.
    void writeChanges(bool& restored);
    void dropChanges();

    /// Pages that the file reaches now, checked against its size.
    [[nodiscard]] PageNumber pageCount() const;
    /// What the header says.
    [[nodiscard]] PageNumber announcedPages() const;
    [[noreturn]] void damaged(PageNumber page, const std::string& what) const;
    /// Asks for the size of the file again at the next need.
    void forgetSize() { knownSize_ = 0; }
    /// In a collating table: finds out for each character tag whether its keys lie by weight or by byte, as
    /// engines differ. Errors: Error(BadIndex) when they obey neither.
    void settleOrders();
    /// The order that the language driver asks for, for a rebuild.
    void resetOrders(const Schema& schema);
    /// First free block; 0 for none.
    [[nodiscard]] PageNumber freeList() const;

private:
    struct Change {
        std::vector<char> bytes, original;
        bool isNew = false;    // behind the old end of the file
        bool isHeader = false; // a tag header or the file header: written last
    };

    void readTags(const Schema& schema);
    [[nodiscard]] Tag readTag(std::span<const char> entry, const Schema& schema, std::size_t number) const;
    void readTagHeader(Tag& tag, std::size_t number) const;
    [[nodiscard]] Error badTag(const Tag& tag, std::size_t number, const std::string& what) const;
    void readBytes(std::uint64_t offset, std::span<char> bytes) const;
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    /// For the block that the free list begins with.
    [[nodiscard]] bool mayBeFree(PageNumber page) const;
    /// A block behind the end; `head` is the changed file header.
    [[nodiscard]] PageNumber grow(std::span<char> head);
    void refreshHead();
    [[nodiscard]] std::vector<std::pair<PageNumber, const Change*>> writingOrder() const;

    std::unique_ptr<File> file_;
    std::vector<Tag> tags_;
    std::size_t blockSize_ = 0;
    std::uint8_t languageDriver_ = 0;
    mutable std::uint64_t knownSize_ = 0;
    std::uint64_t grownSize_ = 0; // with the blocks allocated but not written yet; 0 while there are none
    std::map<PageNumber, Change> changes_;
};

} // namespace dbase
