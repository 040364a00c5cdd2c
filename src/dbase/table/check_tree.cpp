// Checks one tree: its pages, its order, and an entry for every record that belongs in it.
#include "dbase/table/check_tree.h"

#include <array>
#include <unordered_set>

#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/record_key.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

// Walks one tree from its root; each page of the file may belong to only one place.
class TreeCheck {
public:
    TreeCheck(const TableFile& records, const IndexFile& index, const Tag& tag,
              std::unordered_set<PageNumber>& taken, CheckReport& report, const Progress& progress)
        : records_(records), index_(index), tag_(tag), taken_(taken), report_(report), progress_(progress),
          count_(records.recordCount()), seen_(count_ + std::size_t{1}) {}

    void run() {
        visit(index_.treeRoot(tag_).root, 0, nullptr);
        checkMissing();
        if (hasSmallNumbers_) {
            report_.note(index_.path(), place(),
                         "ordena los números entre 0 y 0,1 antes que el cero, como otros programas");
        }
    }

private:
    [[nodiscard]] std::string place() const { return "tag " + tag_.definition.name; }
    [[nodiscard]] std::string place(PageNumber page) const {
        return place() + ", página " + std::to_string(page);
    }

    // `bound`: no key below may come after it; null for no bound. lastKey_ serves to check the order across
    // pages.
    void visit(PageNumber page, std::size_t depth, const std::string* bound) {
        if (depth >= TreeCursor::maxDepth || !taken_.insert(page).second) {
            report_.add(index_.path(), place(page), "el árbol pasa dos veces por la misma página");
            return;
        }
        std::vector<char> buffer;
        const TreeNode node(index_, tag_, page, buffer);
        if (node.isLeaf()) {
            visitLeaf(node, page, depth, bound);
            return;
        }
        if (node.count() == 0) {
            report_.add(index_.path(), place(page), "página intermedia sin claves");
        }
        std::vector<std::pair<PageNumber, std::string>> children;
        for (std::uint32_t i = 0; i < node.count(); ++i) {
            children.emplace_back(node.pointer(i), node.key(i));
        }
        const PageNumber last = node.pointer(node.count());
        for (std::size_t i = 0; i < children.size() && !report_.isFull(); ++i) {
            if (i > 0 && tag_.order.compare(children[i - 1].second, children[i].second) > 0) {
                report_.add(index_.path(), place(page), "los separadores no están en orden");
            }
            visit(children[i].first, depth + 1, &children[i].second);
            // The following keys must not come before the separator either.
            if (!hasLast_ || tag_.order.compare(lastKey_, children[i].second) < 0) {
                floor_ = children[i].second;
                hasFloor_ = true;
            }
        }
        visit(last, depth + 1, bound);
    }

    void visitLeaf(const TreeNode& leaf, PageNumber page, std::size_t depth, const std::string* bound) {
        if (leafDepth_ == 0) {
            leafDepth_ = depth + 1;
        } else if (leafDepth_ != depth + 1) {
            report_.add(index_.path(), place(page), "las hojas no están a la misma profundidad");
        }
        if (leaf.count() == 0 && depth > 0) {
            report_.add(index_.path(), place(page), "hoja vacía");
        }
        for (std::uint32_t i = 0; i < leaf.count() && !report_.isFull(); ++i) {
            visitEntry(leaf.key(i), leaf.pointer(i), page);
        }
        if (bound != nullptr && leaf.count() > 0 &&
            tag_.order.compare(leaf.key(leaf.count() - 1), *bound) > 0) {
            report_.add(index_.path(), place(page), "una clave pasa de su separador");
        }
    }

    void visitEntry(std::string_view key, RecordNumber number, PageNumber page) {
        if (hasLast_ && tag_.order.compare(lastKey_, key) > 0) {
            report_.add(index_.path(), place(page), "las claves no están en orden");
        }
        if (hasLast_ && tag_.definition.unique && tag_.order.compare(lastKey_, key) == 0) {
            report_.add(index_.path(), place(page), "clave repetida en un tag único");
        }
        if (hasFloor_ && tag_.order.compare(key, floor_) < 0) {
            report_.add(index_.path(), place(page), "una clave queda delante de su separador");
        }
        lastKey_ = key;
        hasLast_ = true;
        ++entries_;
        if (number == 0 || number > count_) {
            report_.add(index_.path(), place(page),
                        "lleva al registro " + std::to_string(number) + ", que no existe");
            return;
        }
        if (seen_[number]) {
            report_.add(index_.path(), place(page),
                        "el registro " + std::to_string(number) + " está dos veces");
        }
        seen_[number] = true;
        if (tag_.isUnderstood()) {
            checkKey(key, number);
        }
        if (tag_.keyType == KeyType::Numeric && !hasSmallNumbers_) {
            const double value = decodeNumericKey(key);
            hasSmallNumbers_ = value > 0 && value < 0.1;
        }
        if (progress_ && entries_ % 65536 == 0) {
            progress_(entries_, count_);
        }
    }

    void checkKey(std::string_view key, RecordNumber number) {
        const RecordView record = records_.record(number);
        if (tag_.condition && !tag_.condition->test(record)) {
            report_.add(index_.path(), place(),
                        "el registro " + std::to_string(number) + " no cumple la condición del tag");
        }
        std::array<char, maxKeyLength> made;
        makeKey(tag_, record, std::span(made).first(tag_.keyLength));
        const KeyOrder plain(tag_.keyType, false, false);
        if (plain.compare({made.data(), tag_.keyLength}, key) != 0 &&
            !(makeUnsignedKey(tag_, record, std::span(made).first(tag_.keyLength)) &&
              plain.compare({made.data(), tag_.keyLength}, key) == 0)) {
            report_.add(index_.path(), place(),
                        "la clave del registro " + std::to_string(number) + " no es la suya");
        }
    }

    // Records without an entry: correct only in a unique tag if another record has the key, or outside the
    // condition.
    void checkMissing() {
        if (!tag_.isUnderstood()) {
            return;
        }
        std::array<char, maxKeyLength> made;
        for (RecordNumber number = 1; number <= count_ && !report_.isFull(); ++number) {
            if (seen_[number]) {
                continue;
            }
            const RecordView record = records_.record(number);
            if (tag_.condition && !tag_.condition->test(record)) {
                continue;
            }
            if (tag_.definition.unique) {
                makeKey(tag_, record, std::span(made).first(tag_.keyLength));
                const std::string_view key(made.data(), tag_.keyLength);
                TreeCursor cursor(index_, tag_);
                if (cursor.seek(key) && tag_.order.compare(cursor.key(), key) == 0) {
                    continue;
                }
            }
            report_.add(index_.path(), place(), "falta el registro " + std::to_string(number));
        }
    }

    const TableFile& records_;
    const IndexFile& index_;
    const Tag& tag_;
    std::unordered_set<PageNumber>& taken_;
    CheckReport& report_;
    const Progress& progress_;
    RecordNumber count_;
    std::vector<bool> seen_;
    std::string lastKey_, floor_;
    bool hasLast_ = false, hasFloor_ = false;
    bool hasSmallNumbers_ = false; // between 0 and 0.1: their order is that of other programs
    std::size_t leafDepth_ = 0;
    std::uint64_t entries_ = 0;
};

void checkFreeList(const IndexFile& index, std::unordered_set<PageNumber>& taken, CheckReport& report) {
    for (PageNumber page = index.freeList(); page != 0;) {
        std::vector<char> buffer;
        const char* block = index.block(page, buffer);
        if (!taken.insert(page).second) {
            report.add(index.path(), "página " + std::to_string(page), "está libre y en uso a la vez");
            return;
        }
        if (load32(block + mdx::keyCount) != 0) {
            report.add(index.path(), "página " + std::to_string(page), "página libre con claves");
        }
        page = load32(block + mdx::freeNext);
    }
}

} // namespace

void checkTrees(const TableFile& records, const IndexFile& index, CheckReport& report,
                const Progress& progress) {
    std::unordered_set<PageNumber> taken;
    for (const Tag& tag : index.tags()) {
        if (!taken.insert(tag.headerPage).second) {
            report.add(index.path(), "tag " + tag.definition.name, "comparte su cabecera con otro");
        }
    }
    for (const Tag& tag : index.tags()) {
        if (report.isFull()) {
            return;
        }
        try {
            TreeCheck(records, index, tag, taken, report, progress).run();
        } catch (const Error& error) {
            if (error.code() != ErrorCode::BadIndex) {
                throw;
            }
            report.add(index.path(), "tag " + tag.definition.name, error.what());
        }
    }
    try {
        checkFreeList(index, taken, report);
    } catch (const Error& error) {
        report.add(index.path(), "páginas libres", error.what());
    }
}

} // namespace dbase
