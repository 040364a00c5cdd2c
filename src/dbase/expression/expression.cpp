// The public side of expressions: parsing, evaluating, and the columns that a key consists of.
#include "dbase/expression/expression.h"

#include <algorithm>

#include "dbase/expression/expression_node.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

using Node = Expression::Node;

constexpr std::size_t maxIndexText = 220;   // the room in the index file
constexpr std::size_t maxFilterText = 4096; // bounds the work that a hostile text can cause

/// The text as UTF-8 on one line, truncated if long.
std::string shown(std::string_view text, const Schema& schema) {
    constexpr std::size_t longest = 200;
    std::string bytes(text.substr(0, longest));
    for (char& c : bytes) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            c = '?';
        }
    }
    return CodePage::ofDriver(schema.languageDriver).toUtf8(bytes) + (text.size() > longest ? "…" : "");
}

bool usesOnly(const Node& node, const std::vector<bool>& given) {
    if (node.operation == Operation::Column) {
        return node.column < given.size() && given[node.column];
    }
    if (node.operation == Operation::Recno || node.operation == Operation::Deleted) {
        return false;
    }
    return std::all_of(node.parts.begin(), node.parts.end(),
                       [&given](const auto& part) { return usesOnly(*part, given); });
}

std::size_t covered(const Node& node, const std::vector<bool>& given);

std::size_t coveredOfConcat(const Node& node, const std::vector<bool>& given) {
    std::size_t sum = 0;
    for (const auto& part : node.parts) {
        const std::size_t width = covered(*part, given);
        sum += part->hasFixedWidth ? width : 0;
        if (!part->hasFixedWidth || width < part->width) {
            break;
        }
    }
    return sum;
}

/// Number of leading bytes that depend only on the given columns.
std::size_t covered(const Node& node, const std::vector<bool>& given) {
    if (usesOnly(node, given)) {
        return node.width;
    }
    switch (node.operation) {
    case Operation::Concat:
        return coveredOfConcat(node, given);
    case Operation::Upper:
    case Operation::Lower:
        return covered(*node.parts[0], given);
    case Operation::Left:
        return node.parts[1]->isConstant ? std::min(node.width, covered(*node.parts[0], given)) : 0;
    case Operation::Substr: {
        if (!node.parts[1]->isConstant || (node.parts.size() > 2 && !node.parts[2]->isConstant)) {
            return 0;
        }
        const auto skipped =
            std::max<std::size_t>(wholeCount(node.parts[1]->number, maxExpressionWidth), 1) - 1;
        const std::size_t inner = covered(*node.parts[0], given);
        return inner > skipped ? std::min(node.width, inner - skipped) : 0;
    }
    default:
        return 0;
    }
}

/// The columns that the expression strings together; empty if it contains anything else.
std::vector<KeySegment> segmentsOf(const Node& root) {
    const auto segment = [](const Node& node) { return KeySegment{node.column, node.offset, node.bytes}; };
    if (root.operation == Operation::Column) {
        return {segment(root)};
    }
    std::vector<KeySegment> segments;
    if (root.operation == Operation::Concat) {
        for (const auto& part : root.parts) {
            if (part->operation != Operation::Column) {
                return {};
            }
            segments.push_back(segment(*part));
        }
    }
    return segments;
}

} // namespace

Expression Expression::parse(std::string_view text, const Schema& schema, Dialect dialect) {
    try {
        const std::size_t longest = dialect == Dialect::Index ? maxIndexText : maxFilterText;
        if (text.size() > longest) {
            throw ExpressionFault{longest, "tiene más de " + std::to_string(longest) + " caracteres"};
        }
        Expression expression;
        expression.text_ = text;
        expression.root_ = parseExpression(text, {&schema, dialect});
        expression.segments_ = segmentsOf(*expression.root_);
        return expression;
    } catch (const ExpressionFault& fault) {
        throw Error(ErrorCode::BadExpression, {},
                    "expresión «" + shown(text, schema) + "», posición " +
                        std::to_string(fault.position + 1) + ": " + fault.text);
    }
}

ValueType Expression::type() const { return root_->type; }

std::size_t Expression::width() const { return root_->type == ValueType::Text ? root_->width : 0; }

Value Expression::evaluate(const RecordView& record) const { return evaluateNode(*root_, record); }

bool Expression::test(const RecordView& record) const { return evaluateLogical(*root_, record); }

bool Expression::isPlainColumn() const { return root_->operation == Operation::Column; }

std::size_t Expression::coveredWidth(const std::vector<bool>& given) const {
    return root_->type == ValueType::Text ? covered(*root_, given) : 0;
}

} // namespace dbase
