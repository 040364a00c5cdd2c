// Reads and writes the value of a column in the current row by type.
#include "dbase/dataset/field.h"

#include <algorithm>
#include <limits>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/pending.h"
#include "dbase/dbf/codec.h"
#include "dbase/system/error.h"
#include "dbase/system/quoted.h"
#include "dbase/system/trim.h"

namespace dbase {

namespace {
bool isTrueText(std::string_view text) {
    return text == "True" || text == "T" || text == "true" || text == "1";
}
bool isFalseText(std::string_view text) {
    return text == "False" || text == "F" || text == "false" || text == "0";
}
} // namespace

std::size_t Field::width() const {
    if (!column_ || !dataset_->isOpen()) {
        return declaredWidth_;
    }
    return dataset_->schema().columns[*column_].width;
}

std::string_view Field::raw() const {
    if (!column_ || !dataset_->isOpen()) {
        return {};
    }
    const Column& column = dataset_->schema().columns[*column_];
    return {dataset_->row_.data() + column.offset, column.width};
}

const Column& Field::writableColumn() const {
    if (!isPending(dataset_->state()) || !column_) {
        throw Error(ErrorCode::BadState, dataset_->tableName(),
                    "el campo " + name_ + " sólo se puede cambiar al añadir o modificar un registro");
    }
    return dataset_->schema().columns[*column_];
}

std::span<char> Field::rawForWriting() {
    const Column& column = writableColumn();
    return {dataset_->row_.data() + column.offset, column.width};
}

void Field::refuse(const std::string& value) const {
    throw Error(ErrorCode::BadValue, dataset_->tableName(),
                "el valor " + inQuotes(value) + " no cabe en el campo " + name_);
}

// --- Reading

bool Field::isNull() const {
    if (kind_ == FieldKind::Calculated) {
        return calculated_.empty();
    }
    switch (kind_) {
    case FieldKind::Integer:
    case FieldKind::Number:
        return !decodeNumber(raw());
    case FieldKind::Logical:
        return !decodeLogical(raw());
    case FieldKind::Date:
        return !decodeDate(raw());
    case FieldKind::Character:
    case FieldKind::Calculated:
        break;
    }
    return decodeText(raw()).empty();
}

std::string_view Field::view() const {
    return kind_ == FieldKind::Calculated ? calculated_ : decodeText(raw());
}

std::string Field::text() const {
    switch (kind_) {
    case FieldKind::Logical:
        return isNull() ? "" : logical() ? "True" : "False";
    case FieldKind::Integer:
    case FieldKind::Number: {
        if (isNull()) {
            return {};
        }
        if (const auto whole = decodeInteger(raw()); whole && kind_ == FieldKind::Integer) {
            return std::to_string(*whole);
        }
        return std::string(decodeText(withoutLeadingBlanks(raw())));
    }
    case FieldKind::Date:
        return isNull() ? "" : std::string(raw());
    case FieldKind::Character:
    case FieldKind::Calculated:
        break;
    }
    return std::string(view());
}

int Field::integer() const {
    const std::optional<std::int64_t> whole =
        decodeInteger(kind_ == FieldKind::Calculated ? calculated_ : raw());
    const bool fits =
        whole && *whole >= std::numeric_limits<int>::min() && *whole <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(*whole) : 0;
}

double Field::number() const {
    return decodeNumber(kind_ == FieldKind::Calculated ? std::string_view(calculated_) : raw()).value_or(0);
}

bool Field::logical() const { return decodeLogical(raw()).value_or(false); }

// --- Writing

void Field::setText(std::string_view text) {
    if (kind_ == FieldKind::Calculated) {
        if (!dataset_->isCalculating_) {
            throw Error(ErrorCode::BadState, dataset_->tableName(),
                        "el campo " + name_ + " se calcula; no se asigna");
        }
        calculated_ = decodeText(text.substr(0, declaredWidth_));
        return;
    }
    const Column& column = writableColumn();
    if (kind_ == FieldKind::Character) {
        encodeText(rawForWriting(), text);
    } else if (withoutLeadingBlanks(decodeText(text)).empty()) {
        encodeBlank(rawForWriting());
    } else if (kind_ == FieldKind::Logical) {
        if (!isTrueText(text) && !isFalseText(text)) {
            refuse(std::string(text));
        }
        encodeLogical(rawForWriting(), isTrueText(text));
    } else if (kind_ == FieldKind::Date) {
        if (!decodeDate(text)) {
            refuse(std::string(text));
        }
        encodeText(rawForWriting(), text);
    } else {
        const std::optional<double> value = decodeNumber(text);
        const bool isOfKind = value && (kind_ == FieldKind::Number || decodeInteger(text));
        if (!isOfKind || !fitsBinding(*value) || !encodeNumber(rawForWriting(), *value, column.decimals)) {
            refuse(std::string(text));
        }
    }
    dataset_->fieldSet();
}

bool Field::fitsBinding(double value) const {
    return !bound_ || kind_ != FieldKind::Integer ||
           (value >= std::numeric_limits<std::int16_t>::min() &&
            value <= std::numeric_limits<std::int16_t>::max());
}

void Field::setInteger(int value) {
    if (kind_ == FieldKind::Character || kind_ == FieldKind::Calculated) {
        const std::string digits = std::to_string(value);
        if (digits.size() > width()) {
            refuse(digits); // a text may be cut, but a number would become another one
        }
        setText(digits);
        return;
    }
    const Column& column = writableColumn();
    if (!column.isNumber() || !fitsBinding(value) ||
        !encodeInteger(rawForWriting(), value, column.decimals)) {
        refuse(std::to_string(value));
    }
    dataset_->fieldSet();
}

void Field::setLogical(bool value) {
    if (kind_ != FieldKind::Logical) {
        refuse(value ? "True" : "False");
    }
    encodeLogical(rawForWriting(), value);
    dataset_->fieldSet();
}

void Field::clear() {
    if (kind_ == FieldKind::Calculated) {
        setText({});
        return;
    }
    encodeBlank(rawForWriting());
    dataset_->fieldSet();
}

} // namespace dbase
