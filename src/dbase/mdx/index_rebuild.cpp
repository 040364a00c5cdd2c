// Rebuilds trees: sorts the keys of all records, then writes them page by page.
#include "dbase/mdx/index_rebuild.h"

#include <algorithm>
#include <array>

#include "dbase/dbf/dates.h"
#include "dbase/dbf/record_scan.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/mdx/key_sorter.h"
#include "dbase/mdx/record_key.h"
#include "dbase/mdx/tree_builder.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

// Writes every entry of one tag in order, without the hidden records of a unique tag. A program that knows
// only the append lock may add records meanwhile: it must add their entries itself.
TreeRoot buildTree(IndexFile& index, const Tag& tag, const TableFile& records, BlockWriter& blocks,
                   std::uint32_t& blockCount, const std::function<void(RecordNumber)>& progress) {
    const std::uint32_t count = index.stamp().records; // the same for all tags
    KeySorter sorter(tag.order, tag.keyLength, count);
    std::array<char, maxKeyLength> key;
    RecordScan scan(records);
    for (const RecordView* record = scan.next(); record != nullptr && record->number <= count;
         record = scan.next()) {
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

} // namespace

void rebuildTrees(TableFile& records, IndexFile& index, const Progress& progress) {
    index.dropChanges();
    const std::uint32_t count = records.recordCount();
    const UpdateStamp before = index.stamp();
    const auto sendFirst = [&] { // or after a crash of this machine another one could see the end alone
        if (index.file().isRemote()) {
            records.file().sync();
            index.file().sync();
        }
    };
    index.writeStamp(before.begun(count));
    sendFirst();
    index.resetOrders(records.schema());

    BlockWriter blocks(index);
    const std::uint64_t total = std::uint64_t{count} * index.tags().size();
    std::uint64_t done = 0;
    for (const Tag& tag : index.tags()) {
        std::uint32_t blockCount = 0;
        const TreeRoot root = buildTree(index, tag, records, blocks, blockCount, [&](RecordNumber number) {
            if (progress) {
                progress(done + number, total);
            }
        });
        writeTagHeader(index, tag, root, blockCount);
        done += count;
    }
    blocks.flush();
    bool restored = true;
    index.writeChangesOrRestore(restored);
    std::vector<char> head = index.freshHead(records.schema());
    store32(head.data() + mdx::pageCount, blocks.end());
    store32(head.data() + mdx::freeList, 0);
    index.file().write(0, head);
    index.file().resize(std::uint64_t{blocks.end()} * pageBytes);
    index.forgetSize();
    if (!records.schema().hasProductionIndex) {
        records.setHasIndex(true);
    }
    if (const RecordNumber held = records.recordCount(); records.announcedCount() != held) {
        records.setCount(held); // corrects a count that the file does not hold
    }
    sendFirst();
    index.writeStamp(before.ended(count));
    if (progress) {
        progress(total, total);
    }
}

} // namespace dbase
