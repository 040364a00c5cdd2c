#include "dbase/table/recovery.h"

#include "dbase/journal/journal_redo.h"
#include "dbase/lock/locks.h"

namespace dbase {

/// The append lock, where no other program holds it: one that is adding a row right now counts it itself.
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
    if (journal_ != nullptr && journal_->begin()) { // nobody may have put these files on the disk yet
        sync();
    }
}

void Recovery::sync() {
    records_.file().sync();
    if (index_ != nullptr) {
        index_->sync();
    }
}

// What was known of the records before the lock.
void Recovery::forgetViews() {
    records_.forgetSize();
    if (records_.file().viewIsTorn()) {
        records_.file().renewView();
    }
}

// The complete records are what the table holds, also those that the header does not know yet.
bool Recovery::count() {
    records_.forgetSize();
    return records_.recount();
}

void Recovery::afterStop() {
    forgetViews();
    redo(records_, journal_->keptEntries());
    if (const AppendLock appending(records_.file(), index_ != nullptr); appending.isHeld) {
        static_cast<void>(count());
        records_.cutBehind(records_.recordCount());
    }
    fillHoles(records_);
    records_.file().sync();
}

// A count that was wrong without a mark may be that of a file which somebody is copying: only the count is
// written then, so that the copy comes out right in the end, and the tail stays until the table is left.
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
        records_.cutBehind(records_.recordCount());
    }
    return wasMiscounted && !left.inUpdate;
}

void Recovery::tail() {
    if (const AppendLock appending(records_.file(), index_ != nullptr); appending.isHeld) {
        records_.forgetSize();
        records_.dropBehind(records_.recordCount());
    }
}

} // namespace dbase
