// What a table should hold, in standard containers: rows in a vector, and every tag as a sorted set of
// them.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"

namespace ambrel::test {

using dbase::RecordNumber;

struct ModelRow {
    std::string code, name, day, kind; // the day has eight digits or none
    std::optional<int> number;
    bool isDeleted = false;
    bool operator==(const ModelRow&) const = default;
};

/// Keys are texts that sort as the tag does.
struct ModelTag {
    std::string name; // empty: the order of the records in the file
    std::function<std::string(const ModelRow&)> key;
    bool isDescending = false, isUnique = false;
    std::function<bool(const ModelRow&)> condition = {};

    /// A shorter key is compared over its own length only.
    [[nodiscard]] int compare(std::string_view a, std::string_view b) const {
        const std::size_t size = std::min(a.size(), b.size());
        const int order = a.substr(0, size).compare(b.substr(0, size));
        return isDescending ? -order : order;
    }
};

/// The entries of one tag in their order, those of deleted rows included.
class ModelOrder {
public:
    struct Entry {
        std::string key;
        RecordNumber record;
    };
    struct Edge { // before (after) everything with the key
        std::string_view key;
        bool isBehind;
    };
    struct Before {
        using is_transparent = void;
        const ModelTag* tag;
        bool operator()(const Entry& a, const Entry& b) const {
            const int order = tag->compare(a.key, b.key);
            return order != 0 ? order < 0 : a.record < b.record;
        }
        bool operator()(const Entry& a, const Edge& b) const {
            const int order = tag->compare(a.key, b.key);
            return order != 0 ? order < 0 : b.isBehind;
        }
    };
    using Entries = std::set<Entry, Before>;
    using Place = Entries::const_iterator;

    explicit ModelOrder(const ModelTag& tag) : tag_(&tag), entries_(Before{&tag}) {}

    [[nodiscard]] const ModelTag& tag() const { return *tag_; }
    /// Has all rows of a unique tag, of which only the first of each key counts: see counts().
    [[nodiscard]] const Entries& entries() const { return entries_; }
    [[nodiscard]] bool counts(Place place) const {
        return !tag_->isUnique || place == entries_.begin() || std::prev(place)->key != place->key;
    }
    [[nodiscard]] Entry entryOf(RecordNumber record, const ModelRow& row) const {
        return {tag_->key(row), record};
    }
    [[nodiscard]] std::vector<RecordNumber> records() const {
        std::vector<RecordNumber> numbers;
        for (Place place = entries_.begin(); place != entries_.end(); ++place) {
            if (counts(place)) {
                numbers.push_back(place->record);
            }
        }
        return numbers;
    }

    void add(RecordNumber record, const ModelRow& row) {
        if (!tag_->condition || tag_->condition(row)) {
            entries_.insert(entryOf(record, row));
        }
    }
    void remove(RecordNumber record, const ModelRow& row) { entries_.erase(entryOf(record, row)); }

private:
    const ModelTag* tag_;
    Entries entries_;
};

class TableModel {
public:
    explicit TableModel(const std::vector<ModelTag>& tags) {
        for (const ModelTag& tag : tags) {
            orders_.emplace_back(tag);
        }
    }

    [[nodiscard]] RecordNumber recordCount() const { return static_cast<RecordNumber>(rows_.size()); }
    [[nodiscard]] const ModelRow& row(RecordNumber record) const { return rows_[record - 1]; }
    [[nodiscard]] bool isThere(RecordNumber record) const {
        return record != 0 && record <= rows_.size() && !row(record).isDeleted;
    }
    [[nodiscard]] const std::vector<ModelOrder>& orders() const { return orders_; }
    /// The tag must exist.
    [[nodiscard]] const ModelOrder& order(std::string_view tag) const {
        return *std::ranges::find_if(orders_,
                                     [&](const ModelOrder& order) { return order.tag().name == tag; });
    }

    RecordNumber append(const ModelRow& added) {
        rows_.push_back(added);
        for (ModelOrder& order : orders_) {
            order.add(recordCount(), added);
        }
        return recordCount();
    }
    void overwrite(RecordNumber record, const ModelRow& after) {
        for (ModelOrder& order : orders_) {
            order.remove(record, row(record));
            order.add(record, after);
        }
        rows_[record - 1] = after;
    }
    void erase(RecordNumber record) {
        ModelRow after = row(record);
        after.isDeleted = true;
        overwrite(record, after);
    }

private:
    std::vector<ModelRow> rows_; // record r is row r - 1
    std::vector<ModelOrder> orders_;
};

} // namespace ambrel::test
