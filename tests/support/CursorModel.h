// What a dataset on a table should show: the rules of moving, seeking and filtering in their plainest form.
#pragma once

#include "support/TableModel.h"

namespace ambrel::test {

/// Shows rows of a TableModel, which must outlive it.
class CursorModel {
public:
    using Filter = std::function<bool(const ModelRow&)>;

    explicit CursorModel(const TableModel& table) : table_(&table), order_(&table.orders().front()) {}

    RecordNumber record = 0; // 0: nothing to show
    ModelRow shown;
    bool bof = false, eof = false;

    [[nodiscard]] const ModelTag& tag() const { return order_->tag(); }
    [[nodiscard]] bool hasRange() const { return low_.has_value(); }
    [[nodiscard]] bool isShownAsStored() const { return record != 0 && table_->row(record) == shown; }

    void open() {
        low_.reset();
        high_.reset();
        goToEnd(true);
    }
    void setOrder(const ModelOrder& order) {
        if (&order != order_) {
            order_ = &order;
            low_.reset();
            high_.reset();
            reposition();
        }
    }
    void setFilter(Filter filter) {
        filter_ = std::move(filter);
        reposition();
    }
    void setRange(std::string low, std::string high) {
        if (tag().isDescending && tag().compare(low, high) > 0) {
            std::swap(low, high);
        }
        low_ = std::move(low);
        high_ = std::move(high);
        goToEnd(true);
    }
    void clearRange() {
        if (hasRange()) {
            low_.reset();
            high_.reset();
            reposition();
        }
    }

    void goToEnd(bool isFirst) {
        land(isFirst ? firstFrom(begin()) : lastBefore(end()));
        (isFirst ? bof : eof) = true;
    }
    bool step(bool isForward) {
        const RecordNumber found = neighbour(isForward);
        if (found != 0) {
            land(found);
            return true;
        }
        if (record != 0 && !isShownAsStored()) {
            reposition();
        }
        (isForward ? eof : bof) = true;
        return false;
    }
    bool seek(const std::string& key, bool isExact) {
        ModelOrder::Place from = entries().lower_bound(ModelOrder::Edge{key, false});
        if (low_ && from != entries().end() && tag().compare(from->key, *low_) < 0) {
            from = begin();
        }
        const RecordNumber found = firstFrom(from);
        if (found != 0 && (!isExact || tag().compare(tag().key(table_->row(found)), key) == 0)) {
            land(found);
            return true;
        }
        if (!isExact) {
            goToEnd(false);
        }
        return false;
    }
    bool goTo(RecordNumber number) {
        const bool isVisible = number != 0 && number <= table_->recordCount() && shows(number);
        if (isVisible) {
            land(number);
        }
        return isVisible;
    }
    /// Moves to the same record, to the next one when it is gone, else to the last.
    void reposition() {
        if (record != 0 && goTo(record)) {
            return;
        }
        const RecordNumber next = neighbour(true);
        land(next != 0 ? next : lastBefore(end()));
    }
    void land(RecordNumber number) {
        record = number;
        shown = number != 0 ? table_->row(number) : ModelRow();
        bof = eof = number == 0;
    }

private:
    using Place = ModelOrder::Place;

    [[nodiscard]] const ModelOrder::Entries& entries() const { return order_->entries(); }
    [[nodiscard]] Place begin() const {
        return low_ ? entries().lower_bound(ModelOrder::Edge{*low_, false}) : entries().begin();
    }
    [[nodiscard]] Place end() const {
        return high_ ? entries().lower_bound(ModelOrder::Edge{*high_, true}) : entries().end();
    }
    [[nodiscard]] bool isInRange(const std::string& key) const {
        return !low_ || (tag().compare(key, *low_) >= 0 && tag().compare(key, *high_) <= 0);
    }
    [[nodiscard]] bool shows(Place place) const {
        const ModelRow& row = table_->row(place->record);
        return !row.isDeleted && order_->counts(place) && (!filter_ || filter_(row));
    }
    [[nodiscard]] bool shows(RecordNumber number) const {
        const Place place = entries().find(order_->entryOf(number, table_->row(number)));
        return place != entries().end() && isInRange(place->key) && shows(place);
    }
    /// The first shown record from a place on, within the range; 0 for none.
    [[nodiscard]] RecordNumber firstFrom(Place place) const {
        for (; place != entries().end() && isInRange(place->key); ++place) {
            if (shows(place)) {
                return place->record;
            }
        }
        return 0;
    }
    [[nodiscard]] RecordNumber lastBefore(Place place) const {
        while (place != entries().begin()) {
            --place;
            if (!isInRange(place->key)) {
                return 0;
            }
            if (shows(place)) {
                return place->record;
            }
        }
        return 0;
    }
    /// The record shown after (before) the current one; 0 for none.
    [[nodiscard]] RecordNumber neighbour(bool isForward) const {
        if (record == 0) {
            return isForward ? firstFrom(begin()) : lastBefore(end());
        }
        const ModelOrder::Entry place = order_->entryOf(record, shown);
        if (isForward) {
            const bool isBeforeRange = low_ && tag().compare(place.key, *low_) < 0;
            return firstFrom(isBeforeRange ? begin() : entries().upper_bound(place));
        }
        const bool isBehindRange = high_ && tag().compare(place.key, *high_) > 0;
        return lastBefore(isBehindRange ? end() : entries().lower_bound(place));
    }

    const TableModel* table_;
    const ModelOrder* order_;
    Filter filter_;
    std::optional<std::string> low_, high_;
};

} // namespace ambrel::test
