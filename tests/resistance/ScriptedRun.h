// A run of operations on one table that touches everything a medium can spoil: pages that split, records that
// lie across a border of sectors, rows that go, tags made anew. What each step does to the rows is known.
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
    /// Raises what the table raises. `now`: the rows before it.
    std::function<void(Table&, const Rows& now, Durability)> run;
    /// The rows after it; the same for a step that changes none.
    std::function<Rows(Rows)> effect;
    bool syncs = false; // all that was done before is on the disk when it is over
};

/// Records that lie across borders of sectors, tags of every kind whose removal needs no other record.
[[nodiscard]] TableDefinition scriptedDefinition();
/// The table with its first rows, and so small pages that a few changes touch several levels of its trees.
[[nodiscard]] MemoryTable scriptedTable();
/// Rows of the definition above.
[[nodiscard]] Bytes scriptedRow(const Schema& schema, int number);

/// Each kind of change a few times, sync() and rebuildTags() in between.
[[nodiscard]] std::vector<Step> shortScript(const Schema& schema);
/// So many changes drawn at random.
[[nodiscard]] std::vector<Step> randomScript(const Schema& schema, unsigned seed, int steps);

[[nodiscard]] Rows rowsOf(Table& table);
/// The full check; nothing for bytes that were found sound before, of which many cuts and faults leave the
/// same.
[[nodiscard]] std::string freshFindings(const MemoryTable& stored);
/// The two differ in this, for a message; empty when they are the same.
[[nodiscard]] std::string difference(const Rows& expected, const Rows& found);

/// What the rows of a table may be: one state, and more after a fault that left open whether a step was done.
class PossibleRows {
public:
    explicit PossibleRows(Rows rows) : states_{std::move(rows)} {}

    void done(const Step& step);
    void doneOrNot(const Step& step);
    /// True when what was found was possible, else a failure of the test; from now on it is the only state.
    bool settle(const Rows& found);
    [[nodiscard]] bool isCertain() const { return states_.size() == 1; }
    [[nodiscard]] const Rows& first() const { return states_.front(); }

private:
    void dropTwins();

    std::vector<Rows> states_;
};

} // namespace dbase::test
