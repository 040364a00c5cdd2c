// Reads POSTAL once, beside an index of earlier rows by key.
#include "directory/StoredStreets.h"

#include <algorithm>
#include <numeric>

namespace ambrel::directory {
namespace {

/// Earlier rows by CODIGO1.
class RowsByKey {
public:
    explicit RowsByKey(std::vector<EarlierRow>& rows) : rows_(rows), order_(rows.size()) {
        std::iota(order_.begin(), order_.end(), 0U);
        const auto key = [&](std::uint32_t place) { return rows_[place].key; };
        if (!std::ranges::is_sorted(order_, {}, key)) {
            std::ranges::sort(order_, {}, key);
        }
    }
    /// Null if there is none. Rows mostly stand in the order of their keys, so the next one is tried first.
    [[nodiscard]] EarlierRow* find(std::uint32_t key) {
        if (next_ < order_.size() && rows_[order_[next_]].key == key) {
            return &rows_[order_[next_++]];
        }
        const auto found =
            std::ranges::lower_bound(order_, key, {}, [&](std::uint32_t place) { return rows_[place].key; });
        if (found == order_.end() || rows_[*found].key != key) {
            return nullptr;
        }
        next_ = static_cast<std::size_t>(found - order_.begin()) + 1;
        return &rows_[*found];
    }

private:
    std::vector<EarlierRow>& rows_;
    std::vector<std::uint32_t> order_;
    std::size_t next_ = 0;
};

/// Finds out whether earlier rows are as they came, several at a time.
class RowStates {
public:
    explicit RowStates(const StreetRecord& record) : record_(record) {}
    /// The bytes that a row now has must stay where they are until it is finished. `useChanged`: receives
    /// earlier rows that somebody has changed, and their bytes.
    template<typename UseChanged>
    void add(EarlierRow& row, std::span<const char> bytes, const UseChanged& useChanged) {
        rows_[count_] = &row;
        bytes_[count_] = bytes;
        if (++count_ == rows_.size()) {
            finish(useChanged);
        }
    }
    template<typename UseChanged>
    void finish(const UseChanged& useChanged) {
        if (count_ == 0) {
            return;
        }
        std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(count_), bytes_.end(), bytes_.front());
        const SideBySide<Fingerprint> prints = record_.fingerprints(bytes_);
        for (std::size_t i = 0; i < count_; ++i) {
            rows_[i]->state = prints[i] == rows_[i]->fingerprint ? RowState::Untouched : RowState::Changed;
            if (rows_[i]->state == RowState::Changed) {
                useChanged(*rows_[i], bytes_[i]);
            }
        }
        count_ = 0;
    }

private:
    const StreetRecord& record_;
    SideBySide<EarlierRow*> rows_{};
    SideBySide<std::span<const char>> bytes_; // of each of them
    std::size_t count_ = 0;
};

void addOwn(const StreetRecord& record, std::span<const char> bytes, dbase::RecordNumber number,
            const PlacesNamed& placesNamed, OwnStreets& own) {
    if (const auto place = record.place(bytes)) {
        own.add(*place, record.name(bytes), number);
        return;
    }
    for (const PlaceCode place : placesNamed(record.municipality(bytes), record.postalCode(bytes))) {
        own.add(place, record.name(bytes), number);
    }
}

} // namespace

StoredStreets readStoredStreets(const StoredRows& table, EarlierEdition& earlier,
                                const PlacesNamed& placesNamed, const LoadingProgress& progress) {
    StoredStreets stored;
    const StreetRecord record(table.schema());
    RowsByKey byKey(earlier.streets);
    RowStates states(record);
    const dbase::RecordNumber count = table.recordCount();
    bool isEmpty = true;
    const auto addChanged = [&](const EarlierRow& row, std::span<const char> bytes) {
        addOwn(record, bytes, row.record, placesNamed, stored.own);
    };
    const auto take = [&](dbase::RecordNumber number, std::span<const char> bytes) {
        reportStep(progress, "POSTAL", number, count);
        isEmpty = false;
        const std::optional<std::uint32_t> key = record.key(bytes);
        EarlierRow* const row = key ? byKey.find(*key) : nullptr;
        if (row != nullptr && row->record == 0) {
            row->record = number;
            states.add(*row, bytes, addChanged);
            return;
        }
        if (key) {
            stored.keys.addUsed(*key);
        }
        addOwn(record, bytes, number, placesNamed, stored.own);
    };
    const auto takeDeleted = [&](dbase::RecordNumber, std::span<const char> bytes) {
        if (const std::optional<std::uint32_t> key = record.key(bytes)) {
            earlier.goneKeys.push_back(*key);
        }
    };
    table.forEach(take, takeDeleted, [&] { states.finish(addChanged); });
    if (!isEmpty) { // customers' addresses may still have them
        std::ranges::for_each(earlier.goneKeys, [&](std::uint32_t key) { stored.keys.addGone(key); });
    }
    for (EarlierRow& row : earlier.streets) {
        stored.keys.addUsed(row.key);
        row.state = isEmpty ? RowState::Lost : row.state;
    }
    stored.own.finish();
    return stored;
}

} // namespace ambrel::directory
