// Gathers changes of records.
#include "dbase/dbf/pending_records.h"

#include <algorithm>

namespace dbase {

std::span<const char> PendingRecords::find(RecordNumber number) const {
    if (isAdded(number)) {
        const std::size_t at = std::size_t{number - firstAdded_} * length_;
        return at < added_.size() ? std::span(added_).subspan(at, length_) : std::span<const char>();
    }
    const auto found = changed_.find(number);
    return found == changed_.end() ? std::span<const char>() : found->second.after;
}

void PendingRecords::change(RecordNumber number, std::span<const char> before, std::span<const char> after) {
    if (isAdded(number)) {
        std::ranges::copy(after,
                          added_.begin() + static_cast<std::ptrdiff_t>(number - firstAdded_) * length_);
        return;
    }
    Change& change = changed_[number];
    if (change.before.empty()) { // what the file has
        change.before.assign(before.begin(), before.end());
    }
    change.after.assign(after.begin(), after.end());
}

void PendingRecords::add(RecordNumber number, std::span<const char> record) {
    added_.insert(added_.end(), record.begin(), record.end());
    if (firstAdded_ == 0) {
        firstAdded_ = number;
    }
}

} // namespace dbase
