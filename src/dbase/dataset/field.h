// One column of a dataset: the value in the current record, read and written by type.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"

namespace dbase {

class Dataset;

/// What a column holds, as the dataset's user has bound it; Calculated is no column.
enum class FieldKind { Character, Integer, Number, Logical, Date, Calculated };

/// Owned by its dataset and stable for the dataset's life, so that callers may keep a reference as a bound
/// member. Texts are in the code page of the table (Windows-1252 for ours). Reads on an empty table give
/// blanks. Setters need a dataset that is inserting or editing (Error BadState); a calculated field can be
/// set only inside the dataset's calculation event.
class AMBREL_EXPORT Field {
public:
    /// As it was bound, else as the file has it.
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] FieldKind kind() const { return kind_; }
    /// Width in bytes: of the column, or the declared one of a calculated field.
    [[nodiscard]] std::size_t width() const;
    [[nodiscard]] Dataset& dataset() const { return *dataset_; }

    /// A blank column is null.
    [[nodiscard]] bool isNull() const;
    /// Text without trailing blanks; numbers in decimal, logicals as "True"/"False", dates as YYYYMMDD, null
    /// as "".
    [[nodiscard]] std::string text() const;
    /// The bytes of a character column without trailing blanks, valid until the dataset moves, changes or
    /// closes.
    [[nodiscard]] std::string_view view() const;
    /// Number of a numeric column, or of a text column that holds a decimal text; 0 for null and for what is
    /// no number.
    [[nodiscard]] int integer() const;
    [[nodiscard]] double number() const;
    /// False for null.
    [[nodiscard]] bool logical() const;

    /// Sets from text, converted to the column's type; a text longer than a character column is cut to its
    /// width. Errors: Error(BadValue) for a text that the type cannot hold.
    void setText(std::string_view text);
    /// Decimal digits in a character column. Errors: Error(BadValue) when it does not fit; 16 bits for a
    /// bound integer.
    void setInteger(int value);
    void setLogical(bool value);
    void clear();

    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;

private:
    friend class Dataset;
    Field(Dataset& dataset, std::string name, FieldKind kind, std::size_t declaredWidth)
        : dataset_(&dataset), name_(std::move(name)), kind_(kind), declaredWidth_(declaredWidth) {}

    [[nodiscard]] std::string_view raw() const;
    [[nodiscard]] const Column& writableColumn() const;
    [[nodiscard]] std::span<char> rawForWriting();
    [[nodiscard]] bool fitsBinding(double value) const;
    [[noreturn]] void refuse(const std::string& value) const;

    Dataset* dataset_;
    std::string name_;
    FieldKind kind_;
    std::size_t declaredWidth_; // 0: whatever the file says
    bool bound_ = false;
    std::optional<std::size_t> column_; // in the open table's schema
    std::string calculated_;            // value of a calculated field
};

} // namespace dbase
