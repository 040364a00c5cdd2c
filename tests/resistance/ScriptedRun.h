// A run of operations on one table that touches everything a medium can damage: pages that split, records
// that cross a sector border, erased rows, rebuilt tags. The effect of each step on the rows is known.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dbase/support/StoredTable.h"

namespace dbase::test {

/// The records of a table, from number 1 on.
using Rows = std::vector<Bytes>;

struct Step {
    std::string name;
    /// Throws what the table throws. `now`: the rows before the step.
    std::function<void(Table&, const Rows& now, Durability)> run;
    /// The rows after the step; unchanged for a step that changes none.
    std::function<Rows(Rows)> effect;
    bool syncs = false; // everything done before is on the disk when it returns
};

/// Records that cross sector borders; tags of every kind that can be removed without reading another record.
[[nodiscard]] TableDefinition scriptedDefinition();
/// The table with its first rows, and pages so small that a few changes touch several levels of its trees.
[[nodiscard]] MemoryTable scriptedTable();
/// Rows of the definition above.
[[nodiscard]] Bytes scriptedRow(const Schema& schema, int number);

/// Each kind of change a few times, with sync() and rebuildTags() in between.
[[nodiscard]] std::vector<Step> shortScript(const Schema& schema);
/// This many changes drawn at random.
[[nodiscard]] std::vector<Step> randomScript(const Schema& schema, unsigned seed, int steps);

[[nodiscard]] Rows rowsOf(Table& table);
/// The full check; skipped for bytes that have already been found sound, because many cuts and faults leave
/// the same.
[[nodiscard]] std::string freshFindings(const MemoryTable& stored);
/// The rows of a table, which must open, be sound, have each in these tags, and leave no journal; the test
/// fails otherwise.
[[nodiscard]] Rows rowsWhenSound(const MemoryTable& stored, const std::vector<const char*>& tags);
/// Describes the difference, for a message; empty when they are the same.
[[nodiscard]] std::string difference(const Rows& expected, const Rows& found);

/// The possible rows of a table: one state, and more after a fault that left open whether a step was done.
class PossibleRows {
public:
    explicit PossibleRows(Rows rows) : states_{std::move(rows)} {}

    void done(const Step& step);
    void doneOrNot(const Step& step);
    /// True if these rows were possible, else fails the test; from now on they are the only state.
    bool accept(const Rows& found);
    [[nodiscard]] bool isCertain() const { return states_.size() == 1; }
    [[nodiscard]] const Rows& first() const { return states_.front(); }

private:
    void dropTwins();

    std::vector<Rows> states_;
};

} // namespace dbase::test
