// Collects the pages of an index that its headers and trees occupy.
#include "dbase/mdx/page_set.h"

#include <algorithm>

#include "dbase/mdx/tree_cursor.h"

namespace dbase {

PageSet PageSet::headersOf(const IndexFile& index) {
    PageSet pages;
    for (const Tag& tag : index.tags()) {
        pages.add(tag.headerPage, index.blockPages());
    }
    return pages;
}

PageSet PageSet::usedIn(const IndexFile& index) {
    PageSet pages = headersOf(index);
    for (const Tag& tag : index.tags()) {
        pages.addTree(index, tag);
    }
    return pages;
}

bool PageSet::hasAny(PageNumber first, PageNumber pages) const {
    for (PageNumber page = first; page < first + pages && page < has_.size(); ++page) {
        if (has_[page]) {
            return true;
        }
    }
    return false;
}

void PageSet::add(PageNumber first, PageNumber pages) {
    has_.resize(std::max<std::size_t>(has_.size(), std::size_t{first} + pages));
    std::fill_n(has_.begin() + first, pages, true);
}

// Level by level. All leaves lie at one depth, so those of a level are not read once its first block is one.
void PageSet::addTree(const IndexFile& index, const Tag& tag) {
    std::vector<PageNumber> level{index.treeRoot(tag).root};
    std::vector<char> buffer;
    for (std::size_t depth = 0; depth < TreeCursor::maxDepth; ++depth) {
        for (const PageNumber page : level) {
            static_cast<void>(index.block(page, buffer)); // inside the file
            if (hasAny(page, index.blockPages())) {
                index.damaged(page, "el árbol pasa dos veces por la misma página");
            }
            add(page, index.blockPages());
        }
        if (TreeNode(index, tag, level.front(), buffer).isLeaf()) {
            return;
        }
        std::vector<PageNumber> below;
        for (const PageNumber page : level) {
            const TreeNode node(index, tag, page, buffer);
            for (std::uint32_t i = 0; i <= node.count(); ++i) {
                below.push_back(node.pointer(i));
            }
        }
        level = std::move(below);
    }
    index.damaged(level.front(), "el árbol del tag " + tag.definition.name + " no termina");
}

} // namespace dbase
