// Changes to the rows of a dataset: append, edit, post, cancel, erase, and record locks.

#include <algorithm>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_order.h"
#include "dbase/lock/locks.h"
#include "dbase/system/error.h"

namespace dbase {

void Dataset::append() {
    requireOpen();
    leaveRow();
    if (isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, open_->path(), "sólo se puede leer: " + readOnlyReason());
    }
    shown_ = row_;
    std::fill(row_.begin(), row_.end(), ' ');
    state_ = DatasetState::Insert;
    modified_ = false;
    bof_ = eof_ = false;
    calculate();
    changed(DatasetChange::State);
    changed(DatasetChange::Moved);
}

/// Takes the record lock that every change of a record needs.
void Dataset::takeRecord() {
    if (record_ == 0) {
        throw Error(ErrorCode::BadState, open_->path(), "no hay ningún registro que modificar o borrar");
    }
    if (!open_->tryLockRecord(record_, this)) {
        throw Error(ErrorCode::LockRefused, open_->path(),
                    "otro usuario está modificando el registro " + std::to_string(record_) +
                        "; espere y repita");
    }
}

/// Releases the lock of takeRecord(), unless lockCurrent() requested it too.
void Dataset::giveRecordBack() {
    if (std::find(explicitLocks_.begin(), explicitLocks_.end(), record_) == explicitLocks_.end()) {
        open_->unlockRecord(record_, this);
    }
}

void Dataset::edit() {
    requireOpen();
    requireUnvisited();
    if (state_ != DatasetState::Browse) {
        return;
    }
    takeRecord();
    bool isCurrent = false;
    try {
        isCurrent = isShownAsStored();
    } catch (...) {
        giveRecordBack();
        throw;
    }
    if (!isCurrent) {
        giveRecordBack();
        const Error refusal(ErrorCode::RecordChanged, open_->path(),
                            "otro usuario ha cambiado o borrado el registro " + std::to_string(record_) +
                                "; ahora se ve como está");
        reposition();
        changed(DatasetChange::Moved);
        throw refusal;
    }
    shown_ = row_;
    state_ = DatasetState::Edit;
    modified_ = false;
    changed(DatasetChange::State);
}

void Dataset::post(Durability durability) {
    requireOpen();
    requireUnvisited();
    {
        const LockWaits waits; // of storing and landing
        const std::uint64_t before = open_->changeCounter();
        switch (state_) {
        case DatasetState::Insert:
            record_ = open_->append(row_, durability);
            order_->rowAdded(before, {&schema(), row_, record_});
            break;
        case DatasetState::Edit:
            if (row_ != shown_) {
                open_->overwrite(record_, shown_, row_, durability);
                order_->rowChanged(before, {&schema(), shown_, record_}, {&schema(), row_, record_});
            }
            giveRecordBack();
            break;
        case DatasetState::Closed:
        case DatasetState::Browse:
            throw Error(ErrorCode::BadState, open_->path(), "no hay ningún cambio que guardar");
        }
        state_ = DatasetState::Browse;
        modified_ = false;
        spot_->cursor.reset(); // if landing fails, the row's key gives its place
        landOnPosted();
    }
    changed(DatasetChange::State);
    changed(DatasetChange::Order);
}

void Dataset::cancel() {
    requireUnvisited();
    if (!isPending()) {
        return;
    }
    if (state_ == DatasetState::Edit) {
        giveRecordBack();
    }
    state_ = DatasetState::Browse;
    modified_ = false;
    row_.swap(shown_);
    if (record_ == 0) {
        landNowhere();
    } else {
        calculate();
    }
    changed(DatasetChange::State);
    changed(DatasetChange::Moved);
}

void Dataset::erase(Durability durability) {
    requireOpen();
    const bool wasInserting = state_ == DatasetState::Insert;
    cancel();
    if (wasInserting) {
        return; // the row was never stored
    }
    requireOpen();
    {
        const LockWaits waits;
        const std::uint64_t before = open_->changeCounter();
        takeRecord();
        try {
            open_->erase(record_, row_, durability);
        } catch (...) {
            giveRecordBack();
            throw;
        }
        giveRecordBack();
        order_->rowDeleted(before);
        reposition();
    }
    changed(DatasetChange::Order);
}

bool Dataset::lockCurrent() {
    requireOpen();
    const RecordNumber number = std::max<RecordNumber>(record_, 1);
    if (!open_->tryLockRecord(number, this)) {
        return false;
    }
    explicitLocks_.push_back(number);
    return true;
}

void Dataset::unlockAll() {
    if (!open_) {
        return;
    }
    for (const RecordNumber number : explicitLocks_) {
        if (state_ != DatasetState::Edit || number != record_) {
            open_->unlockRecord(number, this);
        }
    }
    explicitLocks_.clear();
}

} // namespace dbase
