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

/// What a column holds, as bound by the dataset's user; Calculated is not a column.
enum class FieldKind { Character, Integer, Number, Logical, Date, Calculated };

/// Owned by its dataset and stable for the dataset's lifetime, so that callers may keep a reference as a
/// bound member. Texts are in the code page of the table (Windows-1252 for ours). Reads on an empty table
/// return blanks. Setters need a dataset that is inserting or editing (Error BadState); a calculated field
/// can be set only inside the dataset's calculation event.
class AMBREL_EXPORT Field {
public:
    /// As bound, or else as in the file.
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] FieldKind kind() const { return kind_; }
    /// Width in bytes: the column's, or the declared one of a calculated field.
    [[nodiscard]] std::size_t width() const;
    [[nodiscard]] Dataset& dataset() const { return *dataset_; }

    /// True for a blank column.
    [[nodiscard]] bool isNull() const;
    /// The value as text without trailing blanks: numbers in decimal, logicals as "True"/"False", dates as
    /// YYYYMMDD, null as "".
    [[nodiscard]] std::string text() const;
    /// The bytes of a character column without trailing blanks, valid until the dataset moves, changes or
    /// closes.
    [[nodiscard]] std::string_view view() const;
    /// The number in a numeric column, or in a text column that holds a decimal text; 0 for null and for
    /// anything that is not a number.
    [[nodiscard]] int integer() const;
    [[nodiscard]] double number() const;
    /// False for null.
    [[nodiscard]] bool logical() const;

    /// Sets the value from a text, converted to the column's type; a text too long for a character column is
    /// cut to its width. Errors: Error(BadValue) for a text that the type cannot hold.
    void setText(std::string_view text);
    /// Writes decimal digits into a character column. Errors: Error(BadValue) if the value does not fit; a
    /// bound integer holds 16 bits.
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
    std::size_t declaredWidth_; // 0: as in the file
    bool bound_ = false;
    std::optional<std::size_t> column_; // in the open table's schema
    std::string calculated_;            // value of a calculated field
};

} // namespace dbase
