// The steps of a recovery: redoing the journal, counting records, cutting the tail.
#include "dbase/table/recovery.h"

#include "dbase/journal/journal_redo.h"
#include "dbase/lock/locks.h"

namespace dbase {

/// Takes the append lock unless another program holds it: one that is adding a row will count it itself.
struct Recovery::AppendLock {
    AppendLock(File& records, bool hasIndex)
        : file(records), range(appendRange(hasIndex)), isHeld(file.tryLock(range, LockKind::Exclusive)) {}
    ~AppendLock() {
        if (isHeld) {
            file.unlock(range);
        }
    }
    AppendLock(const AppendLock&) = delete;
    AppendLock& operator=(const AppendLock&) = delete;

    File& file;
    const LockRange range;
    const bool isHeld;
};

void Recovery::beginJournal() {
    if (journal_ != nullptr && journal_->begin()) { // these files may not have been flushed to the disk yet
        sync();
    }
}

void Recovery::sync() {
    records_.file().sync();
    if (index_ != nullptr) {
        index_->sync();
    }
}

// Forgets what was known of the records before the lock.
void Recovery::forgetViews() {
    records_.forgetSize();
    if (records_.file().viewIsTorn()) {
        records_.file().renewView();
    }
}

// Counts all complete records, even those not yet in the header's count.
bool Recovery::count() {
    records_.forgetSize();
    return records_.recount();
}

void Recovery::afterStop() {
    forgetViews();
    redo(records_, journal_->keptEntries());
    if (const AppendLock appending(records_.file(), index_ != nullptr); appending.isHeld) {
        static_cast<void>(count());
        records_.cutTailIfAny(records_.recordCount());
    }
    fillHoles(records_);
    records_.file().sync();
}

// A wrong count without a mark may come from a file that is still being copied: then only the count is
// written, so that the copy still ends up correct, and the tail stays until the table is left.
bool Recovery::afterDeath(const UpdateStamp& left) {
    beginJournal();
    forgetViews();
    const AppendLock appending(records_.file(), index_ != nullptr);
    if (journal_ != nullptr) {
        redoUnfinished(records_, *journal_, left, appending.isHeld ? NewRows::Redo : NewRows::Leave);
    }
    if (!appending.isHeld) {
        return false;
    }
    const bool wasMiscounted = count();
    if (left.inUpdate) {
        records_.cutTailIfAny(records_.recordCount());
    }
    return wasMiscounted && !left.inUpdate;
}

void Recovery::tail() {
    if (const AppendLock appending(records_.file(), index_ != nullptr); appending.isHeld) {
        records_.forgetSize();
        records_.cutTail(records_.recordCount());
    }
}

} // namespace dbase
