// Chooses the rows that a grid shows.
#include "dialogs/common/RowWindow.h"

#include <algorithm>

namespace ambrel {

void RowWindow::forget() {
    shown_.clear();
    wish_.reset();
}

std::size_t RowWindow::wantedRow(const dbase::RowsAround& around, std::size_t room) const {
    const auto& rows = around.rows;
    const std::size_t current = around.current;
    if (wish_) {
        return std::min(*wish_, room - 1);
    }
    const std::size_t upperThird = room / 4; // whole rows
    if (shown_.empty()) {
        return upperThird;
    }
    const auto wasShown = [this](const dbase::RowsAround::Row& row) {
        return row.record != 0 && std::find(shown_.begin(), shown_.end(), row.record) != shown_.end();
    };
    const auto top = std::find_if(rows.begin(), rows.end(), [this](const auto& row) {
        return row.record != 0 && row.record == shown_.front();
    });
    if (const auto at = static_cast<std::size_t>(top - rows.begin()); at <= current && current - at < room) {
        return current - at;
    }
    const auto here = rows.begin() + static_cast<std::ptrdiff_t>(current);
    if (wasShown(*here)) { // order changed, or rows above were removed
        const auto old = std::find(shown_.begin(), shown_.end(), here->record) - shown_.begin();
        return std::min(static_cast<std::size_t>(old), room - 1);
    }
    if (current > 0 && wasShown(rows[current - 1])) { // a step out of the shown rows
        return room - 1;
    }
    if (current + 1 < rows.size() && wasShown(rows[current + 1])) {
        return 0;
    }
    return upperThird;
}

RowWindow::Part RowWindow::choose(const dbase::RowsAround& around, std::size_t room) {
    Part part;
    const std::size_t total = around.rows.size();
    if (total > 0) {
        const std::size_t wanted = wantedRow(around, room);
        part.count = std::min(room, total);
        part.first = std::min(around.current - std::min(around.current, wanted), total - part.count);
    }
    wish_.reset();
    shown_.clear();
    for (std::size_t i = 0; i < part.count; ++i) {
        shown_.push_back(around.rows[part.first + i].record);
    }
    return part;
}

} // namespace ambrel
