// Walks the rows that a dataset shows, by tag, range and filter together.
#include "dbase/dataset/row_order.h"

#include <algorithm>

#include "dbase/mdx/record_key.h"

namespace dbase {

void RowOrder::setTag(const Tag* tag) {
    tag_ = tag;
    deletedRuns_.clear();
    clearRange();
}

void RowOrder::setRange(std::string low, std::string high) {
    rangeLow_ = std::move(low);
    rangeHigh_ = std::move(high);
}

void RowOrder::clearRange() {
    rangeLow_.reset();
    rangeHigh_.reset();
}

void RowOrder::rowAdded(std::uint64_t before, const RecordView& record) {
    deletedRuns_.follow(table_, before);
    if (tag_ != nullptr && !deletedRuns_.isEmpty()) { // in the order of the file it comes last
        deletedRuns_.entryAdded(tag_->order, keyOf(record), true);
    }
}

void RowOrder::rowChanged(std::uint64_t before, const RecordView& from, const RecordView& to) {
    deletedRuns_.follow(table_, before);
    if (tag_ == nullptr || deletedRuns_.isEmpty()) {
        return;
    }
    // With a condition, an entry may also come without a change of its key.
    if (const std::string key = keyOf(to); tag_->condition || key != keyOf(from)) {
        deletedRuns_.entryAdded(tag_->order, key, false);
    }
}

std::string RowOrder::keyOf(const RecordView& record) const {
    std::string key(tag_->keyLength, ' ');
    makeKey(*tag_, record, key);
    return key;
}

bool RowOrder::isVisible(const RecordView& record) const {
    return !record.isDeleted() && (!filter_ || filter_->test(record));
}

bool RowOrder::isInRange(std::string_view key) const {
    return !rangeLow_ ||
           (tag_->order.compare(key, *rangeLow_) >= 0 && tag_->order.compare(key, *rangeHigh_) <= 0);
}

// A row posted outside the range may be current; its successors start where the range starts.
void RowOrder::enterRange(Spot& spot, Direction direction) const {
    TreeCursor& cursor = *spot.cursor;
    if (!rangeLow_ || !cursor.isOnEntry()) {
        return;
    }
    const KeyOrder& order = tag_->order;
    if (direction == Direction::Forward && order.compare(cursor.key(), *rangeLow_) < 0) {
        cursor.seek(*rangeLow_);
    } else if (direction == Direction::Backward && order.compare(cursor.key(), *rangeHigh_) > 0) {
        cursor.placeAfter(*rangeHigh_);
        cursor.prior();
    }
}

// The deleted rows that a walk meets one after another: steps over those known, remembers those it has seen.
class RowOrder::DeletedWalk {
public:
    DeletedWalk(const RowOrder& order, Direction direction) : order_(order), direction_(direction) {}
    ~DeletedWalk() { end(); }
    DeletedWalk(const DeletedWalk&) = delete;
    DeletedWalk& operator=(const DeletedWalk&) = delete;

    /// The spot is on a deleted row. If a known run begins there, moves to the last row of it.
    void meet(Spot& spot) {
        if (rows_++ == 0) {
            first_ = placeOf(spot);
        }
        const std::string_view key = hasKeys() ? spot.cursor->key() : std::string_view();
        if (const OrderPlace* end = order_.deletedRuns_.endOf(order_.table_, direction_, key, spot.record)) {
            if (jump(spot, *end)) {
                rows_ += DeletedRuns::leastRows;
            } else {
                order_.deletedRuns_.clear();
            }
        }
        last_.record = spot.record;
        if (hasKeys()) {
            last_.key.assign(spot.cursor->key());
        }
    }
    /// A row that is not deleted follows, or none.
    void end() {
        if (rows_ >= DeletedRuns::leastRows) {
            order_.deletedRuns_.add(order_.table_, direction_, std::move(first_), std::move(last_));
        }
        rows_ = 0;
    }

private:
    [[nodiscard]] bool hasKeys() const { return order_.tag_ != nullptr; }
    [[nodiscard]] OrderPlace placeOf(const Spot& spot) const {
        return {hasKeys() ? std::string(spot.cursor->key()) : std::string(), spot.record};
    }
    bool jump(Spot& spot, const OrderPlace& end) const {
        if (hasKeys()) {
            TreeCursor there = *spot.cursor;
            if (!there.find(end.key, end.record)) {
                return false;
            }
            spot.cursor = there;
        }
        spot.record = end.record;
        return true;
    }

    const RowOrder& order_;
    Direction direction_;
    OrderPlace first_, last_;
    std::size_t rows_ = 0;
};

bool RowOrder::toVisible(Spot& spot, Direction direction, std::string_view wanted,
                         std::size_t* mostHidden) const {
    const bool forward = direction == Direction::Forward;
    const auto givesUp = [mostHidden] { return mostHidden != nullptr && (*mostHidden)-- == 0; };
    const RecordNumber count = table_.records().recordCount();
    DeletedWalk deleted(*this, direction);
    const auto isShown = [&] {
        const RecordView record = table_.records().record(spot.record);
        if (record.isDeleted()) {
            deleted.meet(spot);
            return false;
        }
        deleted.end();
        return isVisible(record);
    };
    if (tag_ == nullptr) {
        for (; spot.record >= 1 && spot.record <= count; forward ? ++spot.record : --spot.record) {
            if (isShown()) {
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
        if (!isInRange(cursor.key()) || (!wanted.empty() && tag_->order.compare(cursor.key(), wanted) != 0)) {
            return false;
        }
        spot.record = cursor.record();
        if (spot.record <= count && isShown()) {
            return true;
        }
        if (givesUp()) {
            return false;
        }
    }
    return false;
}

bool RowOrder::toEnd(Spot& spot, Direction direction) const {
    const bool forward = direction == Direction::Forward; // to the first entry, to continue from there
    if (tag_ == nullptr) {
        spot.record = forward ? 1 : table_.records().recordCount();
        return true;
    }
    spot.cursor.emplace(*table_.index(), *tag_);
    return forward ? spot.cursor->first() : spot.cursor->last();
}

bool RowOrder::toEntry(Spot& spot, const RecordView& record) const {
    spot.record = record.number;
    if (tag_ == nullptr) {
        return true;
    }
    spot.cursor.emplace(*table_.index(), *tag_);
    if (!tag_->isUnderstood()) { // its keys cannot be built: search all entries
        bool on = spot.cursor->first();
        while (on && spot.cursor->record() != record.number) {
            on = spot.cursor->next();
        }
        return on;
    }
    std::string key(tag_->keyLength, ' ');
    makeKey(*tag_, record, key);
    return spot.cursor->find(key, record.number) ||
           (makeUnsignedKey(*tag_, record, key) && spot.cursor->find(key, record.number));
}

bool RowOrder::toRecord(Spot& spot, RecordNumber number) const {
    if (number == 0 || number > table_.records().recordCount()) {
        return false;
    }
    const RecordView record = table_.records().record(number);
    return isVisible(record) && toEntry(spot, record) && (tag_ == nullptr || isInRange(spot.cursor->key()));
}

bool RowOrder::toPlace(Spot& spot, double place) const {
    place = std::clamp(place, 0.0, 1.0);
    if (tag_ == nullptr) {
        const RecordNumber count = table_.records().recordCount();
        spot.record = std::min(static_cast<RecordNumber>(place * count) + 1, count);
        return count != 0;
    }
    const auto [low, high] = rangeShares();
    spot.cursor.emplace(*table_.index(), *tag_);
    if (!spot.cursor->seekShare(low + place * (high - low)) && !spot.cursor->last()) {
        return false;
    }
    // The shares of the bounds are rounded, so the entry may be just outside the range.
    enterRange(spot, Direction::Forward);
    enterRange(spot, Direction::Backward);
    return spot.cursor->isOnEntry();
}

std::pair<double, double> RowOrder::rangeShares() const {
    if (tag_ == nullptr || !rangeLow_) {
        return {0, 1};
    }
    TreeCursor cursor(*table_.index(), *tag_);
    const double low = cursor.seek(*rangeLow_) ? cursor.share() : 1;
    cursor.placeAfter(*rangeHigh_);
    return {low, std::max(cursor.share(), low)};
}

double RowOrder::shareOf(const Spot& spot, const std::pair<double, double>& range) const {
    if (tag_ == nullptr) {
        const RecordNumber count = table_.records().recordCount();
        return count == 0 ? 0 : std::min(1.0, static_cast<double>(spot.record - 1) / count);
    }
    const double length = range.second - range.first;
    return length <= 0 ? 0 : std::clamp((spot.cursor->share() - range.first) / length, 0.0, 1.0);
}

} // namespace dbase
