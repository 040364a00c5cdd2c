// What rebuilds and loads do to an open table: everything at once, under its exclusive lock.

#include "dbase/mdx/index_rebuild.h"
#include "dbase/table/table.h"

namespace dbase {

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
        verifiedCount_ = index_->stamp().records; // not those that others added meanwhile
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
            index_->writeStamp(index_->stamp().begun(newCount));
        }
        records_.file().write(records_.offsetOf(countBefore + 1), std::span<const char>(&firstMark, 1));
        records_.setCount(newCount);
        rebuildLocked(progress);
    } catch (...) {
        try {
            records_.setCount(countBefore);
            records_.dropBehind(countBefore);
            rebuildLocked({});
        } catch (...) {
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
            index_->writeStamp(stamp.begun(oldCount));
        }
    }
    if (counted) {
        records_.setCount(oldCount);
    }
    records_.dropBehind(oldCount);
}

} // namespace dbase
