// How a dataset changes rows: append, edit, post, cancel, erase, and record locks.

#include <algorithm>

#include "dbase/dataset_spot.h"
#include "dbase/error.h"
#include "dbase/table.h"

namespace dbase {

void Dataset::append() {
    requireOpen();
    cancel();
    if (isReadOnly()) {
        throw Error(ErrorCode::ReadOnly, open_->path(), "sólo se puede leer: " + readOnlyReason());
    }
    std::fill(row_.begin(), row_.end(), ' ');
    state_ = DatasetState::Insert;
    modified_ = false;
    bof_ = eof_ = false;
    calculate();
    changed(DatasetChange::State);
    changed(DatasetChange::Moved);
}

void Dataset::edit() {
    requireOpen();
    if (state_ != DatasetState::Browse) {
        return;
    }
    if (record_ == 0) {
        throw Error(ErrorCode::BadState, open_->path(), "no hay ningún registro que modificar");
    }
    if (!open_->tryLockRecord(record_, this)) {
        throw Error(ErrorCode::LockRefused, open_->path(),
                    "otro usuario está modificando el registro " + std::to_string(record_) + "; espere y repita");
    }
    const bool unchanged = open_->read([&] {
        const bool isThere = record_ <= open_->records().recordCount();
        return isThere && std::ranges::equal(open_->records().record(record_).bytes, row_);
    });
    if (!unchanged) {
        const RecordNumber changedRecord = record_;
        endEdit();
        reposition();
        changed(DatasetChange::Moved);
        throw Error(ErrorCode::RecordChanged, open_->path(),
                    "otro usuario ha cambiado o borrado el registro " + std::to_string(changedRecord) +
                        "; ahora se ve como está");
    }
    shown_ = row_;
    state_ = DatasetState::Edit;
    modified_ = false;
    changed(DatasetChange::State);
}

void Dataset::endEdit() {
    if (std::find(explicitLocks_.begin(), explicitLocks_.end(), record_) == explicitLocks_.end()) {
        open_->unlockRecord(record_, this);
    }
}

void Dataset::post() {
    requireOpen();
    ahead_->clear();
    RecordNumber posted = record_;
    switch (state_) {
    case DatasetState::Insert:
        posted = open_->append(row_);
        break;
    case DatasetState::Edit:
        if (row_ != shown_) {
            open_->overwrite(record_, shown_, row_);
        }
        endEdit();
        break;
    case DatasetState::Closed:
    case DatasetState::Browse:
        throw Error(ErrorCode::BadState, open_->path(), "no hay ningún cambio que guardar");
    }
    state_ = DatasetState::Browse;
    modified_ = false;
    landOn(posted);
    changed(DatasetChange::State);
    changed(DatasetChange::Order);
}

/// A posted row is current whatever range and filter say.
void Dataset::landOn(RecordNumber number) {
    Spot landed;
    open_->read([&] {
        Spot spot;
        const RecordView record = open_->records().record(number);
        if (!toEntry(spot, number, record.bytes)) {
            spot.cursor.reset();
        }
        copyRow(spot);
        landed = std::move(spot);
        return true;
    });
    land(landed);
}

void Dataset::dropPending() {
    const bool wasEdit = state_ == DatasetState::Edit;
    state_ = DatasetState::Browse;
    modified_ = false;
    if (wasEdit) {
        endEdit();
    }
    reposition();
}

void Dataset::cancel() {
    if (state_ != DatasetState::Insert && state_ != DatasetState::Edit) {
        return;
    }
    dropPending();
    changed(DatasetChange::State);
    changed(DatasetChange::Moved);
}

void Dataset::erase() {
    requireOpen();
    if (state_ == DatasetState::Insert) {
        cancel(); // the row was never there
        return;
    }
    cancel();
    if (record_ == 0) {
        throw Error(ErrorCode::BadState, open_->path(), "no hay ningún registro que borrar");
    }
    if (!open_->tryLockRecord(record_, this)) {
        throw Error(ErrorCode::LockRefused, open_->path(),
                    "otro usuario está usando el registro " + std::to_string(record_) + "; espere y repita");
    }
    try {
        open_->erase(record_, row_);
    } catch (...) {
        endEdit();
        throw;
    }
    endEdit();
    reposition();
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
