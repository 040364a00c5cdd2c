#include "dbase/dataset.h"

#include <algorithm>

#include "dbase/databases.h"
#include "dbase/dataset_spot.h"
#include "dbase/error.h"
#include "dbase/seek_key.h"
#include "dbase/table.h"

namespace dbase {

namespace {

std::string upperName(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return result;
}

FieldKind kindOf(const Column& column) {
    switch (column.type) {
    case ColumnType::Numeric:
    case ColumnType::Float:
        return column.decimals == 0 && column.width <= 9 ? FieldKind::Integer : FieldKind::Number;
    case ColumnType::Logical:
        return FieldKind::Logical;
    case ColumnType::Date:
        return FieldKind::Date;
    case ColumnType::Character:
    case ColumnType::Memo:
        break;
    }
    return FieldKind::Character;
}

} // namespace

Dataset::Dataset() : spot_(std::make_unique<Spot>()), ahead_(std::make_unique<ReadAhead>()) {}

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

void Dataset::setTable(std::string database, std::string table) {
    requireClosed();
    database_ = std::move(database);
    table_ = std::move(table);
}

// --- Fields

Field& Dataset::addField(std::string name, FieldKind kind, std::size_t width) {
    requireClosed();
    fields_.push_back(std::unique_ptr<Field>(new Field(*this, upperName(name), kind, width)));
    fields_.back()->bound_ = true;
    return *fields_.back();
}

Field& Dataset::bindCharacter(std::string name, std::size_t width) {
    return addField(std::move(name), FieldKind::Character, width);
}
Field& Dataset::bindInteger(std::string name) { return addField(std::move(name), FieldKind::Integer, 0); }
Field& Dataset::bindLogical(std::string name) { return addField(std::move(name), FieldKind::Logical, 0); }
Field& Dataset::addCalculated(std::string name, std::size_t width) {
    return addField(std::move(name), FieldKind::Calculated, width);
}

Field* Dataset::findField(std::string_view name) {
    const std::string wanted = upperName(name);
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const auto& field) { return field->name_ == wanted; });
    return found == fields_.end() ? nullptr : found->get();
}

Field& Dataset::field(std::string_view name) {
    if (Field* found = findField(name)) {
        return *found;
    }
    throw Error(ErrorCode::NotFound, open_ ? open_->path() : table_,
                "no hay ningún campo \"" + std::string(name) + "\"");
}

std::vector<Field*> Dataset::fields() {
    std::vector<Field*> result;
    for (const auto& field : fields_) {
        result.push_back(field.get());
    }
    std::stable_sort(result.begin(), result.end(), [](const Field* a, const Field* b) {
        return a->column_.value_or(SIZE_MAX) < b->column_.value_or(SIZE_MAX);
    });
    return result;
}

// Gives every field its column; a file that does not fit the bound ones is refused.
void Dataset::resolveFields() {
    const Schema& columns = open_->schema();
    const auto refuse = [&](const Field& field, const std::string& what) {
        throw Error(ErrorCode::BadLayout, open_->path(), "la columna " + field.name_ + " " + what);
    };
    for (const auto& field : fields_) {
        field->column_.reset();
        if (field->kind_ == FieldKind::Calculated) {
            continue;
        }
        field->column_ = columns.find(field->name_);
        if (!field->bound_) {
            continue;
        }
        if (!field->column_) {
            refuse(*field, "no existe");
        }
        const Column& column = columns.columns[*field->column_];
        const bool integerFits = field->kind_ == FieldKind::Integer && column.isNumber() && column.decimals == 0;
        if (!integerFits && kindOf(column) != field->kind_) {
            refuse(*field, std::string("es de tipo ") + static_cast<char>(column.type) + ", no del que se espera");
        }
        if (field->kind_ == FieldKind::Character && column.width != field->declaredWidth_) {
            refuse(*field, "mide " + std::to_string(column.width) + " y se esperan " +
                               std::to_string(field->declaredWidth_));
        }
    }
    for (const Column& column : columns.columns) {
        if (findField(column.name) == nullptr) {
            fields_.push_back(std::unique_ptr<Field>(new Field(*this, column.name, kindOf(column), 0)));
            fields_.back()->column_ = columns.find(column.name);
        }
    }
}

// --- Life

void Dataset::open() {
    if (open_) {
        return;
    }
    const std::string folder = databaseFolder(database_);
    const std::optional<std::string> path = findTableFile(folder, table_);
    if (!path) {
        throw Error(ErrorCode::NotFound, folder + '/' + table_, "no existe la tabla");
    }
    open_ = Table::open(*path);
    try {
        resolveFields();
        activeTag_ = nullptr;
        if (!tag_.empty()) {
            activeTag_ = open_->findTag(tag_);
            if (activeTag_ == nullptr) {
                throw Error(ErrorCode::NotFound, *path, "no hay ningún tag \"" + tag_ + "\"; ejecute \"ambcp reindexar\"");
            }
        }
        if (!filterText_.empty()) {
            filter_ = Expression::parse(filterText_, open_->schema(), Dialect::Filter);
        }
        row_.assign(open_->schema().recordLength, ' ');
        state_ = DatasetState::Browse;
        {
            const NotificationPause pause(*this);
            if (afterOpen_) {
                afterOpen_(*this);
            }
            first();
        }
    } catch (...) {
        state_ = DatasetState::Closed;
        open_.reset();
        throw;
    }
    changed(DatasetChange::Opened);
}

void Dataset::close() {
    if (!open_) {
        return;
    }
    open_->unlockRecords(this);
    explicitLocks_.clear();
    state_ = DatasetState::Closed;
    modified_ = false;
    record_ = 0;
    *spot_ = Spot{};
    ahead_->clear();
    rangeLow_.reset();
    rangeHigh_.reset();
    filter_.reset();
    activeTag_ = nullptr;
    std::fill(row_.begin(), row_.end(), ' ');
    open_.reset();
    changed(DatasetChange::Closed);
}

bool Dataset::isReadOnly() const { return open_ && open_->isReadOnly(); }
std::string Dataset::readOnlyReason() const { return open_ ? open_->readOnlyReason() : std::string(); }

Table& Dataset::openTable() const {
    requireOpen();
    return *open_;
}

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
    const Tag* found = wanted.empty() ? nullptr : open_->findTag(wanted);
    if (!wanted.empty() && found == nullptr) {
        throw Error(ErrorCode::NotFound, open_->path(), "no hay ningún tag \"" + name + "\"");
    }
    cancel();
    activeTag_ = found;
    tag_ = wanted;
    rangeLow_.reset();
    rangeHigh_.reset();
    reposition();
    changed(DatasetChange::Order);
}

void Dataset::setRange(const Key& low, const Key& high) {
    requireOpen();
    if (activeTag_ == nullptr || !activeTag_->isUnderstood()) {
        throw Error(ErrorCode::BadState, open_->path(), "un rango necesita un tag activo");
    }
    cancel();
    const SeekKey from = makeSeekKey(*activeTag_, schema(), low);
    const SeekKey to = makeSeekKey(*activeTag_, schema(), high);
    rangeLow_ = from.bytes.substr(0, from.covered);
    rangeHigh_ = to.bytes.substr(0, to.covered);
    const NotificationPause pause(*this);
    first();
}

void Dataset::clearRange() {
    if (!rangeLow_) {
        return;
    }
    cancel();
    rangeLow_.reset();
    rangeHigh_.reset();
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
        parsed = Expression::parse(text, schema(), Dialect::Filter);
        if (parsed->type() != ValueType::Logical) {
            throw Error(ErrorCode::BadExpression, open_->path(), "el filtro \"" + text + "\" no es una condición");
        }
    }
    cancel();
    filter_ = std::move(parsed);
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

Dataset::Subscription Dataset::listen(Listener listener) {
    auto subscription = std::make_shared<Listener>(std::move(listener));
    listeners_.push_back(subscription);
    return subscription;
}

void Dataset::changed(DatasetChange change) {
    if (listeners_.empty() || paused_ > 0) {
        return;
    }
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
    const auto current = listeners_; // a listener may come or go while it is told
    for (const auto& weak : current) {
        if (const auto listener = weak.lock()) {
            (*listener)(change);
        }
    }
}

void Dataset::suspendNotifications() { ++paused_; }

void Dataset::resumeNotifications() {
    if (--paused_ == 0) {
        changed(DatasetChange::Order);
    }
}

} // namespace dbase
