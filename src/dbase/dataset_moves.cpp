// How a dataset moves: everything that walks the order of a tag or of the file.

#include <ctime>

#include "dbase/dataset_spot.h"
#include "dbase/error.h"
#include "dbase/seek_key.h"
#include "dbase/table.h"

namespace dbase {

namespace {

std::chrono::nanoseconds coarseNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

} // namespace

bool Dataset::isVisible(const RecordView& record) const {
    return !record.isDeleted() && (!filter_ || filter_->test(record));
}

bool Dataset::isInRange(std::string_view key) const {
    return !rangeLow_ || (activeTag_->order.compare(key, *rangeLow_) >= 0 &&
                          activeTag_->order.compare(key, *rangeHigh_) <= 0);
}

Dataset::Spot Dataset::spotHere() const { return {spot_->cursor, spot_->counter, record_, {}}; }

void Dataset::copyRow(Spot& spot) const {
    const RecordView record = open_->records().record(spot.record);
    spot.row.assign(record.bytes.begin(), record.bytes.end());
    spot.counter = open_->changeCounter();
}

// --- Inside Table::read(): these see a state of the files that does not change.

/// From an entry on, in the given direction, to the first one that range and filter show.
bool Dataset::settle(Spot& spot, Direction direction) {
    const bool forward = direction == Direction::Forward;
    const RecordNumber count = open_->records().recordCount();
    if (activeTag_ == nullptr) {
        for (; spot.record >= 1 && spot.record <= count; forward ? ++spot.record : --spot.record) {
            if (isVisible(open_->records().record(spot.record))) {
                return true;
            }
        }
        return false;
    }
    TreeCursor& cursor = *spot.cursor;
    for (; cursor.isOnEntry(); forward ? cursor.next() : cursor.prior()) {
        open_->records().prefetch(cursor.record());
        if (!isInRange(cursor.key())) {
            return false;
        }
        spot.record = cursor.record();
        if (spot.record <= count && isVisible(open_->records().record(spot.record))) {
            return true;
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
    if (!rangeLow_) {
        return forward ? spot.cursor->first() : spot.cursor->last();
    }
    if (forward) {
        return spot.cursor->seek(*rangeLow_);
    }
    spot.cursor->placeBehind(*rangeHigh_);
    return spot.cursor->prior();
}

/// To the entry of a given record, whose stored bytes the caller has.
bool Dataset::toEntry(Spot& spot, RecordNumber number, std::span<const char> record) const {
    spot.record = number;
    if (activeTag_ == nullptr) {
        return true;
    }
    spot.cursor.emplace(*open_->index(), *activeTag_);
    if (!activeTag_->isUnderstood()) { // its keys cannot be made: look through the entries
        for (bool on = spot.cursor->first(); on; on = spot.cursor->next()) {
            if (spot.cursor->record() == number) {
                return true;
            }
        }
        return false;
    }
    std::string key(activeTag_->keyLength, ' ');
    makeKey(*activeTag_, {&schema(), record, number}, key);
    return spot.cursor->find(key, number);
}

/// To the entry behind (before) the place where the spot was, also when its own entry is not there any more.
bool Dataset::toNeighbour(Spot& spot, Direction direction) const {
    const std::string key(spot.cursor->key());
    const RecordNumber record = spot.record;
    if (spot.cursor->find(key, record)) {
        return direction == Direction::Forward ? spot.cursor->next() : spot.cursor->prior();
    }
    bool on = spot.cursor->seek(key);
    while (on && spot.cursor->key() == key && spot.cursor->record() < record) {
        on = spot.cursor->next();
    }
    if (direction == Direction::Forward) {
        return on;
    }
    return on ? spot.cursor->prior() : spot.cursor->last();
}

bool Dataset::stepTo(Spot& spot, Direction direction) const {
    const bool forward = direction == Direction::Forward;
    if (activeTag_ == nullptr) {
        forward ? ++spot.record : --spot.record;
        return true;
    }
    if (!spot.cursor) { // a record that the tag does not hold has no place in its order
        return toEnd(spot, direction);
    }
    const std::uint64_t counter = open_->changeCounter();
    const bool unchanged = counter != 0 && counter == spot.counter && counter % 2 == 0;
    if (unchanged || spot.cursor->stillHolds()) {
        return forward ? spot.cursor->next() : spot.cursor->prior();
    }
    return toNeighbour(spot, direction);
}

// --- Reading ahead

bool Dataset::takeAhead() {
    ReadAhead& ahead = *ahead_;
    if (ahead.next == ahead.rows.size() || open_->changeCounter() != ahead.counter ||
        open_->records().recordCount() != ahead.recordCount || coarseNow() - ahead.taken > ReadAhead::shelfLife) {
        ahead.clear();
        return false;
    }
    const ReadAhead::Row& row = ahead.rows[ahead.next++];
    const char* bytes = ahead.bytes.data() + row.offset;
    const std::size_t length = row_.size();
    spot_->cursor->moveInLeaf(row.slot, row.record, {bytes + length, activeTag_->keyLength});
    std::copy_n(bytes, length, row_.data());
    record_ = spot_->record = row.record;
    return true;
}

/// The visible rows that follow in the same leaf. Inside Table::read().
void Dataset::fillAhead(const Spot& from) {
    ReadAhead& ahead = *ahead_;
    ahead.clear();
    ahead.counter = open_->changeCounter();
    ahead.recordCount = open_->records().recordCount();
    ahead.taken = coarseNow();
    if (ahead.counter == 0 || ahead.counter % 2 != 0) {
        return; // nothing would prove the rows current
    }
    TreeCursor cursor = *from.cursor;
    const std::uint32_t left = cursor.entriesLeftInLeaf();
    for (const RecordNumber number : cursor.recordsLeftInLeaf()) {
        open_->records().prefetch(number);
    }
    for (std::uint32_t i = 1; i < left && ahead.rows.size() < ReadAhead::mostRows; ++i) {
        cursor.next();
        if (!isInRange(cursor.key())) {
            return;
        }
        if (cursor.record() > ahead.recordCount) {
            continue;
        }
        const RecordView record = open_->records().record(cursor.record());
        if (isVisible(record)) {
            ahead.rows.push_back({cursor.record(), cursor.path().back().slot, ahead.bytes.size()});
            ahead.bytes.insert(ahead.bytes.end(), record.bytes.begin(), record.bytes.end());
            ahead.bytes.insert(ahead.bytes.end(), cursor.key().begin(), cursor.key().end());
        }
    }
}

// --- Landing

void Dataset::land(Spot& spot) {
    record_ = spot.record;
    row_.swap(spot.row);
    spot_->cursor = spot.cursor;
    spot_->counter = spot.counter;
    spot_->record = record_;
    bof_ = eof_ = false;
    calculate();
}

void Dataset::landNowhere() {
    record_ = 0;
    *spot_ = Spot{};
    std::fill(row_.begin(), row_.end(), ' ');
    bof_ = eof_ = true;
    for (const auto& field : fields_) {
        field->calculated_.clear();
    }
}

void Dataset::moveToEnd(Direction direction) {
    ahead_->clear();
    ahead_->justStepped = false;
    Spot landed;
    const bool found = open_->read([&] {
        Spot spot;
        if (!toEnd(spot, direction) || !settle(spot, direction)) {
            return false;
        }
        copyRow(spot);
        landed = std::move(spot);
        return true;
    });
    if (found) {
        land(landed);
        (direction == Direction::Forward ? bof_ : eof_) = true;
    } else {
        landNowhere();
    }
    changed(DatasetChange::Moved);
}

void Dataset::first() {
    requireOpen();
    cancel();
    moveToEnd(Direction::Forward);
}

void Dataset::last() {
    requireOpen();
    cancel();
    moveToEnd(Direction::Backward);
}

bool Dataset::step(Direction direction) {
    requireOpen();
    cancel();
    const bool forward = direction == Direction::Forward;
    bool& end = forward ? eof_ : bof_;
    if (record_ == 0) {
        return reposition() && (changed(DatasetChange::Moved), true);
    }
    if (forward && takeAhead()) {
        bof_ = eof_ = false;
        calculate();
        changed(DatasetChange::Moved);
        return true;
    }
    const bool readsAhead = forward && activeTag_ != nullptr && ahead_->justStepped;
    Spot landed;
    const bool found = open_->read([&] {
        Spot spot = spotHere();
        if (!stepTo(spot, direction) || !settle(spot, direction)) {
            return false;
        }
        copyRow(spot);
        if (readsAhead) {
            fillAhead(spot);
        }
        landed = std::move(spot);
        return true;
    });
    ahead_->justStepped = forward && found;
    if (!found) {
        ahead_->clear();
        end = true;
        changed(DatasetChange::Moved);
        return false;
    }
    if (!readsAhead) {
        ahead_->clear();
    }
    land(landed);
    changed(DatasetChange::Moved);
    return true;
}

bool Dataset::next() { return step(Direction::Forward); }
bool Dataset::prior() { return step(Direction::Backward); }

bool Dataset::seek(const Key& key, SeekMode mode) {
    requireOpen();
    cancel();
    if (activeTag_ == nullptr || !activeTag_->isUnderstood()) {
        throw Error(ErrorCode::BadState, open_->path(), "una búsqueda necesita un tag activo");
    }
    ahead_->clear();
    ahead_->justStepped = false;
    const SeekKey wanted = makeSeekKey(*activeTag_, schema(), key);
    const bool exact = mode == SeekMode::Exact;
    const std::string_view target = std::string_view(wanted.bytes).substr(0, exact ? wanted.covered : std::string::npos);
    const KeyOrder& order = activeTag_->order;
    Spot landed;
    const bool found = open_->read([&] {
        Spot spot;
        spot.cursor.emplace(*open_->index(), *activeTag_);
        const bool startsBelowRange = rangeLow_ && order.compare(target, *rangeLow_) < 0;
        if (!spot.cursor->seek(startsBelowRange ? std::string_view(*rangeLow_) : target) ||
            !settle(spot, Direction::Forward)) {
            return false;
        }
        if (exact && order.compare(spot.cursor->key(), target) != 0) {
            return false;
        }
        copyRow(spot);
        landed = std::move(spot);
        return true;
    });
    if (found) {
        land(landed);
        changed(DatasetChange::Moved);
    } else if (!exact) {
        moveToEnd(Direction::Backward);
    }
    return found;
}

bool Dataset::goTo(Bookmark bookmark) {
    requireOpen();
    cancel();
    ahead_->clear();
    Spot landed;
    const bool found = bookmark && open_->read([&] {
        if (bookmark.record() > open_->records().recordCount()) {
            return false;
        }
        const RecordView record = open_->records().record(bookmark.record());
        Spot spot;
        if (!isVisible(record) || !toEntry(spot, bookmark.record(), record.bytes) ||
            (activeTag_ != nullptr && !isInRange(spot.cursor->key()))) {
            return false;
        }
        copyRow(spot);
        landed = std::move(spot);
        return true;
    });
    if (found) {
        land(landed);
        changed(DatasetChange::Moved);
    }
    return found;
}

/// Back onto the current record after the order changed; when it is gone or hidden, the next one, else the last. False
/// when nothing is left.
bool Dataset::reposition() {
    ahead_->clear();
    const RecordNumber here = record_;
    const std::vector<char> before = row_;
    Spot landed;
    const bool found = open_->read([&] {
        Spot spot;
        const bool known = here != 0 && here <= open_->records().recordCount();
        if (known) {
            const RecordView stored = open_->records().record(here);
            if (isVisible(stored) && toEntry(spot, here, stored.bytes) &&
                (activeTag_ == nullptr || isInRange(spot.cursor->key()))) {
                copyRow(spot);
                landed = std::move(spot);
                return true;
            }
        }
        bool on = false;
        if (here == 0) {
            on = toEnd(spot, Direction::Forward);
        } else if (activeTag_ == nullptr) {
            spot.record = here;
            on = true;
        } else {
            std::string key(activeTag_->keyLength, ' ');
            if (activeTag_->isUnderstood()) {
                makeKey(*activeTag_, {&schema(), before, here}, key);
            }
            if (rangeLow_ && activeTag_->order.compare(key, *rangeLow_) < 0) {
                key = *rangeLow_;
            }
            spot.cursor.emplace(*open_->index(), *activeTag_);
            on = spot.cursor->seek(key);
            while (on && spot.cursor->key() == key && spot.cursor->record() < here) {
                on = spot.cursor->next();
            }
        }
        if ((!on || !settle(spot, Direction::Forward)) &&
            (!toEnd(spot, Direction::Backward) || !settle(spot, Direction::Backward))) {
            return false;
        }
        copyRow(spot);
        landed = std::move(spot);
        return true;
    });
    if (found) {
        land(landed);
    } else {
        landNowhere();
    }
    return found;
}

void Dataset::refresh() {
    requireOpen();
    cancel();
    ahead_->justStepped = false;
    reposition();
    changed(DatasetChange::Moved);
}

} // namespace dbase
