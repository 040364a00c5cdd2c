// The moves of a dataset, and landing.

#include <algorithm>

#include "dbase/dataset/dataset_read_ahead.h"
#include "dbase/dataset/row_order.h"
#include "dbase/dataset/seek_key.h"
#include "dbase/mdx/record_key.h"
#include "dbase/system/error.h"

namespace dbase {

// --- Where to continue from

/// Key of the row shown: together with its record number its place in the order, even if the tag does not (or
/// no longer) contain it.
std::string Dataset::shownKey() const {
    if (spot_->cursor) {
        return std::string(spot_->cursor->key());
    }
    std::string key(order_->tag()->keyLength, ' ');
    if (order_->tag()->isUnderstood()) {
        makeKey(*order_->tag(), {&schema(), isPending() ? shown_ : row_, record_}, key);
    }
    return key;
}

/// Moves from the current record to the entry after (before) it, even if its own entry is gone or has moved.
/// Without a current record, any entry is a neighbour.
bool Dataset::toNeighbour(Spot& spot, Direction direction) const {
    const bool forward = direction == Direction::Forward;
    if (record_ == 0) {
        return order_->toEnd(spot, direction);
    }
    if (order_->tag() == nullptr) {
        spot.record = forward ? record_ + 1 : std::min(record_ - 1, open_->records().recordCount());
        return true;
    }
    const bool nothingChanged = spot_->hold != 0 && spot_->hold == open_->holdNumber();
    if (spot_->cursor && (nothingChanged || spot_->cursor->stillHolds())) {
        spot.cursor = spot_->cursor;
        return forward ? spot.cursor->next() : spot.cursor->prior();
    }
    TreeCursor& cursor = spot.cursor.emplace(*open_->index(), *order_->tag());
    const std::string key = shownKey();
    if (cursor.find(key, record_)) {
        return forward ? cursor.next() : cursor.prior();
    }
    bool on = cursor.seek(key);
    while (on && order_->tag()->order.compare(cursor.key(), key) == 0 && cursor.record() < record_) {
        on = cursor.next();
    }
    if (forward) {
        return on;
    }
    return on ? cursor.prior() : cursor.last();
}

// --- Landing

/// Runs a search while the files do not change; the spot that it finds becomes current. The search may be
/// repeated, so it works on the spare spot and leaves the current one alone.
template<typename Search>
bool Dataset::landOn(Search&& search) {
    Spot& spot = *spare_;
    const bool found = open_->read([&] {
        spot.cursor.reset();
        spot.record = 0;
        spot.hold = open_->holdNumber();
        if (!search(spot)) {
            return false;
        }
        const RecordView record = open_->records().record(spot.record);
        spot.row.assign(record.bytes.begin(), record.bytes.end());
        return true;
    });
    if (found) {
        std::swap(spot_, spare_);
        record_ = spot_->record;
        row_.swap(spot_->row);
        bof_ = eof_ = false;
        calculate();
    }
    return found;
}

void Dataset::landNowhere() {
    record_ = 0;
    spot_->cursor.reset();
    std::fill(row_.begin(), row_.end(), ' ');
    bof_ = eof_ = true;
    for (const auto& field : fields_) {
        field->calculated_.clear();
    }
}

void Dataset::landAtEnd(Direction direction) {
    ahead_->clear();
    if (landOn([&](Spot& spot) {
            return order_->toEnd(spot, direction) && order_->toVisible(spot, direction);
        })) {
        (direction == Direction::Forward ? bof_ : eof_) = true;
    } else {
        landNowhere();
    }
}

/// Lands on the record just posted: it stays current even if range or filter hide it. The buffer has it as it
/// was stored, and its key gives its place to the next move, so nothing is read.
void Dataset::landOnPosted() {
    ahead_->clear();
    bof_ = eof_ = false;
    calculate();
}

/// Lands on the current record as it is now or, if it is gone or hidden, on the next one, or else the last.
void Dataset::reposition() {
    ahead_->clear();
    const bool found = landOn([&](Spot& spot) {
        return order_->toRecord(spot, record_) ||
               (toNeighbour(spot, Direction::Forward) && order_->toVisible(spot, Direction::Forward)) ||
               (order_->toEnd(spot, Direction::Backward) && order_->toVisible(spot, Direction::Backward));
    });
    if (!found) {
        landNowhere();
    }
}

bool Dataset::isShownAsStored() const {
    return open_->read([&] {
        return record_ <= open_->records().recordCount() &&
               std::ranges::equal(open_->records().record(record_).bytes, row_);
    });
}

// --- Moves

/// Every move begins here. A listener notified of the cancelling may close the table.
void Dataset::leaveRow() {
    cancel();
    requireOpen();
}

void Dataset::first() {
    requireOpen();
    leaveRow();
    landAtEnd(Direction::Forward);
    changed(DatasetChange::Moved);
}

void Dataset::last() {
    requireOpen();
    leaveRow();
    landAtEnd(Direction::Backward);
    changed(DatasetChange::Moved);
}

bool Dataset::next() { return step(Direction::Forward); }
bool Dataset::prior() { return step(Direction::Backward); }

bool Dataset::step(Direction direction) {
    requireOpen();
    leaveRow();
    const bool forward = direction == Direction::Forward;
    if (forward && takeAhead()) {
        bof_ = eof_ = false;
        calculate();
        changed(DatasetChange::Moved);
        return true;
    }
    const bool readsAhead = forward && order_->tag() != nullptr && ahead_->justStepped;
    const std::size_t leaves = ahead_->leavesNext();
    ahead_->clear();
    const bool moved = landOn([&](Spot& spot) {
        if (!toNeighbour(spot, direction) || !order_->toVisible(spot, direction)) {
            return false;
        }
        if (readsAhead) {
            fillAhead(spot, leaves);
        }
        return true;
    });
    ahead_->justStepped = forward && moved;
    if (!moved) {
        if (record_ != 0 && !isShownAsStored()) { // the record stays current, but is read again
            reposition();
        }
        (forward ? eof_ : bof_) = true;
    }
    changed(DatasetChange::Moved);
    return moved;
}

bool Dataset::seek(const Key& key, SeekMode mode) {
    requireOpen();
    requireKeys();
    const std::string wanted = makeSeekKey(*order_->tag(), schema(), key);
    leaveRow();
    ahead_->clear();
    const bool exact = mode == SeekMode::Exact;
    const bool found = landOn([&](Spot& spot) {
        spot.cursor.emplace(*open_->index(), *order_->tag());
        return spot.cursor->seek(wanted) &&
               order_->toVisible(spot, Direction::Forward, exact ? wanted : std::string_view());
    });
    if (!found && !exact) {
        landAtEnd(Direction::Backward);
    }
    if (found || !exact) {
        changed(DatasetChange::Moved);
    }
    return found;
}

bool Dataset::goTo(Bookmark bookmark) {
    requireOpen();
    leaveRow();
    ahead_->clear();
    const bool found = landOn([&](Spot& spot) { return order_->toRecord(spot, bookmark.record()); });
    if (found) {
        changed(DatasetChange::Moved);
    }
    return found;
}

bool Dataset::goToPlace(double place) {
    requireOpen();
    leaveRow();
    ahead_->clear();
    const bool found = landOn([&](Spot& spot) {
        return (order_->toPlace(spot, place) && order_->toVisible(spot, Direction::Forward)) ||
               (order_->toPlace(spot, place) && order_->toVisible(spot, Direction::Backward));
    });
    if (found) {
        changed(DatasetChange::Moved);
    }
    return found;
}

void Dataset::refresh() {
    requireOpen();
    leaveRow();
    reposition();
    changed(DatasetChange::Moved);
}

} // namespace dbase
