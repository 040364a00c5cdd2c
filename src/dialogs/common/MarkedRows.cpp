// Marks rows of a grid.
#include "dialogs/common/MarkedRows.h"

#include <algorithm>

namespace ambrel {

void MarkedRows::begin(dbase::RecordNumber record) {
    if (beginning_ == 0) {
        beginning_ = record;
    }
}

void MarkedRows::drop() {
    beginning_ = 0;
    side_ = Side::Here;
}

/// Index of the row where marking began, or the number of rows if it is not among them.
std::size_t MarkedRows::beginningIn(const dbase::RowsAround& around) const {
    const auto found = std::ranges::find(around.rows, beginning_, &dbase::RowsAround::Row::record);
    return static_cast<std::size_t>(found - around.rows.begin());
}

bool MarkedRows::isWhole(const dbase::RowsAround& around) const {
    return isEmpty() || beginningIn(around) < around.rows.size();
}

void MarkedRows::follow(const dbase::RowsAround& around) {
    const std::size_t beginning = beginningIn(around);
    if (isEmpty() || beginning == around.rows.size()) {
        return;
    }
    side_ = beginning == around.current  ? Side::Here
            : beginning < around.current ? Side::Before
                                         : Side::After;
}

MarkedRows::Part MarkedRows::part(const dbase::RowsAround& around) const {
    if (around.rows.empty()) {
        return {};
    }
    std::size_t first = around.current, last = around.current;
    if (!isEmpty()) {
        const std::size_t beginning = beginningIn(around);
        const bool isSeen = beginning < around.rows.size();
        if (side_ == Side::Before) {
            first = isSeen ? beginning : 0;
        } else if (side_ == Side::After) {
            last = isSeen ? beginning : around.rows.size() - 1;
        }
    }
    return {first, last - first + 1};
}

} // namespace ambrel
