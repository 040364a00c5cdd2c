// Rebuilds trees: sorts the keys of all records, then writes them page by page.
#include "dbase/mdx/index_rebuild.h"

#include <algorithm>
#include <array>

#include "dbase/dbf/dates.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/key_sorter.h"
#include "dbase/mdx/page_set.h"
#include "dbase/mdx/record_key.h"
#include "dbase/mdx/tree_builder.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

// Writes every entry of one tag in order, without the hidden records of a unique tag. A program that knows
// only the append lock may add records meanwhile: it must add their entries itself.
TreeRoot buildTree(IndexFile& index, const Tag& tag, const TableFile& records, const ScannedRecords& which,
                   BlockWriter& blocks, std::uint32_t& blockCount,
                   const std::function<void(RecordNumber)>& progress) {
    KeySorter sorter(IndexFile::prescribedOrder(tag, records.schema()), tag.keyLength, which.count);
    std::array<char, maxKeyLength> key;
    RecordScan scan(records, which);
    for (const RecordView* record = scan.next(); record != nullptr; record = scan.next()) {
        if (!tag.condition || tag.condition->test(*record)) {
            makeKey(tag, *record, std::span(key).first(tag.keyLength));
            sorter.add({key.data(), tag.keyLength}, record->number);
        }
        if (record->number % 16384 == 0) {
            progress(record->number);
        }
    }
    TreeBuilder builder(index, tag, blocks);
    std::string previous;
    bool hasPrevious = false;
    sorter.deliver([&](std::string_view entry, RecordNumber number) {
        if (tag.definition.unique) {
            if (hasPrevious && entry == previous) {
                return;
            }
            previous = entry;
            hasPrevious = true;
        }
        builder.add(entry, number);
    });
    const TreeRoot root = builder.finish();
    blockCount = builder.blockCount();
    return root;
}

void writeTagHeader(IndexFile& index, const Tag& tag, const TreeRoot& root, std::uint32_t blockCount) {
    index.setTreeRoot(tag, root);
    const std::vector<char> fresh = index.freshTagHeader(tag);
    const std::span<char> header = index.changeBlock(tag.headerPage);
    std::copy(fresh.begin(), fresh.end(), header.begin());
    store32(header.data() + mdx::tagPages, (blockCount + 1) * index.blockPages());
    encodeHeaderDate(header.data() + mdx::indexed);
}

NewTrees buildTrees(const TableFile& records, IndexFile& index, const ScannedRecords& which,
                    BlockWriter& blocks, const Progress& progress) {
    NewTrees trees;
    const std::uint64_t total = std::uint64_t{which.count} * index.tags().size();
    std::uint64_t done = 0;
    for (const Tag& tag : index.tags()) {
        std::uint32_t blockCount = 0;
        trees.roots.push_back(
            buildTree(index, tag, records, which, blocks, blockCount, [&](RecordNumber number) {
                if (progress) {
                    progress(done + number, total);
                }
            }));
        trees.blockCounts.push_back(blockCount);
        done += which.count;
    }
    blocks.flush();
    trees.end = blocks.end();
    return trees;
}

// Or after a crash of this machine another one could see the end alone.
void sendFirst(TableFile& records, IndexFile& index) {
    if (index.file().isRemote()) {
        records.file().sync();
        index.file().sync();
    }
}

} // namespace

void rebuildTrees(TableFile& records, IndexFile& index, const Progress& progress) {
    index.dropChanges();
    const std::uint32_t count = records.recordCount();
    const UpdateStamp before = index.stamp();
    index.writeStamp(before.begun(count));
    sendFirst(records, index);
    BlockWriter blocks(index, PageSet::headersOf(index));
    useTrees(records, index, buildTrees(records, index, {count, 0, ' '}, blocks, progress));
    sendFirst(records, index);
    index.writeStamp(before.ended(count));
    if (progress) {
        const std::uint64_t total = std::uint64_t{count} * index.tags().size();
        progress(total, total);
    }
}

// A load that dies in here leaves blocks that nothing leads to. The first ones of the free list may be among
// them: allocate() then finds keys in them, and abandons the list.
NewTrees buildTreesBeside(const TableFile& records, IndexFile& index, const ScannedRecords& which,
                          const Progress& progress) {
    index.dropChanges();
    const std::uint64_t sizeBefore = index.file().size();
    BlockWriter blocks(index, PageSet::usedIn(index));
    try {
        NewTrees trees = buildTrees(records, index, which, blocks, progress);
        trees.sizeBefore = sizeBefore;
        index.file().sync(); // so that there is little to wait for while nobody can read
        if (progress) {
            const std::uint64_t total = std::uint64_t{which.count} * index.tags().size();
            progress(total, total);
        }
        return trees;
    } catch (...) {
        dropTrees(index, {.roots = {}, .blockCounts = {}, .end = 0, .sizeBefore = sizeBefore});
        throw;
    }
}

void dropTrees(IndexFile& index, const NewTrees& trees) {
    index.file().resize(trees.sizeBefore);
    index.forgetSize();
}

// The header's count alone might be another program's, which does not maintain it.
void cutLeftTrees(IndexFile& index) {
    if (index.announcedPages() >= index.pageCount()) {
        return;
    }
    const PageNumber end = std::max(index.announcedPages(), PageSet::usedIn(index).end());
    if (end < index.pageCount()) {
        index.file().resize(std::uint64_t{end} * pageBytes);
        index.forgetSize();
    }
}

void useTrees(TableFile& records, IndexFile& index, const NewTrees& trees) {
    index.resetOrders(records.schema());
    for (std::size_t i = 0; i < index.tags().size(); ++i) {
        writeTagHeader(index, index.tags()[i], trees.roots[i], trees.blockCounts[i]);
    }
    bool restored = true;
    index.writeChangesOrRestore(restored);
    std::vector<char> head = index.freshHead(records.schema());
    store32(head.data() + mdx::pageCount, trees.end);
    store32(head.data() + mdx::freeList, 0);
    index.file().write(0, head);
    index.file().resize(std::uint64_t{trees.end} * pageBytes);
    index.forgetSize();
    if (!records.schema().hasProductionIndex) {
        records.setHasIndex(true);
    }
    if (const RecordNumber held = records.recordCount(); records.announcedCount() != held) {
        records.setCount(held); // corrects a count that the file does not hold
    }
}

} // namespace dbase
