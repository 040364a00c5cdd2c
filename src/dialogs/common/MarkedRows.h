// Which rows of a grid are marked, to be copied together.
#pragma once

#include <cstddef>

#include "dbase/dataset/dataset_window.h"

namespace ambrel {

/// The rows from the one where marking began to the current one. Only the first of them is remembered, by its
/// record number: the others may be more than anybody has read.
class MarkedRows {
public:
    /// Where the beginning lies, as seen from the current row.
    enum class Side { Here, Before, After };
    struct Part {
        std::size_t first = 0, count = 0; // of the rows around
    };

    /// Marking begins at a record, unless it has begun. A pending new row has no number and begins nothing.
    void begin(dbase::RecordNumber record);
    void drop();
    [[nodiscard]] bool isEmpty() const { return beginning_ == 0; }
    /// For a move to one end of the table: the beginning stays on this side, however far.
    void leaveBehind(Side side) { side_ = side; }
    [[nodiscard]] Side side() const { return side_; }

    /// Looks where the beginning lies now. Where it is not among the rows around, it stays on its side.
    void follow(const dbase::RowsAround& around);
    /// Those of the rows around that are marked; the current row alone without a mark.
    [[nodiscard]] Part part(const dbase::RowsAround& around) const;
    /// Whether the rows around reach to the beginning.
    [[nodiscard]] bool isWhole(const dbase::RowsAround& around) const;

private:
    [[nodiscard]] std::size_t beginningIn(const dbase::RowsAround& around) const;

    dbase::RecordNumber beginning_ = 0;
    Side side_ = Side::Here;
};

} // namespace ambrel
