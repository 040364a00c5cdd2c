// Which rows a dataset shows, and in which order: tag, range and filter on an open table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbase/expression/expression.h"
#include "dbase/mdx/tree_cursor.h"
#include "dbase/table/table.h"

namespace dbase {

enum class Direction { Forward, Backward };

/// A record and its place in the order. Searches work on one of their own, so that they may be run again.
struct Spot {
    std::optional<TreeCursor> cursor; // empty: the order of the file, or a record that its tag does not hold
    RecordNumber record = 0;
    std::vector<char> row;
};

/// The searches run inside Table::read(): they see a state of the files that does not change.
class RowOrder {
public:
    /// The order of the records in the file, all shown. The table must outlive it.
    explicit RowOrder(const Table& table) : table_(table) {}

    /// Null for the order of the file.
    [[nodiscard]] const Tag* tag() const { return tag_; }
    /// Drops the range.
    void setTag(const Tag* tag);
    /// Keys of the tag, both included.
    void setRange(std::string low, std::string high);
    void clearRange();
    [[nodiscard]] bool hasRange() const { return rangeLow_.has_value(); }
    /// A condition, or nothing.
    void setFilter(std::optional<Expression> filter) { filter_ = std::move(filter); }

    [[nodiscard]] bool isVisible(const RecordView& record) const;
    [[nodiscard]] bool isInRange(std::string_view key) const;

    // --- Searches. Each is true when the spot then stands on an entry.

    /// From an entry on, in the given direction, to the first one that range and filter show. Goes no further
    /// than the entries with the wanted key, when there is one, and gives up behind so many hidden rows, when
    /// that is limited; the limit is counted down.
    [[nodiscard]] bool settle(Spot& spot, Direction direction, std::string_view wanted = {},
                              std::size_t* mostHidden = nullptr) const;
    /// To the first entry of all, to go forward from there, or to the last.
    [[nodiscard]] bool toEnd(Spot& spot, Direction direction) const;
    /// To the entry of a stored record, shown or not.
    [[nodiscard]] bool toEntry(Spot& spot, const RecordView& record) const;
    /// To a record, if range and filter show it.
    [[nodiscard]] bool toRecord(Spot& spot, RecordNumber number) const;
    /// To the entry at a share of the range (0 to 1).
    [[nodiscard]] bool toPlace(Spot& spot, double place) const;

    /// Where the range begins and ends in the tree of the tag (0 to 1).
    [[nodiscard]] std::pair<double, double> rangeShares() const;
    /// The share of the range that lies before a spot. `range`: what rangeShares() said.
    [[nodiscard]] double shareOf(const Spot& spot, const std::pair<double, double>& range) const;

private:
    void enterRange(Spot& spot, Direction direction) const;

    const Table& table_;
    const Tag* tag_ = nullptr;
    std::optional<Expression> filter_;
    std::optional<std::string> rangeLow_, rangeHigh_; // both or none
};

} // namespace dbase
