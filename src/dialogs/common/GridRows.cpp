// Reading and moving on behalf of a data grid.
#include "dialogs/common/GridRows.h"

#include <algorithm>

#include "services/Text.h"

namespace ambrel {
namespace {

constexpr std::size_t furtherEachTime = 4; // many hidden rows are found in few turns

} // namespace

void GridRows::setSource(dbase::DataSource* source) {
    source_ = source;
    sourceLife_ = source ? source->lifetime() : std::weak_ptr<const void>();
    subscription_.reset();
    if (source)
        subscription_ = source->listen([this](dbase::DatasetChange change) { follow(change); });
    follow(dbase::DatasetChange::Opened);
}

dbase::Dataset* GridRows::table() const {
    dbase::Dataset* const table = sourceLife_.expired() ? nullptr : source_->dataset();
    return table && table->isOpen() && !hasFailed_ ? table : nullptr;
}

void GridRows::follow(dbase::DatasetChange change) {
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
    window_.forget();
    around_ = {};
    part_ = {};
    texts_.clear();
}

bool GridRows::read(const std::vector<GridColumn>& columns, std::size_t room) {
    if (isReading_ || (!isStale_ && room == room_ && (table() || texts_.empty())))
        return false;
    isStale_ = false;
    room_ = room;
    dbase::Dataset* const table = this->table();
    if (!table) {
        clear();
        return true;
    }
    isReading_ = true;
    try {
        around_ = table->readAround({room, room, mostHidden_});
        part_ = window_.choose(around_, room);
        texts_.clear();
        table->visitRows(around_, part_.first, part_.count, [&](std::size_t) {
            QStringList& row = texts_.emplace_back();
            for (const GridColumn& column : columns)
                row.push_back(fromWindows1252(table->field(column.field).text()));
        });
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
    if (last < 0)
        return;
    const std::ptrdiff_t wanted = std::clamp<std::ptrdiff_t>(current + rows, 0, last);
    const bool isNew = table.state() == dbase::DatasetState::Insert;
    if (wanted == current || ((rows == 1 || rows == -1) && !isNew))
        rows > 0 ? table.next() : table.prior(); // also where it ends: then the dataset says so
    else if (!table.goTo(dbase::Bookmark(around_.rows[static_cast<std::size_t>(wanted)].record)))
        table.refresh();
}

void GridRows::moveToRow(dbase::Dataset& table, int row) {
    const std::size_t wanted = part_.first + static_cast<std::size_t>(row);
    if (wanted != around_.current && wanted < around_.rows.size() &&
        !table.goTo(dbase::Bookmark(around_.rows[wanted].record)))
        table.refresh();
}

void GridRows::keepPlace() { window_.wish(around_.current - part_.first); }

void GridRows::moveToPlace(dbase::Dataset& table, double place) {
    window_.wish(0);
    if (!table.goToPlace(place))
        table.refresh();
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
