// The choice of rows around the current one that a grid shows.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "dbase/dataset/dataset_window.h"

namespace ambrel {

/// Remembers what was last shown, so that the rows stay put while the current one moves among them, scroll by
/// one when it steps out of them, and show it in the upper third, with the rows after it in view, when it
/// comes from elsewhere.
class RowWindow {
public:
    struct Part {
        std::size_t first = 0, count = 0; // of the rows around
    };

    /// Puts the current row in this row of the window at the next choice.
    void wish(std::size_t row) { wish_ = row; }
    /// Discards what was last shown.
    void forget();
    /// Needs as many rows each way as fit. The current row is always in the part.
    Part choose(const dbase::RowsAround& around, std::size_t room);

private:
    [[nodiscard]] std::size_t wantedRow(const dbase::RowsAround& around, std::size_t room) const;

    std::vector<dbase::RecordNumber> shown_;
    std::optional<std::size_t> wish_;
};

} // namespace ambrel
