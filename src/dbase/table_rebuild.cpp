// Rebuilding all tags of a table from its records.

#include <algorithm>
#include <array>

#include "dbase/bytes.h"
#include "dbase/dates.h"
#include "dbase/error.h"
#include "dbase/index_layout.h"
#include "dbase/key_sorter.h"
#include "dbase/record_scan.h"
#include "dbase/table.h"
#include "dbase/tree_builder.h"

namespace dbase {

namespace {

using Progress = std::function<void(std::uint64_t, std::uint64_t)>;

// Every entry of one tag in order, the hidden records of a unique tag left out.
TreeRoot buildTree(IndexFile& index, const Tag& tag, const TableFile& records, BlockWriter& blocks,
                   std::uint32_t& blockCount, const std::function<void(RecordNumber)>& progress) {
    KeySorter sorter(tag.order, tag.keyLength, records.recordCount());
    std::array<char, maxKeyLength> key;
    RecordScan scan(records);
    while (const RecordView* record = scan.next()) {
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
    const UpdateStamp old = index.stamp();
    const std::uint64_t counter = old.counter - old.counter % 2;
    const auto sendFirst = [&] { // else another machine could get the end without the rest, should this stop
        if (index.file().isRemote()) {
            records.file().sync();
            index.file().sync();
        }
    };
    index.writeStamp({true, true, count, counter + 1});
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
    index.writeChanges(restored);
    std::vector<char> head = index.freshHead(records.schema());
    store32(head.data() + mdx::pageCount, blocks.end());
    store32(head.data() + mdx::freeList, 0);
    index.file().write(0, head);
    index.file().resize(std::uint64_t{blocks.end()} * pageBytes);
    index.forgetSize();
    if (!records.schema().hasProductionIndex) {
        records.setHasIndex(true);
    }
    if (records.announcedCount() != count) { // a count that the file does not hold is made true
        records.setCount(count);
    }
    sendFirst();
    index.writeStamp({true, false, count, counter + 2});
    if (progress) {
        progress(total, total);
    }
}

void Table::rebuildTags(const Progress& progress) {
    requireWritable();
    const StructureLock lock(structureFile(), structureHolders_, LockKind::Exclusive);
    renewTornViews();
    rebuildLocked(progress);
}

void Table::rebuildLocked(const Progress& progress) {
    if (index_) {
        beginJournal();
        rebuildTrees(records_, *index_, progress);
        verified_ = true;
        verifiedCount_ = records_.recordCount();
    }
}

// The rows were written behind the end mark and do not count yet: they go to the disk, then the mark, then
// the first row takes the place of the end mark, so that a death in between leaves all of them or none. What
// fails for want of space is taken back, and the tags are made again as they were.
void Table::addLocked(std::uint32_t newCount, char firstMark, const Progress& progress) {
    const std::uint32_t countBefore = records_.recordCount();
    try {
        beginJournal();
        records_.file().sync();
        if (index_) {
            const UpdateStamp stamp = index_->stamp();
            index_->writeStamp({true, true, newCount, stamp.counter - stamp.counter % 2 + 1});
        }
        records_.file().write(records_.offsetOf(countBefore + 1), std::span<const char>(&firstMark, 1));
        records_.setCount(newCount);
        rebuildLocked(progress);
    } catch (...) {
        try {
            records_.setCount(countBefore);
            records_.dropBehind(countBefore);
            rebuildLocked({});
        } catch (const Error&) {
            // The mark stands and the next one to touch the table rebuilds; the first fault is the one to
            // tell.
        }
        throw;
    }
}

void Table::withdrawLocked(std::uint32_t oldCount) {
    const bool counted = records_.announcedCount() != oldCount;
    if (index_) {
        const UpdateStamp stamp = index_->stamp();
        if (counted || stamp.inUpdate || stamp.records != oldCount) { // the tags may know the rows already
            index_->writeStamp({true, true, oldCount, stamp.counter - stamp.counter % 2 + 1});
        }
    }
    if (counted) {
        records_.setCount(oldCount);
    }
    records_.dropBehind(oldCount);
}

} // namespace dbase
