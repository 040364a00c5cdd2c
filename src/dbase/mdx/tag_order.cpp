// Determines which of the two key orders a collating table's index really has.

#include "dbase/dbf/codepage.h"
#include "dbase/dbf/collation.h"
#include "dbase/mdx/index_file.h"
#include "dbase/mdx/tree_cursor.h"

namespace dbase {

namespace {

// The keys of the blocks on one path from the root to a leaf are enough: every block is in the order of the
// whole.
bool obeys(const IndexFile& index, const Tag& tag, const KeyOrder& order) {
    std::vector<char> buffer;
    PageNumber page = index.treeRoot(tag).root;
    for (std::size_t depth = 0; depth < TreeCursor::maxDepth; ++depth) {
        const TreeNode node(index, tag, page, buffer);
        for (std::uint32_t i = 1; i < node.count(); ++i) {
            if (order.compare(node.key(i - 1), node.key(i)) > 0) {
                return false;
            }
        }
        if (node.isLeaf()) {
            return true;
        }
        page = node.pointer(node.count() / 2);
    }
    index.damaged(page, "el árbol del tag " + tag.definition.name + " no termina");
}

} // namespace

void IndexFile::determineOrders() {
    for (Tag& tag : tags_) {
        if (!tag.order.isCollated() || tag.keyType != KeyType::Character || obeys(*this, tag, tag.order)) {
            continue;
        }
        const KeyOrder byBytes(tag.keyType, false, tag.definition.descending);
        if (!obeys(*this, tag, byBytes)) {
            damaged(treeRoot(tag).root, "las claves del tag " + tag.definition.name + " no están en orden");
        }
        tag.order = byBytes;
    }
}

KeyOrder IndexFile::prescribedOrder(const Tag& tag, const Schema& schema) {
    return {tag.keyType, driverCollates(schema.languageDriver), tag.definition.descending};
}

void IndexFile::resetOrders(const Schema& schema) {
    for (Tag& tag : tags_) {
        tag.order = prescribedOrder(tag, schema);
    }
}

} // namespace dbase
