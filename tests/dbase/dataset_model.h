// What a dataset ought to show, computed in the plainest way from a vector of rows.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dbase/dataset.h"

namespace dbase {

struct ModelRow {
    std::string a, b; // C2, C3
    int n = 0;        // N4
    bool deleted = false;
    bool operator==(const ModelRow&) const = default;
};

/// One order of the table. Keys are texts that sort as the tag does; a shorter one is compared on its own
/// length.
struct ModelTag {
    std::string name;
    std::function<std::string(const ModelRow&)> key;
    bool descending = false, unique = false;
    std::function<bool(const ModelRow&)> condition = {};

    [[nodiscard]] int compare(const std::string& x, const std::string& y) const {
        const std::size_t size = std::min(x.size(), y.size());
        const int order = x.compare(0, size, y, 0, size);
        return descending ? -order : order;
    }
};

inline std::string sortable(int number) { return std::to_string(500000 + number); }

inline std::string padded(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

class DatasetModel {
public:
    using Filter = std::function<bool(const ModelRow&)>;

    RecordNumber record = 0;
    ModelRow shown;
    bool bof = false, eof = false;

    // --- What is stored; record r is row r - 1.
    [[nodiscard]] RecordNumber recordCount() const { return static_cast<RecordNumber>(rows_.size()); }
    [[nodiscard]] const ModelRow& stored(RecordNumber number) const { return rows_[number - 1]; }
    [[nodiscard]] bool isThere(RecordNumber number) const {
        return number <= rows_.size() && !stored(number).deleted;
    }
    [[nodiscard]] bool isShownAsStored() const { return record != 0 && stored(record) == shown; }
    void add(const ModelRow& row) {
        rows_.push_back(row);
        forget();
    }
    void replace(RecordNumber number, const ModelRow& row) {
        rows_[number - 1] = row;
        forget();
    }
    void erase(RecordNumber number) {
        rows_[number - 1].deleted = true;
        forget();
    }

    // --- Order. These move nothing by themselves.
    [[nodiscard]] const ModelTag* tag() const { return tag_; }
    [[nodiscard]] bool hasRange() const { return low_.has_value(); }
    void setTag(const ModelTag* tag) {
        tag_ = tag;
        clearRange();
    }
    void setFilter(Filter filter) {
        filter_ = std::move(filter);
        forget();
    }
    void setRange(std::string low, std::string high) {
        if (tag_->descending && tag_->compare(low, high) > 0) {
            std::swap(low, high);
        }
        low_ = std::move(low);
        high_ = std::move(high);
        forget();
    }
    void clearRange() {
        low_.reset();
        high_.reset();
        forget();
    }

    // --- Moves
    void goToEnd(bool isFirst) {
        land(visible().empty() ? 0 : isFirst ? visible().front().record : visible().back().record);
        (isFirst ? bof : eof) = true;
    }
    bool step(bool forward) {
        const RecordNumber found = neighbour(forward);
        if (found != 0) {
            land(found);
            return true;
        }
        if (record != 0 && !isShownAsStored()) {
            reposition();
        }
        (forward ? eof : bof) = true;
        return false;
    }
    bool seek(const std::string& key, bool exact) {
        for (const Entry& entry : visible()) {
            const int order = tag_->compare(entry.key, key);
            if (exact ? order == 0 : order >= 0) {
                land(entry.record);
                return true;
            }
        }
        if (!exact) {
            goToEnd(false);
        }
        return false;
    }
    bool goTo(RecordNumber number) {
        const bool isVisible =
            std::ranges::any_of(visible(), [number](const Entry& entry) { return entry.record == number; });
        if (isVisible) {
            land(number);
        }
        return isVisible;
    }
    void reposition() {
        if (record != 0 && goTo(record)) {
            return;
        }
        const RecordNumber next = neighbour(true);
        land(next != 0 ? next : visible().empty() ? 0 : visible().back().record);
    }
    void land(RecordNumber number) {
        record = number;
        shown = number != 0 ? stored(number) : ModelRow();
        bof = eof = number == 0;
    }

private:
    struct Entry {
        RecordNumber record;
        std::string key;
    };

    void forget() { visible_.reset(); }
    [[nodiscard]] int compare(const Entry& a, const Entry& b) const {
        const int order = tag_ != nullptr ? tag_->compare(a.key, b.key) : 0;
        return order != 0 ? order : a.record < b.record ? -1 : a.record > b.record ? 1 : 0;
    }
    [[nodiscard]] Entry entryOf(RecordNumber number, const ModelRow& row) const {
        return {number, tag_ != nullptr ? tag_->key(row) : std::string()};
    }
    /// Every record that the tag holds, deleted ones included.
    [[nodiscard]] std::vector<Entry> entries() const {
        std::vector<Entry> result;
        for (RecordNumber r = 1; r <= rows_.size(); ++r) {
            if (tag_ == nullptr || !tag_->condition || tag_->condition(stored(r))) {
                result.push_back(entryOf(r, stored(r)));
            }
        }
        std::ranges::sort(result, [&](const Entry& a, const Entry& b) { return compare(a, b) < 0; });
        if (tag_ != nullptr && tag_->unique) {
            const auto same = [](const Entry& a, const Entry& b) { return a.key == b.key; };
            result.erase(std::unique(result.begin(), result.end(), same), result.end());
        }
        return result;
    }
    [[nodiscard]] const std::vector<Entry>& visible() {
        if (!visible_) {
            visible_ = entries();
            std::erase_if(*visible_, [&](const Entry& entry) {
                const ModelRow& row = stored(entry.record);
                const bool inRange =
                    !low_ || (tag_->compare(entry.key, *low_) >= 0 && tag_->compare(entry.key, *high_) <= 0);
                return row.deleted || (filter_ && !filter_(row)) || !inRange;
            });
        }
        return *visible_;
    }
    /// The visible record behind (before) the place of the row shown; 0 for none.
    [[nodiscard]] RecordNumber neighbour(bool forward) {
        const Entry place = entryOf(record, shown);
        RecordNumber before = 0;
        for (const Entry& entry : visible()) {
            const int order = record == 0 ? (forward ? 1 : -1) : compare(entry, place);
            if (forward && order > 0) {
                return entry.record;
            }
            if (!forward && order < 0) {
                before = entry.record;
            }
        }
        return before;
    }

    std::vector<ModelRow> rows_;
    const ModelTag* tag_ = nullptr;
    Filter filter_;
    std::optional<std::string> low_, high_;
    std::optional<std::vector<Entry>> visible_; // computed again when anything changed
};

} // namespace dbase
