// Which of the rows around the current one a grid shows.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "dbase/dataset/dataset_window.h"

namespace ambrel {

/// Remembers what was shown last, so that the rows stay where they are while the current one moves among
/// them, scroll by one when it steps out of them, and have it in the upper third, with what follows it in
/// view, when it comes from elsewhere.
class RowWindow {
public:
    struct Part {
        std::size_t first = 0, count = 0; // of the rows around
    };

    /// The current row goes to this row of the window the next time.
    void wish(std::size_t row) { wish_ = row; }
    /// Nothing of what was shown counts any more.
    void forget();
    /// Needs as many rows each way as there is room for. The current row is always in the part.
    Part choose(const dbase::RowsAround& around, std::size_t room);

private:
    [[nodiscard]] std::size_t wantedRow(const dbase::RowsAround& around, std::size_t room) const;

    std::vector<dbase::RecordNumber> shown_;
    std::optional<std::size_t> wish_;
};

} // namespace ambrel
