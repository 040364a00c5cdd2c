// A dataset as a whole: opening and closing it, its tag, range and filter, calculated fields, events.
#include "dbase/dataset/dataset.h"

#include <algorithm>

#include "dbase/dataset/dataset_read_ahead.h"
#include "dbase/dataset/row_order.h"
#include "dbase/dataset/seek_key.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"

namespace dbase {

namespace {

Expression parseFilter(const Table& table, const std::string& text) {
    Expression parsed = Expression::parse(text, table.schema(), Dialect::Filter);
    if (parsed.type() != ValueType::Logical) {
        throw Error(ErrorCode::BadExpression, table.path(),
                    "el filtro " + inQuotes(text) + " no es una condición");
    }
    return parsed;
}

} // namespace

Dataset::Dataset()
    : spot_(std::make_unique<Spot>()), spare_(std::make_unique<Spot>()),
      ahead_(std::make_unique<ReadAhead>()) {}

Dataset::Dataset(std::string database, std::string table, std::string tag) : Dataset() {
    database_ = std::move(database);
    table_ = std::move(table);
    tag_ = upperName(tag);
}

Dataset::~Dataset() {
    if (open_) {
        open_->unlockRecords(this);
    }
}

void Dataset::requireOpen() const {
    if (!open_) {
        throw Error(ErrorCode::BadState, table_, "la tabla está cerrada");
    }
}

void Dataset::requireClosed() const {
    if (open_) {
        throw Error(ErrorCode::BadState, table_, "la tabla está abierta");
    }
}

/// Seeks and ranges build keys, which is impossible for a tag that is not understood.
void Dataset::requireKeys() const {
    if (order_->tag() == nullptr) {
        throw Error(ErrorCode::BadState, open_->path(), "las búsquedas y los rangos necesitan un tag activo");
    }
    if (!order_->tag()->isUnderstood()) {
        throw Error(ErrorCode::BadState, open_->path(), order_->tag()->problem);
    }
}

void Dataset::setTable(std::string database, std::string table) {
    requireClosed();
    database_ = std::move(database);
    table_ = std::move(table);
}

// --- Opening and closing

void Dataset::open() {
    if (open_) {
        return;
    }
    const std::string folder = databaseFolder(database_);
    const std::optional<std::string> path = findTableFile(folder, table_);
    if (!path) {
        throw Error(ErrorCode::NotFound, folder + '/' + table_, "no existe la tabla");
    }
    openOn(Table::open(*path));
}

void Dataset::openBeside(const Dataset& other) {
    other.requireOpen();
    if (!open_) {
        setTable(other.database_, other.table_);
        openOn(other.open_);
    }
}

void Dataset::openOn(std::shared_ptr<Table> table) {
    open_ = std::move(table);
    ++paused_; // listeners hear nothing before the table is open
    try {
        prepare();
    } catch (...) {
        --paused_;
        if (open_) { // the hook may have closed it
            letGo();
        }
        throw;
    }
    --paused_;
    changed(DatasetChange::Opened);
}

void Dataset::prepare() {
    order_ = std::make_unique<RowOrder>(*open_);
    resolveFields();
    if (!tag_.empty()) {
        order_->setTag(open_->findTag(tag_));
        if (order_->tag() == nullptr) {
            throw Error(ErrorCode::NotFound, open_->path(),
                        "no hay ningún tag " + inQuotes(tag_) + "; ejecute \"ambcp reindexar\"");
        }
    }
    if (!filterText_.empty()) {
        order_->setFilter(parseFilter(*open_, filterText_));
    }
    row_.assign(schema().recordLength, ' ');
    state_ = DatasetState::Browse;
    first();
    if (afterOpen_) {
        addColumns(); // they stay known if it fails
        afterOpen_(*this);
        first();
    }
}

void Dataset::close() {
    if (open_) {
        requireUnvisited();
        addColumns(); // they stay known
        letGo();
        changed(DatasetChange::Closed);
    }
}

void Dataset::letGo() {
    open_->unlockRecords(this);
    explicitLocks_.clear();
    state_ = DatasetState::Closed;
    modified_ = false;
    landNowhere();
    ahead_->clear();
    order_.reset();
    open_.reset();
}

bool Dataset::isReadOnly() const { return open_ && open_->isReadOnly(); }
std::string Dataset::readOnlyReason() const { return open_ ? open_->readOnlyReason() : std::string(); }

Table& Dataset::openTable() const {
    requireOpen();
    return *open_;
}

void Dataset::sync() { openTable().sync(); }

const Schema& Dataset::schema() const { return openTable().schema(); }

// --- Order, range, filter

std::vector<std::string> Dataset::tagNames() const { return openTable().tagNames(); }

void Dataset::setTag(const std::string& name) {
    const std::string wanted = upperName(name);
    if (wanted == tag_) {
        return;
    }
    if (!open_) {
        tag_ = wanted;
        return;
    }
    const auto find = [&]() -> const Tag* {
        const Tag* found = wanted.empty() ? nullptr : open_->findTag(wanted);
        if (!wanted.empty() && found == nullptr) {
            throw Error(ErrorCode::NotFound, open_->path(), "no hay ningún tag " + inQuotes(name));
        }
        return found;
    };
    static_cast<void>(find()); // a refused tag leaves the pending row alone
    leaveRow();
    order_->setTag(find()); // again: a listener may have reopened the table
    tag_ = wanted;
    spot_->cursor.reset(); // it belongs to the old tag
    reposition();
    changed(DatasetChange::Order);
}

void Dataset::setRange(const Key& low, const Key& high) {
    requireOpen();
    requireKeys();
    const Tag& tag = *order_->tag();
    std::string from = makeSeekKey(tag, schema(), low);
    std::string to = makeSeekKey(tag, schema(), high);
    if (tag.order.isDescending() && tag.order.compare(from, to) > 0) {
        std::swap(from, to); // the bounds enclose the same keys in either order
    }
    leaveRow();
    order_->setRange(std::move(from), std::move(to));
    landAtEnd(Direction::Forward);
    changed(DatasetChange::Order);
}

void Dataset::clearRange() {
    if (!order_ || !order_->hasRange()) {
        return;
    }
    leaveRow();
    order_->clearRange();
    reposition();
    changed(DatasetChange::Order);
}

void Dataset::setFilter(const std::string& text) {
    if (!open_) {
        filterText_ = text;
        return;
    }
    std::optional<Expression> parsed;
    if (!text.empty()) {
        parsed = parseFilter(*open_, text);
    }
    leaveRow();
    order_->setFilter(std::move(parsed));
    filterText_ = text;
    reposition();
    changed(DatasetChange::Order);
}

// --- Calculated fields and events

void Dataset::calculate() {
    if (!onCalculate_ || isCalculating_) {
        return;
    }
    for (const auto& field : fields_) {
        if (field->kind_ == FieldKind::Calculated) {
            field->calculated_.clear();
        }
    }
    isCalculating_ = true;
    try {
        onCalculate_(*this);
    } catch (...) {
        isCalculating_ = false;
        throw;
    }
    isCalculating_ = false;
}

void Dataset::fieldSet() {
    if (isCalculating_) {
        return;
    }
    modified_ = true;
    calculate();
    changed(DatasetChange::Field);
}

void Dataset::changed(DatasetChange change) {
    if (paused_ == 0) {
        listeners_.tell(change);
    }
}

void Dataset::suspendNotifications() { ++paused_; }

void Dataset::resumeNotifications() {
    if (paused_ > 0 && --paused_ == 0) {
        changed(DatasetChange::Order);
    }
}

NotificationPause::NotificationPause(Dataset& dataset) : dataset_(dataset) {
    dataset_.suspendNotifications();
}

NotificationPause::~NotificationPause() {
    try {
        dataset_.resumeNotifications();
    } catch (...) {
        // The destructor may be running because of another exception, which is the one to report.
    }
}

} // namespace dbase
