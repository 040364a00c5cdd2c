// The fields of a dataset: bound and calculated ones, and matching them with columns when a table opens.

#include <algorithm>

#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"
#include "dbase/table/table.h"

namespace dbase {

namespace {

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

/// False for a column of a previously open table.
bool Dataset::isHere(const Field& field) const {
    return !open_ || field.column_ || field.bound_ || field.kind_ == FieldKind::Calculated;
}

Field* Dataset::findField(std::string_view name) {
    const std::string wanted = upperName(name);
    const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const auto& field) {
        return field->name_ == wanted && isHere(*field);
    });
    if (found != fields_.end()) {
        return found->get();
    }
    const std::optional<std::size_t> column = open_ ? schema().find(wanted) : std::nullopt;
    return column ? &addColumn(*column) : nullptr;
}

/// A column has a field from the first time that somebody asks for it: most cursors are asked for few.
Field& Dataset::addColumn(std::size_t position) {
    const Column& column = schema().columns[position];
    fields_.push_back(std::unique_ptr<Field>(new Field(*this, column.name, kindOf(column), 0)));
    fields_.back()->column_ = position;
    return *fields_.back();
}

void Dataset::addColumns() {
    for (const Column& column : schema().columns) {
        static_cast<void>(findField(column.name));
    }
}

Field& Dataset::field(std::string_view name) {
    if (Field* found = findField(name)) {
        return *found;
    }
    throw Error(ErrorCode::NotFound, open_ ? open_->path() : table_, "no hay ningún campo " + inQuotes(name));
}

std::vector<Field*> Dataset::fields() {
    if (open_) {
        addColumns();
    }
    std::vector<Field*> result;
    for (const auto& field : fields_) {
        if (isHere(*field)) {
            result.push_back(field.get());
        }
    }
    std::stable_sort(result.begin(), result.end(), [](const Field* a, const Field* b) {
        return a->column_.value_or(SIZE_MAX) < b->column_.value_or(SIZE_MAX);
    });
    return result;
}

/// Refuses a file whose column does not fit the bound field.
void Dataset::requireFit(const Field& field) const {
    const auto refuse = [&](const std::string& what) {
        throw Error(ErrorCode::BadLayout, open_->path(), "la columna " + field.name_ + " " + what);
    };
    if (!field.column_) {
        refuse("no existe");
    }
    const Column& column = schema().columns[*field.column_];
    const bool integerFits = field.kind_ == FieldKind::Integer && column.isNumber() && column.decimals == 0;
    if (!integerFits && kindOf(column) != field.kind_) {
        refuse(std::string("es de tipo ") + static_cast<char>(column.type) + ", no del que se espera");
    }
    if (field.kind_ == FieldKind::Character && column.width != field.declaredWidth_) {
        refuse("mide " + std::to_string(column.width) + " y se esperan " +
               std::to_string(field.declaredWidth_));
    }
}

/// Gives every field its column.
void Dataset::resolveFields() {
    for (const auto& field : fields_) {
        field->column_.reset();
        if (field->kind_ == FieldKind::Calculated) {
            continue;
        }
        field->column_ = schema().find(field->name_);
        if (field->bound_) {
            requireFit(*field);
        } else if (field->column_) {
            field->kind_ = kindOf(schema().columns[*field->column_]);
        }
    }
}

} // namespace dbase
