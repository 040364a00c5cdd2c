// Runs of deleted rows: what proves them, and what a change of our own leaves of them.
#include "dbase/dataset/deleted_runs.h"

#include <algorithm>
#include <utility>

namespace dbase {

namespace {
constexpr std::chrono::seconds shelfLife{1};
constexpr std::uint64_t oneChange = 2; // of the counter, which is odd meanwhile
} // namespace

bool DeletedRuns::hold(const Table& table) const {
    return !isEmpty_ && counter_ == table.changeCounter() && count_ == table.records().recordCount() &&
           coarseNow() - since_ < shelfLife;
}

void DeletedRuns::clear() {
    runs_.fill({});
    isEmpty_ = true;
}

const OrderPlace* DeletedRuns::endOf(const Table& table, Direction direction, std::string_view key,
                                     RecordNumber record) {
    if (isEmpty_) {
        return nullptr;
    }
    if (!hold(table)) {
        clear();
        return nullptr;
    }
    for (const Run& run : runs_) {
        const OrderPlace& begin = direction == Direction::Forward ? run.first : run.last;
        if (begin.record == record && record != 0 && begin.key == key) {
            return direction == Direction::Forward ? &run.last : &run.first;
        }
    }
    return nullptr;
}

void DeletedRuns::add(const Table& table, Direction direction, OrderPlace from, OrderPlace to) {
    const std::uint64_t counter = table.changeCounter();
    if (counter == 0 || counter % oneChange != 0) {
        return; // nothing would prove it
    }
    if (!hold(table)) {
        clear();
        counter_ = counter;
        count_ = table.records().recordCount();
        since_ = coarseNow();
        isEmpty_ = false;
    }
    if (direction == Direction::Backward) {
        std::swap(from, to);
    }
    const auto known = std::ranges::find_if(runs_, [&](const Run& run) { // the same run, grown at one end
        return (run.first.record == from.record && run.first.key == from.key) ||
               (run.last.record == to.record && run.last.key == to.key);
    });
    Run& place = known != runs_.end() ? *known : runs_[oldest_++ % runs_.size()];
    place = {std::move(from), std::move(to)};
}

void DeletedRuns::follow(const Table& table, std::uint64_t before) {
    if (isEmpty_) {
        return;
    }
    if (counter_ != before || table.changeCounter() != before + oneChange) {
        clear();
        return;
    }
    counter_ = before + oneChange;
    count_ = table.records().recordCount();
}

void DeletedRuns::entryAdded(const KeyOrder& order, std::string_view key, bool comesLast) {
    for (Run& run : runs_) {
        if (run.first.record == 0 || order.compare(key, run.first.key) < 0) {
            continue;
        }
        const int fromLast = order.compare(key, run.last.key);
        if (fromLast < 0 || (fromLast == 0 && !comesLast)) {
            run = {};
        }
    }
}

} // namespace dbase
