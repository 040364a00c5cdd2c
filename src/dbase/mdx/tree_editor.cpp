// Inserts keys into a tree and removes them, splitting and removing pages.
#include "dbase/mdx/tree_editor.h"

#include <algorithm>
#include <cstring>

#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"

namespace dbase {

namespace {

void setCount(std::span<char> block, std::size_t count) {
    store32(block.data() + mdx::keyCount, static_cast<std::uint32_t>(count));
}

// Sets the pointer after the last item: the last child of an inner block, 0 in a leaf.
void setTail(std::span<char> block, const Tag& tag, std::size_t count, std::uint32_t pointer) {
    // Even a full block has room for it: maxKeys allows for that.
    store32(block.data() + mdx::items + count * tag.itemLength, pointer);
}

} // namespace

std::vector<TreeEditor::Item> TreeEditor::itemsOf(const TreeNode& node) {
    std::vector<Item> items;
    items.reserve(node.count() + 1);
    for (std::uint32_t i = 0; i < node.count(); ++i) {
        items.push_back({node.pointer(i), std::string(node.key(i))});
    }
    return items;
}

std::uint32_t TreeEditor::count(PageNumber page) const {
    std::vector<char> buffer;
    return TreeNode(index_, tag_, page, buffer).count();
}

void TreeEditor::putItem(std::span<char> block, std::uint32_t i, std::uint32_t pointer,
                         std::string_view key) const {
    char* item = block.data() + mdx::items + std::size_t{i} * tag_.itemLength;
    store32(item, pointer);
    std::memcpy(item + mdx::itemKey, key.data(), tag_.keyLength);
    std::memset(item + mdx::itemKey + tag_.keyLength, 0, tag_.itemLength - mdx::itemKey - tag_.keyLength);
}

void TreeEditor::insert(std::string_view key, RecordNumber record) {
    // Goes from after the equal keys back to the first one with a higher record number: an appended record,
    // which has the highest number of all, is placed at once.
    TreeCursor at(index_, tag_);
    at.placeAfter(key);
    Path path(at.path().begin(), at.path().end());
    while (at.prior() && tag_.order.compare(at.key(), key) == 0 && at.record() >= record) {
        if (at.record() == record) {
            return; // inserted by an engine that ignores FOR conditions
        }
        path.assign(at.path().begin(), at.path().end());
    }
    insertIntoLeaf(std::move(path), key, record);
}

void TreeEditor::insertIntoLeaf(Path path, std::string_view key, RecordNumber record) {
    const PageNumber page = path.back().page;
    const std::uint32_t slot = path.back().slot;
    const std::uint32_t n = count(page);
    if (n >= tag_.maxKeys) {
        splitLeaf(std::move(path), key, record);
        return;
    }
    const std::span<char> block = index_.changeBlock(page);
    char* item = block.data() + mdx::items + std::size_t{slot} * tag_.itemLength;
    std::memmove(item + tag_.itemLength, item, std::size_t{n - slot} * tag_.itemLength);
    putItem(block, slot, record, key);
    setCount(block, n + 1);
    setTail(block, tag_, n + 1, 0);
    if (n == 0) {
        TreeRoot root = index_.treeRoot(tag_);
        if (!root.holdsKeys || root.firstLeaf == 0) {
            root.holdsKeys = true;
            root.firstLeaf = root.lastLeaf = page;
            index_.setTreeRoot(tag_, root);
        }
    }
}

void TreeEditor::splitLeaf(Path path, std::string_view key, RecordNumber record) {
    const PageNumber left = path.back().page;
    const std::uint32_t slot = path.back().slot;
    std::vector<char> buffer;
    std::vector<Item> items = itemsOf(TreeNode(index_, tag_, left, buffer));
    items.insert(items.begin() + slot, Item{record, std::string(key)});

    // At the very end of the tree only the new entry moves to the next page, so that rows added in key order
    // leave full pages.
    const bool atEnd = slot + 1 == items.size() &&
                       std::all_of(path.begin(), path.end() - 1, [&](const TreeCursor::Level& level) {
                           return level.slot == count(level.page);
                       });
    const std::size_t leftCount =
        atEnd ? std::min<std::size_t>(items.size() - 1, tag_.maxKeys) : items.size() / 2;

    const PageNumber right = index_.allocate(tag_);
    const std::span<char> leftBlock = index_.changeBlock(left);
    const std::span<char> rightBlock = index_.changeBlock(right);
    std::fill(leftBlock.begin(), leftBlock.end(), '\0');
    for (std::size_t i = 0; i < items.size(); ++i) {
        const bool isLeft = i < leftCount;
        putItem(isLeft ? leftBlock : rightBlock, static_cast<std::uint32_t>(isLeft ? i : i - leftCount),
                items[i].pointer, items[i].key);
    }
    setCount(leftBlock, leftCount);
    setCount(rightBlock, items.size() - leftCount);
    keepEnds(left, left, right);
    path.pop_back();
    insertChild(std::move(path), items[leftCount - 1].key, left, right);
}

void TreeEditor::keepEnds(PageNumber oldLeaf, PageNumber newFirst, PageNumber newLast) {
    TreeRoot root = index_.treeRoot(tag_);
    bool changed = false;
    if (root.firstLeaf == oldLeaf && newFirst != oldLeaf) {
        root.firstLeaf = newFirst;
        changed = true;
    }
    if (root.lastLeaf == oldLeaf) {
        root.lastLeaf = newLast;
        changed = true;
    }
    if (changed) {
        index_.setTreeRoot(tag_, root);
    }
}

// The inner block of a level, whose slot leads to one of its children. In a damaged tree a path may pass the
// same block twice, and the change made through the lower level may leave it fewer children.
TreeEditor::Inner TreeEditor::readInner(const TreeCursor::Level& level) const {
    Inner inner = readInner(level.page);
    if (level.slot > inner.items.size()) {
        index_.damaged(level.page, "el árbol pasa dos veces por ella");
    }
    return inner;
}

TreeEditor::Inner TreeEditor::readInner(PageNumber page) const {
    std::vector<char> buffer;
    const TreeNode node(index_, tag_, page, buffer);
    if (node.isLeaf()) {
        index_.damaged(page, "es una hoja donde debería haber una página intermedia");
    }
    return {itemsOf(node), node.pointer(node.count())};
}

void TreeEditor::writeInner(PageNumber page, const Inner& inner) {
    const std::span<char> block = index_.changeBlock(page);
    std::fill(block.begin(), block.end(), '\0');
    for (std::size_t i = 0; i < inner.items.size(); ++i) {
        putItem(block, static_cast<std::uint32_t>(i), inner.items[i].pointer, inner.items[i].key);
    }
    setCount(block, inner.items.size());
    setTail(block, tag_, inner.items.size(), inner.last);
}

// `left`, a child of the block at the end of the path, was split: `right` follows it, `separator` is the last
// key of `left`.
void TreeEditor::insertChild(Path path, const std::string& separator, PageNumber left, PageNumber right) {
    if (path.empty()) {
        const PageNumber rootPage = index_.allocate(tag_);
        writeInner(rootPage, {{{left, separator}}, right});
        TreeRoot root = index_.treeRoot(tag_);
        root.root = rootPage;
        index_.setTreeRoot(tag_, root);
        return;
    }
    const auto [page, slot] = path.back();
    Inner inner = readInner(path.back());
    // The old item keeps its separator and now leads to the right part; the left part gets an item before it.
    inner.items.insert(inner.items.begin() + slot, Item{left, separator});
    (slot + 1 < inner.items.size() ? inner.items[slot + 1].pointer : inner.last) = right;
    if (inner.items.size() <= maxSeparators()) {
        writeInner(page, inner);
        return;
    }
    const std::size_t middle = inner.items.size() / 2;
    const Item up = inner.items[middle];
    Inner upper{{inner.items.begin() + static_cast<std::ptrdiff_t>(middle) + 1, inner.items.end()},
                inner.last};
    inner.items.resize(middle);
    inner.last = up.pointer;
    const PageNumber newPage = index_.allocate(tag_);
    writeInner(newPage, upper);
    writeInner(page, inner);
    path.pop_back();
    insertChild(std::move(path), up.key, page, newPage);
}

bool TreeEditor::remove(std::string_view key, RecordNumber record) {
    TreeCursor at(index_, tag_);
    if (!at.find(key, record)) {
        return false;
    }
    Path path(at.path().begin(), at.path().end());
    const auto [page, slot] = path.back();
    const std::uint32_t n = count(page);
    if (n == 1 && path.size() > 1) {
        unlinkLeaf(std::move(path));
        return true;
    }
    const std::span<char> block = index_.changeBlock(page);
    char* item = block.data() + mdx::items + std::size_t{slot} * tag_.itemLength;
    std::memmove(item, item + tag_.itemLength, std::size_t{n - slot - 1} * tag_.itemLength);
    putItem(block, n - 1, 0, std::string(tag_.keyLength, '\0'));
    setCount(block, n - 1);
    setTail(block, tag_, n - 1, 0);
    if (n == 1) {
        TreeRoot root = index_.treeRoot(tag_);
        root.holdsKeys = false;
        index_.setTreeRoot(tag_, root);
    } else if (slot == n - 1) {
        const std::string last(
            block.data() + mdx::items + std::size_t{n - 2} * tag_.itemLength + mdx::itemKey, tag_.keyLength);
        path.pop_back();
        setSeparatorAbove(std::move(path), last);
    }
    return true;
}

// Sets the separator that bounds the child at the end of the path from above, wherever it is.
void TreeEditor::setSeparatorAbove(Path path, std::string_view key) {
    while (!path.empty()) {
        const auto [page, slot] = path.back();
        if (slot < count(page)) {
            const std::span<char> block = index_.changeBlock(page);
            std::memcpy(block.data() + mdx::items + std::size_t{slot} * tag_.itemLength + mdx::itemKey,
                        key.data(), tag_.keyLength);
            return;
        }
        path.pop_back();
    }
}

void TreeEditor::unlinkLeaf(Path path) {
    const PageNumber leaf = path.back().page;
    const TreeRoot root = index_.treeRoot(tag_);
    if (root.firstLeaf == leaf || root.lastLeaf == leaf) {
        TreeCursor neighbour(index_, tag_);
        PageNumber newEnd = 0;
        neighbour.first(); // at least on the entry to be removed
        if (root.firstLeaf == leaf && neighbour.path().back().page == leaf && neighbour.next()) {
            newEnd = neighbour.path().back().page;
        } else if (root.lastLeaf == leaf) {
            neighbour.last();
            newEnd = neighbour.prior() ? neighbour.path().back().page : 0;
        }
        keepEnds(leaf, newEnd, newEnd);
    }
    path.pop_back();
    removeChild(std::move(path));
    index_.release(leaf);
}

// Removes the child at the end of the path from its block.
void TreeEditor::removeChild(Path path) {
    const auto [page, slot] = path.back();
    Inner inner = readInner(path.back());
    if (inner.items.empty()) {
        index_.damaged(page, "tiene una sola página debajo");
    }
    if (slot < inner.items.size()) {
        inner.items.erase(inner.items.begin() + slot);
    } else {
        const Item last = inner.items.back();
        inner.items.pop_back();
        inner.last = last.pointer;
        Path above = path;
        above.pop_back();
        setSeparatorAbove(std::move(above), last.key);
    }
    if (!inner.items.empty()) {
        writeInner(page, inner);
    } else if (path.size() == 1) {
        TreeRoot root = index_.treeRoot(tag_);
        root.root = inner.last;
        index_.setTreeRoot(tag_, root);
        index_.release(page);
    } else {
        joinLoneChild(std::move(path), inner.last);
    }
}

// The block at the end of the path is left with one child and no separator, which readers take for a leaf
// without keys: moves its child to a neighbour, or gives it one of a neighbour's.
void TreeEditor::joinLoneChild(Path path, PageNumber child) {
    const PageNumber page = path.back().page;
    path.pop_back();
    const auto [abovePage, slot] = path.back();
    Inner above = readInner(path.back());
    if (above.items.empty()) {
        index_.damaged(abovePage, "tiene una sola página debajo");
    }
    const auto childOf = [](const Inner& node, std::size_t i) {
        return i < node.items.size() ? node.items[i].pointer : node.last;
    };
    const bool fromLeft = slot > 0;
    const std::size_t separatorAt = fromLeft ? slot - 1 : slot;
    const PageNumber siblingPage = childOf(above, fromLeft ? slot - 1 : slot + 1);
    Inner sibling = readInner(siblingPage);
    const std::string separator = above.items[separatorAt].key;
    if (sibling.items.size() + 1 <= maxSeparators()) {
        if (fromLeft) {
            sibling.items.push_back({sibling.last, separator});
            sibling.last = child;
        } else {
            sibling.items.insert(sibling.items.begin(), Item{child, separator});
        }
        writeInner(siblingPage, sibling);
        index_.release(page);
        if (fromLeft) { // the sibling also takes the place, and so the separator, of the removed block
            (slot < above.items.size() ? above.items[slot].pointer : above.last) = siblingPage;
            writeInner(abovePage, above);
            path.back().slot = slot - 1;
        }
        removeChild(std::move(path));
        return;
    }
    Inner joined;
    if (fromLeft) {
        joined = {{{sibling.last, separator}}, child};
        above.items[separatorAt].key = sibling.items.back().key;
        sibling.last = sibling.items.back().pointer;
        sibling.items.pop_back();
    } else {
        joined = {{{child, separator}}, sibling.items.front().pointer};
        above.items[separatorAt].key = sibling.items.front().key;
        sibling.items.erase(sibling.items.begin());
    }
    writeInner(siblingPage, sibling);
    writeInner(page, joined);
    writeInner(abovePage, above);
}

} // namespace dbase
