// Where a dataset may go: everything that walks the order of a tag or of the file.

#include <algorithm>

#include "dbase/dataset_spot.h"
#include "dbase/table.h"

namespace dbase {

bool Dataset::isVisible(const RecordView& record) const {
    return !record.isDeleted() && (!filter_ || filter_->test(record));
}

bool Dataset::isInRange(std::string_view key) const {
    return !rangeLow_ || (activeTag_->order.compare(key, *rangeLow_) >= 0 &&
                          activeTag_->order.compare(key, *rangeHigh_) <= 0);
}

/// Key of the row shown: with its record number its place in the order, also when the tag does not hold it
/// (any more).
std::string Dataset::shownKey() const {
    if (spot_->cursor) {
        return std::string(spot_->cursor->key());
    }
    std::string key(activeTag_->keyLength, ' ');
    if (activeTag_->isUnderstood()) {
        makeKey(*activeTag_, {&schema(), isPending() ? shown_ : row_, record_}, key);
    }
    return key;
}

// --- Inside Table::read(): these see a state of the files that does not change. Each is true when the spot
// then stands on an entry.

/// A row posted outside the range may be current; what follows it begins where the range begins.
void Dataset::enterRange(Spot& spot, Direction direction) const {
    TreeCursor& cursor = *spot.cursor;
    if (!rangeLow_ || !cursor.isOnEntry()) {
        return;
    }
    const KeyOrder& order = activeTag_->order;
    if (direction == Direction::Forward && order.compare(cursor.key(), *rangeLow_) < 0) {
        cursor.seek(*rangeLow_);
    } else if (direction == Direction::Backward && order.compare(cursor.key(), *rangeHigh_) > 0) {
        cursor.placeBehind(*rangeHigh_);
        cursor.prior();
    }
}

/// From an entry on, in the given direction, to the first one that range and filter show. Goes no further
/// than the entries with the wanted key, when there is one, and gives up behind so many hidden rows, when
/// that is limited; the limit is counted down.
bool Dataset::settle(Spot& spot, Direction direction, std::string_view wanted,
                     std::size_t* mostHidden) const {
    const bool forward = direction == Direction::Forward;
    const auto givesUp = [mostHidden] { return mostHidden != nullptr && (*mostHidden)-- == 0; };
    const RecordNumber count = open_->records().recordCount();
    if (activeTag_ == nullptr) {
        for (; spot.record >= 1 && spot.record <= count; forward ? ++spot.record : --spot.record) {
            if (isVisible(open_->records().record(spot.record))) {
                return true;
            }
            if (givesUp()) {
                return false;
            }
        }
        return false;
    }
    enterRange(spot, direction);
    TreeCursor& cursor = *spot.cursor;
    for (; cursor.isOnEntry(); forward ? cursor.next() : cursor.prior()) {
        if (!isInRange(cursor.key()) ||
            (!wanted.empty() && activeTag_->order.compare(cursor.key(), wanted) != 0)) {
            return false;
        }
        spot.record = cursor.record();
        if (spot.record <= count && isVisible(open_->records().record(spot.record))) {
            return true;
        }
        if (givesUp()) {
            return false;
        }
    }
    return false;
}

bool Dataset::toEnd(Spot& spot, Direction direction) const {
    const bool forward = direction == Direction::Forward; // to the first entry, to go forward from there
    if (activeTag_ == nullptr) {
        spot.record = forward ? 1 : open_->records().recordCount();
        return true;
    }
    spot.cursor.emplace(*open_->index(), *activeTag_);
    return forward ? spot.cursor->first() : spot.cursor->last();
}

bool Dataset::toEntry(Spot& spot, const RecordView& record) const {
    spot.record = record.number;
    if (activeTag_ == nullptr) {
        return true;
    }
    spot.cursor.emplace(*open_->index(), *activeTag_);
    if (!activeTag_->isUnderstood()) { // its keys cannot be made: look through the entries
        bool on = spot.cursor->first();
        while (on && spot.cursor->record() != record.number) {
            on = spot.cursor->next();
        }
        return on;
    }
    std::string key(activeTag_->keyLength, ' ');
    makeKey(*activeTag_, record, key);
    return spot.cursor->find(key, record.number) ||
           (makeUnsignedKey(*activeTag_, record, key) && spot.cursor->find(key, record.number));
}

/// To a record, if range and filter show it.
bool Dataset::toRecord(Spot& spot, RecordNumber number) const {
    if (number == 0 || number > open_->records().recordCount()) {
        return false;
    }
    const RecordView record = open_->records().record(number);
    return isVisible(record) && toEntry(spot, record) &&
           (activeTag_ == nullptr || isInRange(spot.cursor->key()));
}

/// From the current record to the entry behind (before) it, also when its own one went or moved away. On an
/// empty table any entry is a neighbour.
bool Dataset::toNeighbour(Spot& spot, Direction direction) const {
    const bool forward = direction == Direction::Forward;
    if (record_ == 0) {
        return toEnd(spot, direction);
    }
    if (activeTag_ == nullptr) {
        spot.record = forward ? record_ + 1 : std::min(record_ - 1, open_->records().recordCount());
        return true;
    }
    if (spot_->cursor && spot_->cursor->stillHolds()) {
        spot.cursor = spot_->cursor;
        return forward ? spot.cursor->next() : spot.cursor->prior();
    }
    TreeCursor& cursor = spot.cursor.emplace(*open_->index(), *activeTag_);
    const std::string key = shownKey();
    if (cursor.find(key, record_)) {
        return forward ? cursor.next() : cursor.prior();
    }
    bool on = cursor.seek(key);
    while (on && activeTag_->order.compare(cursor.key(), key) == 0 && cursor.record() < record_) {
        on = cursor.next();
    }
    if (forward) {
        return on;
    }
    return on ? cursor.prior() : cursor.last();
}

} // namespace dbase
