// Posts neighbouring rows as one change of the table, which waits for the disk only once.
#include "loading/row_posts.h"

#include <algorithm>

namespace loading {

void RowPosts::add(dbase::RecordNumber number, std::span<const char> shown, std::span<const char> record) {
    rows_.insert_or_assign(
        number, Row{.shown = {shown.begin(), shown.end()}, .record = {record.begin(), record.end()}});
}

void RowPosts::visit(const std::function<void(dbase::RecordNumber, std::span<const char>,
                                              std::span<const char>)>& visitor) const {
    for (const auto& [number, row] : rows_) {
        visitor(number, row.shown, row.record);
    }
}

/// The record after those that were tried; 0 at the end of the table.
dbase::RecordNumber RowPosts::postFrom(dbase::RecordNumber first, dbase::RecordNumber last) {
    return table_->amend(
        first, last - first + 1,
        [&](const dbase::RecordView& before, std::span<char> after) {
            const auto found = rows_.find(before.number);
            if (found != rows_.end() && std::ranges::equal(before.bytes, found->second.shown)) {
                std::ranges::copy(found->second.record, after.begin());
                found->second.outcome = ChangeOutcome::Done;
            }
        },
        dbase::Durability::Disk,
        [&](const dbase::RecordView& held) {
            if (const auto found = rows_.find(held.number); found != rows_.end()) {
                found->second.outcome = ChangeOutcome::Locked;
            }
        });
}

void RowPosts::post(const Observer& observer) {
    // Records between two of them are locked as well for a moment: not too many.
    constexpr dbase::RecordNumber widestGap = 64;
    while (!rows_.empty()) {
        const auto first = rows_.begin();
        auto last = first;
        for (auto next = std::next(first); next != rows_.end() && next->first - last->first <= widestGap;
             ++next) {
            last = next;
        }
        const dbase::RecordNumber end = last->first;
        for (dbase::RecordNumber number = first->first; number != 0 && number <= end;) {
            number = postFrom(number, end);
        }
        for (auto row = rows_.begin(); row != rows_.end() && row->first <= end;) {
            const auto [number, outcome] = std::pair(row->first, row->second.outcome);
            row = rows_.erase(row);
            observer(number, outcome);
        }
    }
}

} // namespace loading
