// The marked rows of a grid, to be copied together.
#pragma once

#include <cstddef>

#include "dbase/dataset/dataset_window.h"

namespace ambrel {

/// The rows from the one where marking began to the current one. Only the first one is remembered, by its
/// record number: the others may be more than were ever read.
class MarkedRows {
public:
    /// Where the beginning is, seen from the current row.
    enum class Side { Here, Before, After };
    struct Part {
        std::size_t first = 0, count = 0; // of the rows around
    };

    /// Begins marking at a record, unless already begun. A pending new row has no number and begins nothing.
    void begin(dbase::RecordNumber record);
    void drop();
    [[nodiscard]] bool isEmpty() const { return beginning_ == 0; }
    /// For a move to one end of the table: the beginning stays on this side, however far away.
    void leaveBehind(Side side) { side_ = side; }
    [[nodiscard]] Side side() const { return side_; }

    /// Updates the side of the beginning. If it is not among the rows around, it stays on its side.
    void follow(const dbase::RowsAround& around);
    /// The marked ones of the rows around; without a mark, only the current row.
    [[nodiscard]] Part part(const dbase::RowsAround& around) const;
    /// Whether the rows around include the beginning.
    [[nodiscard]] bool isWhole(const dbase::RowsAround& around) const;

private:
    [[nodiscard]] std::size_t beginningIn(const dbase::RowsAround& around) const;

    dbase::RecordNumber beginning_ = 0;
    Side side_ = Side::Here;
};

} // namespace ambrel
