// The parsed form of an expression. Private to the expression's own sources.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/codepage.h"
#include "dbase/expression/expression.h"

namespace dbase {

enum class Operation : std::uint8_t {
    Column,
    Constant,
    // texts
    Concat,        // all parts one after the other
    ConcatTrimmed, // the first without its trailing blanks, the second, then those blanks
    Upper,
    Lower,
    Left,
    Right,
    Substr,
    Str,
    Dtos,
    Dtoc,
    TrimRight,
    TrimLeft,
    TrimBoth,
    // numbers
    Sum,
    Difference,
    Negate,
    Val,
    Recno,
    // logicals
    Compare, // by the type of its parts
    Contains,
    And,
    Or,
    Not,
    Deleted,
    // any type
    Choose,
};

enum class Relation : std::uint8_t { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual };

struct Expression::Node {
    Operation operation = Operation::Constant;
    ValueType type = ValueType::Text;
    std::size_t width = 0;     // text: maximum in bytes
    bool hasFixedWidth = true; // text: always exactly `width`, whatever the record holds
    bool isConstant = false;   // does not depend on the record
    int depth = 1;
    std::vector<std::unique_ptr<const Node>> parts;

    // Column
    std::size_t column = 0;
    std::uint16_t offset = 0, bytes = 0; // in the record
    // Constant
    std::string text;
    double number = 0;
    std::optional<JulianDay> day;
    bool logical = false;
    // Compare, Contains
    Relation relation = Relation::Equal;
    Dialect dialect = Dialect::Index;
    bool isCollated = false;
    // Upper, Lower
    const CodePage* page = nullptr;
    // Str
    int decimals = 0;
};

using NodePointer = std::unique_ptr<Expression::Node>;

/// What the parser knows besides the text.
struct ExpressionContext {
    const Schema* schema;
    Dialect dialect;
};

/// Thrown to reject a text; `position` is the place in the text, from 0.
struct ExpressionFault {
    std::size_t position;
    std::string text; // Spanish, UTF-8
};

inline constexpr int maxExpressionDepth = 100;
inline constexpr std::size_t maxExpressionWidth = 32767; // of a text result

/// Parses a whole text. Throws ExpressionFault.
[[nodiscard]] NodePointer parseExpression(std::string_view text, const ExpressionContext& context);

// --- Building nodes: types are checked and widths fixed here. All throw ExpressionFault.

[[nodiscard]] NodePointer makeText(std::string text);
[[nodiscard]] NodePointer makeNumber(double value);
[[nodiscard]] NodePointer makeLogical(bool value);
[[nodiscard]] NodePointer makeDate(std::optional<JulianDay> day);
[[nodiscard]] NodePointer makeColumn(std::size_t column, const ExpressionContext& context,
                                     std::size_t position);
/// `a + b`; a chain becomes one node.
[[nodiscard]] NodePointer makeSum(NodePointer left, NodePointer right, std::size_t position);
[[nodiscard]] NodePointer makeDifference(NodePointer left, NodePointer right, std::size_t position);
[[nodiscard]] NodePointer makeNegation(NodePointer part, std::size_t position);
[[nodiscard]] NodePointer makeComparison(Relation relation, NodePointer left, NodePointer right,
                                         const ExpressionContext& context, std::size_t position);
/// `needle $ text`.
[[nodiscard]] NodePointer makeContains(NodePointer needle, NodePointer text, const ExpressionContext& context,
                                       std::size_t position);
/// And, Or; a chain becomes one node.
[[nodiscard]] NodePointer makeJunction(Operation operation, NodePointer left, NodePointer right,
                                       std::size_t position);
[[nodiscard]] NodePointer makeNot(NodePointer part, std::size_t position);
/// A function call; the name is as written and may be cut to four letters.
[[nodiscard]] NodePointer makeCall(std::string_view name, std::vector<NodePointer> arguments,
                                   const ExpressionContext& context, std::size_t position);

/// Checks depth and width of a node that has its parts, and makes it a constant if all of them are.
[[nodiscard]] NodePointer finishNode(NodePointer node, std::size_t position);

/// Converts a number to a count or position: zero if it is negative or NaN, at most `limit`.
[[nodiscard]] inline std::size_t wholeCount(double number, std::size_t limit) {
    if (!(number > 0)) {
        return 0;
    }
    return number < static_cast<double>(limit) ? static_cast<std::size_t>(number) : limit;
}

// --- Evaluating, by the type of the node.

[[nodiscard]] Value evaluateNode(const Expression::Node& node, const RecordView& record);
[[nodiscard]] bool evaluateLogical(const Expression::Node& node, const RecordView& record);

} // namespace dbase
