// The rows around a dataset's current one, shown without moving.

#include "dbase/dataset/dataset_window.h"

#include <algorithm>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/pending.h"
#include "dbase/dataset/row_order.h"
#include "dbase/system/error.h"

namespace dbase {

/// The rows that follow the current one in a direction, nearest first.
struct Dataset::Walk {
    std::vector<RowsAround::Row> rows;
    std::vector<char> bytes;
    bool isCut = false;
};

/// Shows rows through the fields, and restores everything that the fields look at when destroyed.
class Dataset::Visit {
public:
    explicit Visit(Dataset& dataset)
        : dataset_(dataset), row_(dataset.row_), record_(dataset.record_), state_(dataset.state_) {
        for (const auto& field : dataset_.fields_) {
            calculated_.push_back(field->calculated_);
        }
        dataset_.isVisited_ = true;
        dataset_.state_ = DatasetState::Browse; // so that no setter writes into a visited row
    }
    ~Visit() {
        showCurrent();
        dataset_.state_ = state_;
        dataset_.isVisited_ = false;
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    void show(RecordNumber record, std::span<const char> bytes) {
        dataset_.record_ = record;
        std::copy(bytes.begin(), bytes.end(), dataset_.row_.begin());
        dataset_.calculate();
    }
    void showCurrent() {
        dataset_.record_ = record_;
        std::copy(row_.begin(), row_.end(), dataset_.row_.begin());
        for (std::size_t i = 0; i < calculated_.size(); ++i) {
            dataset_.fields_[i]->calculated_ = calculated_[i];
        }
    }

private:
    Dataset& dataset_;
    const std::vector<char> row_;
    const RecordNumber record_;
    const DatasetState state_;
    std::vector<std::string> calculated_;
};

bool Dataset::isPending() const { return dbase::isPending(state_); }

void Dataset::requireUnvisited() const {
    if (isVisited_) {
        throw Error(ErrorCode::BadState, table_,
                    "mientras se muestran sus filas, la tabla no se puede mover ni modificar");
    }
}

Dataset::Walk Dataset::walk(Direction direction, std::size_t count, std::size_t mostHidden) const {
    Walk walk;
    Spot spot;
    if (count == 0 || !toNeighbour(spot, direction)) {
        return walk;
    }
    const bool forward = direction == Direction::Forward;
    const std::pair<double, double> range = order_->rangeShares();
    std::size_t left = mostHidden;
    while (order_->toVisible(spot, direction, {}, &left)) {
        const RecordView record = open_->records().record(spot.record);
        walk.rows.push_back({spot.record, order_->shareOf(spot, range)});
        walk.bytes.insert(walk.bytes.end(), record.bytes.begin(), record.bytes.end());
        if (walk.rows.size() == count) {
            return walk;
        }
        if (spot.cursor) {
            static_cast<void>(forward ? spot.cursor->next() : spot.cursor->prior());
        } else {
            spot.record = forward ? spot.record + 1 : spot.record - 1;
        }
    }
    walk.isCut = left > mostHidden; // it wrapped below zero
    return walk;
}

RowsAround Dataset::gatherAround(const WindowSize& size) const {
    RowsAround around;
    const bool isNew = state_ == DatasetState::Insert;
    const auto add = [&around](RowsAround::Row row, std::span<const char> bytes) {
        around.rows.push_back(row);
        around.bytes.insert(around.bytes.end(), bytes.begin(), bytes.end());
    };
    if (record_ == 0) {
        if (isNew) {
            add({0, 0}, row_);
        }
        return around;
    }
    const Walk before = walk(Direction::Backward, size.before, size.mostHidden);
    const Walk after = walk(Direction::Forward, size.after, size.mostHidden);
    for (std::size_t i = before.rows.size(); i-- > 0;) {
        add(before.rows[i], {before.bytes.data() + i * row_.size(), row_.size()});
    }
    double place = before.rows.empty() ? 0 : before.rows.front().place;
    Spot here;
    here.cursor = spot_->cursor;
    here.record = record_;
    if (order_->tag() == nullptr || (here.cursor && here.cursor->stillHolds()) ||
        here.cursor.emplace(*open_->index(), *order_->tag()).find(shownKey(), record_)) {
        place = order_->shareOf(here, order_->rangeShares());
    }
    if (isNew) {
        add({record_, place}, shown_);
    }
    around.current = around.rows.size();
    add({isNew ? 0 : record_, place}, row_);
    for (std::size_t i = 0; i < after.rows.size(); ++i) {
        add(after.rows[i], {after.bytes.data() + i * row_.size(), row_.size()});
    }
    around.isCutBefore = before.isCut;
    around.isCutAfter = after.isCut;
    return around;
}

RowsAround Dataset::readAround(const WindowSize& size) const {
    requireOpen();
    requireUnvisited();
    return open_->read([&] { return gatherAround(size); });
}

/// Runs outside the lock: calculating fields reads other tables, or this one through another cursor.
void Dataset::visitRows(const RowsAround& around, std::size_t first, std::size_t count,
                        const std::function<void(std::size_t)>& visit) {
    requireOpen();
    requireUnvisited();
    const std::size_t length = row_.size();
    if (isCalculating_ || around.bytes.size() != around.rows.size() * length) {
        throw Error(ErrorCode::BadState, table_, "estas filas no se pueden mostrar ahora");
    }
    Visit shown(*this);
    const std::size_t end = std::min(around.rows.size(), first + count);
    for (std::size_t i = first; i < end; ++i) {
        if (i == around.current) {
            shown.showCurrent();
        } else {
            shown.show(around.rows[i].record, {around.bytes.data() + i * length, length});
        }
        visit(i);
    }
}

} // namespace dbase
