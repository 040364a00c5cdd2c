// Reads rows and moves the dataset for a data grid.
#include "dialogs/common/GridRows.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <limits>

#include "dbase/lock/read_scope.h"
#include "services/Text.h"

namespace ambrel {
namespace {

constexpr std::size_t asManyAsThereAre = std::numeric_limits<std::size_t>::max();
constexpr std::size_t furtherEachTime = 4; // finds many hidden rows in few rounds

QStringList textsOf(dbase::Dataset& table, const std::vector<GridColumn>& columns) {
    QStringList texts;
    for (const GridColumn& column : columns) {
        texts.push_back(fromWindows1252(table.field(column.field).text()));
    }
    return texts;
}

} // namespace

void GridRows::setSource(dbase::DataSource* source) {
    source_ = source;
    sourceLife_ = source ? source->lifetime() : std::weak_ptr<const void>();
    subscription_.reset();
    if (source) {
        subscription_ = source->listen([this](dbase::DatasetChange change) { follow(change); });
    }
    follow(dbase::DatasetChange::Opened);
}

dbase::Dataset* GridRows::table() const {
    dbase::Dataset* const table = sourceLife_.expired() ? nullptr : source_->dataset();
    return table && table->isOpen() && !hasFailed_ ? table : nullptr;
}

void GridRows::follow(dbase::DatasetChange change) {
    if (!isMarking_) {
        mark_.drop();
    }
    if (change == dbase::DatasetChange::Opened || change == dbase::DatasetChange::Closed) {
        hasFailed_ = false;
        window_.forget();
    }
    expire();
}

void GridRows::expire() {
    mostHidden_ = dbase::WindowSize().mostHidden;
    isStale_ = true;
    onChange_();
}

void GridRows::clear() {
    mark_.drop();
    window_.forget();
    around_ = {};
    part_ = {};
    texts_.clear();
}

bool GridRows::read(const std::vector<GridColumn>& columns, std::size_t room) {
    if (isReading_ || (!isStale_ && room == room_ && (table() || texts_.empty()))) {
        return false;
    }
    isStale_ = false;
    room_ = room;
    dbase::Dataset* const table = this->table();
    if (!table) {
        clear();
        return true;
    }
    isReading_ = true;
    const dbase::ReadScope scope; // calculated fields seek for each row
    try {
        around_ = table->readAround({room, room, mostHidden_});
        part_ = window_.choose(around_, room);
        mark_.follow(around_);
        texts_.clear();
        table->visitRows(around_, part_.first, part_.count,
                         [&](std::size_t) { texts_.push_back(textsOf(*table, columns)); });
    } catch (...) {
        isReading_ = false;
        giveUp();
        throw;
    }
    isReading_ = false;
    return true;
}

void GridRows::retry() {
    hasFailed_ = false;
    expire();
}

void GridRows::giveUp() {
    hasFailed_ = true;
    clear();
}

bool GridRows::isCut() const { return part_.count < room_ && (around_.isCutBefore || around_.isCutAfter); }

void GridRows::lookFurther() {
    mostHidden_ *= furtherEachTime;
    isStale_ = true;
}

// --- Moves

void GridRows::moveBy(dbase::Dataset& table, int rows) {
    const auto current = static_cast<std::ptrdiff_t>(around_.current);
    const auto last = static_cast<std::ptrdiff_t>(around_.rows.size()) - 1;
    if (last < 0) {
        return;
    }
    const std::ptrdiff_t wanted = std::clamp<std::ptrdiff_t>(current + rows, 0, last);
    const bool isNew = table.state() == dbase::DatasetState::Insert;
    if (wanted == current || ((rows == 1 || rows == -1) && !isNew)) {
        rows > 0 ? table.next() : table.prior(); // even at an end of the table: the dataset then reports it
    } else if (!table.goTo(dbase::Bookmark(around_.rows[static_cast<std::size_t>(wanted)].record))) {
        table.refresh();
    }
}

void GridRows::moveToRow(dbase::Dataset& table, int row) {
    const std::size_t wanted = part_.first + static_cast<std::size_t>(row);
    if (wanted != around_.current && wanted < around_.rows.size() &&
        !table.goTo(dbase::Bookmark(around_.rows[wanted].record))) {
        table.refresh();
    }
}

void GridRows::keepPlace() { window_.wish(around_.current - part_.first); }

void GridRows::moveToPlace(dbase::Dataset& table, double place) {
    window_.wish(0);
    if (!table.goToPlace(place)) {
        table.refresh();
    }
}

// --- Marking

void GridRows::mark(const std::function<void()>& move, MarkedRows::Side leaves) {
    const QScopedValueRollback marking(isMarking_, true);
    mark_.begin(currentRecord());
    if (leaves != MarkedRows::Side::Here) {
        mark_.leaveBehind(leaves);
    }
    move();
    expire(); // a move that does not change the row sends no notification
}

void GridRows::dropMark() {
    if (mark_.isEmpty()) {
        return;
    }
    mark_.drop();
    expire();
}

MarkedRows::Part GridRows::marked() const {
    const auto [first, count] = mark_.part(around_);
    const std::size_t from = std::max(first, part_.first);
    const std::size_t end = std::min(first + count, part_.first + part_.count);
    return {from - part_.first, end - std::min(end, from)};
}

std::vector<QStringList> GridRows::markedTexts(const std::vector<GridColumn>& columns) const {
    std::vector<QStringList> texts;
    dbase::Dataset* const table = this->table();
    if (!table) {
        return texts;
    }
    dbase::RowsAround around = around_;
    const bool isBefore = mark_.side() == MarkedRows::Side::Before;
    for (std::size_t reach = room_; !mark_.isWhole(around);) {
        reach *= furtherEachTime;
        around = table->readAround({isBefore ? reach : 0, isBefore ? 0 : reach, asManyAsThereAre});
        if (around.rows.size() <= reach && !mark_.isWhole(around)) {
            return texts; // read to the end
        }
    }
    const auto [first, count] = mark_.part(around);
    table->visitRows(around, first, count, [&](std::size_t) { texts.push_back(textsOf(*table, columns)); });
    return texts;
}

// --- What was read

int GridRows::current() const {
    return texts_.empty() ? -1 : static_cast<int>(around_.current - part_.first);
}

dbase::RecordNumber GridRows::currentRecord() const {
    return texts_.empty() ? 0 : around_.rows[around_.current].record;
}

bool GridRows::showsEnd() const {
    return part_.first + part_.count == around_.rows.size() && !around_.isCutAfter;
}

double GridRows::firstPlace() const { return texts_.empty() ? 0 : around_.rows[part_.first].place; }

double GridRows::lastPlace() const {
    return texts_.empty() ? 0 : around_.rows[part_.first + part_.count - 1].place;
}

} // namespace ambrel
