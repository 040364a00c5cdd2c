// Trees that no engine leaves, changed: a change that such a tree does not allow is refused before it leaves
// its blocks.
#include "dbase/mdx/tree_editor.h"
#include "dbase/system/error.h"
#include "tree_fixture.h"

namespace {

using namespace dbase;
using namespace dbase::test;

/// Writes blocks of a tree by hand: width 100, blocks of two pages, 9 entries or 8 separators in each.
class HostileTreeTest : public TreeTest {
protected:
    static constexpr std::size_t itemLength = 104;
    using Items = std::vector<std::pair<std::uint32_t, std::string>>;

    HostileTreeTest() {
        make(100);
        append("RAIZ");
        leaveUnchecked();
    }

    /// Appends a block; in an inner one the last child follows the items.
    PageNumber put(const Items& items, PageNumber lastChild = 0) const {
        Bytes& bytes = stored_->index->bytes;
        const auto page = static_cast<PageNumber>(bytes.size() / pageBytes);
        bytes.resize(bytes.size() + 1024);
        write(page, items, lastChild);
        return page;
    }
    void write(PageNumber page, const Items& items, PageNumber lastChild) const {
        char* at = block(page);
        store32(at, static_cast<std::uint32_t>(items.size()));
        at += mdx::items;
        for (const auto& [pointer, key] : items) {
            store32(at, pointer);
            const std::string padded = key + std::string(100 - key.size(), ' ');
            std::copy(padded.begin(), padded.end(), at + mdx::itemKey);
            at += itemLength;
        }
        store32(at, lastChild);
    }
    static Items nineOf(const std::string& key, RecordNumber first) {
        Items items;
        for (RecordNumber i = 0; i < 9; ++i) {
            items.emplace_back(first + i, key);
        }
        return items;
    }
    void setRoot(PageNumber page) const { store32(tagHeader() + mdx::root, page); }

    [[nodiscard]] std::unique_ptr<IndexFile> openIndex() const {
        return std::make_unique<IndexFile>(std::make_unique<MemoryFile>(stored_->index, "ARBOL.MDX"),
                                           table_->schema());
    }
    static std::string key(const std::string& text) { return text + std::string(100 - text.size(), ' '); }
};

TEST_F(HostileTreeTest, APathThatPassesABlockTwiceIsRefusedWhenThatBlockIsSplit) {
    Items ends = nineOf("K", 100);
    ends[0].second = ends[1].second = "A"; // ends the walk back through equal keys
    const PageNumber full = put(ends), equal = put(nineOf("K", 200)), other = put(nineOf("Z", 300));
    const PageNumber root = put({});
    const PageNumber inner = put({{root, "B"},
                                  {equal, "L"},
                                  {other, "M"},
                                  {other, "N"},
                                  {other, "O"},
                                  {other, "P"},
                                  {other, "Q"},
                                  {other, "R"}},
                                 other);
    write(root,
          {{other, "A"},
           {other, "B"},
           {other, "C"},
           {other, "D"},
           {other, "E"},
           {other, "F"},
           {other, "G"},
           {inner, "X"}},
          full);
    setRoot(root);
    const auto index = openIndex();
    const Error error = errorOf([&] { TreeEditor(*index, index->tags().front()).insert(key("K"), 1); });
    EXPECT_EQ(error.code(), ErrorCode::BadIndex) << error.what();
    EXPECT_NE(std::string(error.what()).find("dos veces"), std::string::npos) << error.what();
}

TEST_F(HostileTreeTest, ATreeWhoseRootIsTheFileHeaderIsRefusedWhileThatIsBeingChanged) {
    make(100, {.name = "K", .expression = "K"}, 64);
    char* const head = stored_->index->bytes.data();
    head[mdx::created] = 1; // with the version before it: a block of 258 keys
    head[mdx::created + 1] = head[mdx::created + 2] = 0;
    setRoot(0);
    const auto index = openIndex();
    const Tag& tag = index->tags().front();
    (void)index->allocate(tag); // as another tag's change does
    const Error error = errorOf([&] { TreeEditor(*index, tag).insert(key("K"), 1); });
    EXPECT_EQ(error.code(), ErrorCode::BadIndex);
    EXPECT_NE(std::string(error.what()).find("página 0: queda fuera"), std::string::npos) << error.what();
}

} // namespace
