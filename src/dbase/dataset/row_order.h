// The rows that a dataset shows, and their order: tag, range and filter on an open table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbase/dataset/deleted_runs.h"
#include "dbase/expression/expression.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/table/table.h"

namespace dbase {

/// A record and its place in the order. Searches work on a spot of their own, so that they can be repeated.
struct Spot {
    std::optional<TreeCursor> cursor; // empty: the order of the file, or a record that the tag lacks
    RecordNumber record = 0;
    std::vector<char> row;
    std::uint64_t hold = 0; // Table::holdNumber() at the search
};

/// Searches run inside Table::read(), so the files do not change under them.
class RowOrder {
public:
    /// Starts with the order of the records in the file, all shown. The table must outlive it.
    explicit RowOrder(const Table& table) : table_(table) {}

    /// Null for the order of the file.
    [[nodiscard]] const Tag* tag() const { return tag_; }
    /// Drops the range.
    void setTag(const Tag* tag);
    /// Takes keys of the tag, inclusive.
    void setRange(std::string low, std::string high);
    void clearRange();
    [[nodiscard]] bool hasRange() const { return rangeLow_.has_value(); }
    /// Takes a condition, or none.
    void setFilter(std::optional<Expression> filter) { filter_ = std::move(filter); }

    // --- Call after a change of the dataset itself, made when the change counter stood at `before`: what the
    // searches have learnt of deleted rows then stays known.
    void rowAdded(std::uint64_t before, const RecordView& record);
    void rowChanged(std::uint64_t before, const RecordView& from, const RecordView& to);
    void rowDeleted(std::uint64_t before) { deletedRuns_.follow(table_, before); }

    [[nodiscard]] bool isVisible(const RecordView& record) const;
    [[nodiscard]] bool isInRange(std::string_view key) const;

    // --- Searches. Each returns true if the spot is then on an entry.

    /// Moves from an entry, in the given direction, to the first one that range and filter show. Stays within
    /// the entries with the wanted key, if given, and gives up after `mostHidden` hidden rows, if given,
    /// which it counts down.
    [[nodiscard]] bool toVisible(Spot& spot, Direction direction, std::string_view wanted = {},
                                 std::size_t* mostHidden = nullptr) const;
    /// Moves to the first entry of all if `direction` is forward, else to the last.
    [[nodiscard]] bool toEnd(Spot& spot, Direction direction) const;
    /// Moves to the entry of a stored record, shown or not.
    [[nodiscard]] bool toEntry(Spot& spot, const RecordView& record) const;
    /// Moves to a record, if range and filter show it.
    [[nodiscard]] bool toRecord(Spot& spot, RecordNumber number) const;
    /// Moves to the entry at a share of the range (0 to 1).
    [[nodiscard]] bool toPlace(Spot& spot, double place) const;

    /// Where the range begins and ends in the tree of the tag (0 to 1).
    [[nodiscard]] std::pair<double, double> rangeShares() const;
    /// The share of the range that lies before a spot. `range`: the result of rangeShares().
    [[nodiscard]] double shareOf(const Spot& spot, const std::pair<double, double>& range) const;

private:
    class DeletedWalk;
    [[nodiscard]] std::string keyOf(const RecordView& record) const;
    void enterRange(Spot& spot, Direction direction) const;

    const Table& table_;
    const Tag* tag_ = nullptr;
    std::optional<Expression> filter_;
    std::optional<std::string> rangeLow_, rangeHigh_; // both or neither
    mutable DeletedRuns deletedRuns_;                 // a memory: says nothing that the files do not
};

} // namespace dbase
