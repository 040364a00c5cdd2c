// Remembers runs of deleted rows in an order, so that a walk steps over each at once.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "dbase/system/clock.h"
#include "dbase/table/table.h"

namespace dbase {

enum class Direction { Forward, Backward };

/// A deleted row's place in an order: its key in the tag, empty in the order of the file, and its number.
struct OrderPlace {
    std::string key;
    RecordNumber record = 0;
};

/// Runs of entries that all lead to deleted rows. They hold while the table's change counter is the one known
/// here, and for a second at most, as other programs may recall rows without counting it.
class DeletedRuns {
public:
    /// Shorter runs are not worth remembering.
    static constexpr std::size_t leastRows = 16;

    /// The end of the run that begins, in this direction, with that entry; null if there is none.
    [[nodiscard]] const OrderPlace* endOf(const Table& table, Direction direction, std::string_view key,
                                          RecordNumber record);
    /// Remembers a run; `from` and `to` in the order walked in that direction.
    void add(const Table& table, Direction direction, OrderPlace from, OrderPlace to);
    void clear();

    [[nodiscard]] bool isEmpty() const { return isEmpty_; }

    // --- After a change of our own
    /// Goes on knowing the runs if nothing else changed the table since its counter stood at `before`.
    void follow(const Table& table, std::uint64_t before);
    /// Forgets the runs that an entry with this key may have divided. `comesLast`: after all equal keys.
    void entryAdded(const KeyOrder& order, std::string_view key, bool comesLast);

private:
    struct Run {
        OrderPlace first, last; // record 0: none
    };

    [[nodiscard]] bool hold(const Table& table) const;

    std::array<Run, 8> runs_;
    std::size_t oldest_ = 0; // replaced next
    bool isEmpty_ = true;
    std::uint64_t counter_ = 0;
    RecordNumber count_ = 0;
    std::chrono::nanoseconds since_{0};
};

} // namespace dbase
