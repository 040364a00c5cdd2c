// Key expressions, FOR conditions and filters: parsed once, evaluated on a record.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/codec.h"
#include "dbase/dbf/schema.h"

namespace dbase {

/// The two small languages of expressions.
enum class Dialect {
    Index,  // stored with a tag: .AND. .OR. .NOT., .T. .F.; a = b is true if a begins with b
    Filter, // given by a program: AND OR NOT (dotted forms too), True/False; = compares whole texts without
            // trailing blanks
};

/// Type of a result.
enum class ValueType { Text, Number, Date, Logical };

/// Result of an evaluation; only the member for `type` is meaningful. A null date has `hasValue` false; a
/// blank number counts as 0, a blank logical as false.
struct Value {
    ValueType type = ValueType::Text;
    std::string text;
    double number = 0;
    JulianDay day = 0;
    bool logical = false;
    bool hasValue = true;
};

/// A whole column as part of a key that is a single column or a sum of character columns.
struct KeySegment {
    std::size_t column;          // in the schema
    std::uint16_t offset, width; // in the record
};

/// A parsed expression bound to the columns of one schema. It stores column positions, not names, so any
/// table of the same layout can use it. Immutable, cheap to copy.
class Expression {
public:
    struct Node;

    /// Errors: Error(BadExpression), which names text and position.
    static Expression parse(std::string_view text, const Schema& schema, Dialect dialect);

    /// The text as written.
    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] ValueType type() const;
    /// Width of a text result in bytes, fixed by the declared widths of the columns; 0 for other types.
    [[nodiscard]] std::size_t width() const;
    [[nodiscard]] Value evaluate(const RecordView& record) const;
    /// Shortcut for conditions: the logical result. The expression must be of type Logical.
    [[nodiscard]] bool test(const RecordView& record) const;

    /// The columns, if the expression consists of nothing else (one column of any type, or a sum of character
    /// columns); empty otherwise.
    [[nodiscard]] const std::vector<KeySegment>& segments() const { return segments_; }
    /// True if the expression is exactly one column.
    [[nodiscard]] bool isPlainColumn() const;

    /// Length in bytes of the leading part of a text result that depends only on the given columns (flags by
    /// schema position): the whole width if every column it uses is given, 0 if not even the first part is
    /// covered.
    [[nodiscard]] std::size_t coveredWidth(const std::vector<bool>& given) const;

private:
    std::string text_;
    std::shared_ptr<const Node> root_;
    std::vector<KeySegment> segments_;
};

} // namespace dbase
