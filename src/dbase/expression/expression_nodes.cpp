// Builds the nodes of an expression, with their static types and widths.
#include <algorithm>
#include <iterator>
#include <utility>

#include "dbase/dbf/collation.h"
#include "dbase/expression/expression_node.h"

namespace dbase {

namespace {

using Node = Expression::Node;

NodePointer constant(ValueType type) {
    auto node = std::make_unique<Node>();
    node->type = type;
    node->isConstant = true;
    return node;
}

NodePointer makeNode(Operation operation, ValueType type) {
    auto node = std::make_unique<Node>();
    node->operation = operation;
    node->type = type;
    return node;
}

const char* nameOf(ValueType type) {
    switch (type) {
    case ValueType::Text:
        return "texto";
    case ValueType::Number:
        return "número";
    case ValueType::Date:
        return "fecha";
    case ValueType::Logical:
        break;
    }
    return "valor lógico";
}

void requireLogical(const Node& node, std::size_t position) {
    if (node.type != ValueType::Logical) {
        throw ExpressionFault{position,
                              std::string("se esperaba una condición y hay un ") + nameOf(node.type)};
    }
}

/// Joins two nodes; chains of the same operation become one chain. Sums of numbers are grouped as written.
NodePointer chain(Operation operation, ValueType type, NodePointer left, NodePointer right) {
    NodePointer node;
    if (left->operation == operation) {
        node = std::move(left);
    } else {
        node = makeNode(operation, type);
        node->parts.push_back(std::move(left));
    }
    if (right->operation == operation && type != ValueType::Number) {
        std::move(right->parts.begin(), right->parts.end(), std::back_inserter(node->parts));
    } else {
        node->parts.push_back(std::move(right));
    }
    return node;
}

void setTextWidth(Node& node) {
    node.width = 0;
    node.hasFixedWidth = true;
    for (const auto& part : node.parts) {
        node.width += part->width;
        node.hasFixedWidth = node.hasFixedWidth && part->hasFixedWidth;
    }
}

/// The result of a constant calculation, as a constant.
NodePointer fold(const Node& node) {
    Value value = evaluateNode(node, RecordView{});
    NodePointer result = constant(node.type);
    result->width = node.width;
    result->hasFixedWidth = true; // evaluated texts are padded to the width
    result->text = std::move(value.text);
    result->number = value.number;
    result->logical = value.logical;
    if (value.hasValue && node.type == ValueType::Date) {
        result->day = value.day;
    }
    return result;
}

} // namespace

NodePointer finishNode(NodePointer node, std::size_t position) {
    node->depth = 1;
    for (const auto& part : node->parts) {
        node->depth = std::max(node->depth, part->depth + 1);
    }
    if (node->depth > maxExpressionDepth) {
        throw ExpressionFault{position, "tiene demasiados niveles"};
    }
    if (node->type == ValueType::Text && node->width > maxExpressionWidth) {
        throw ExpressionFault{position, "el texto que resulta es demasiado largo"};
    }
    const bool foldable = !node->parts.empty() && (node->type != ValueType::Text || node->hasFixedWidth) &&
                          std::all_of(node->parts.begin(), node->parts.end(),
                                      [](const auto& part) { return part->isConstant; });
    return foldable ? fold(*node) : std::move(node);
}

NodePointer makeText(std::string text) {
    NodePointer node = constant(ValueType::Text);
    node->width = text.size();
    node->text = std::move(text);
    return node;
}

NodePointer makeNumber(double value) {
    NodePointer node = constant(ValueType::Number);
    node->number = value;
    return node;
}

NodePointer makeLogical(bool value) {
    NodePointer node = constant(ValueType::Logical);
    node->logical = value;
    return node;
}

NodePointer makeDate(std::optional<JulianDay> day) {
    NodePointer node = constant(ValueType::Date);
    node->day = day;
    return node;
}

NodePointer makeColumn(std::size_t column, const ExpressionContext& context, std::size_t position) {
    const Column& source = context.schema->columns[column];
    NodePointer node = makeNode(Operation::Column, ValueType::Text);
    node->column = column;
    node->offset = source.offset;
    node->bytes = source.width;
    switch (source.type) {
    case ColumnType::Character:
        node->width = source.width;
        break;
    case ColumnType::Numeric:
    case ColumnType::Float:
        node->type = ValueType::Number;
        break;
    case ColumnType::Logical:
        node->type = ValueType::Logical;
        break;
    case ColumnType::Date:
        node->type = ValueType::Date;
        break;
    case ColumnType::Memo:
        throw ExpressionFault{position, "la columna " + source.name + " es un memo"};
    }
    return node;
}

NodePointer makeSum(NodePointer left, NodePointer right, std::size_t position) {
    const ValueType type = left->type;
    if (type != right->type || (type != ValueType::Text && type != ValueType::Number)) {
        throw ExpressionFault{position, std::string("no se pueden sumar ") + nameOf(type) + " y " +
                                            nameOf(right->type)};
    }
    const bool isText = type == ValueType::Text;
    NodePointer node =
        chain(isText ? Operation::Concat : Operation::Sum, type, std::move(left), std::move(right));
    if (isText) {
        setTextWidth(*node);
    }
    return finishNode(std::move(node), position);
}

NodePointer makeDifference(NodePointer left, NodePointer right, std::size_t position) {
    const ValueType type = left->type;
    if (type != right->type || (type != ValueType::Text && type != ValueType::Number)) {
        throw ExpressionFault{position, std::string("no se pueden restar ") + nameOf(type) + " y " +
                                            nameOf(right->type)};
    }
    const bool isText = type == ValueType::Text;
    NodePointer node = makeNode(isText ? Operation::ConcatTrimmed : Operation::Difference, type);
    node->parts.push_back(std::move(left));
    node->parts.push_back(std::move(right));
    if (isText) {
        setTextWidth(*node);
    }
    return finishNode(std::move(node), position);
}

NodePointer makeNegation(NodePointer part, std::size_t position) {
    if (part->type != ValueType::Number) {
        throw ExpressionFault{position, std::string("un signo delante de un ") + nameOf(part->type)};
    }
    NodePointer node = makeNode(Operation::Negate, ValueType::Number);
    node->parts.push_back(std::move(part));
    return finishNode(std::move(node), position);
}

NodePointer makeComparison(Relation relation, NodePointer left, NodePointer right,
                           const ExpressionContext& context, std::size_t position) {
    if (left->type != right->type) {
        throw ExpressionFault{position, std::string("no se pueden comparar ") + nameOf(left->type) + " y " +
                                            nameOf(right->type)};
    }
    if (left->type == ValueType::Logical && relation != Relation::Equal && relation != Relation::NotEqual) {
        throw ExpressionFault{position, "los valores lógicos sólo se comparan con = y <>"};
    }
    NodePointer node = makeNode(Operation::Compare, ValueType::Logical);
    node->relation = relation;
    node->dialect = context.dialect;
    node->isCollated = driverCollates(context.schema->languageDriver);
    node->parts.push_back(std::move(left));
    node->parts.push_back(std::move(right));
    return finishNode(std::move(node), position);
}

NodePointer makeContains(NodePointer needle, NodePointer text, const ExpressionContext& context,
                         std::size_t position) {
    if (needle->type != ValueType::Text || text->type != ValueType::Text) {
        throw ExpressionFault{position, "$ necesita un texto a cada lado"};
    }
    NodePointer node = makeNode(Operation::Contains, ValueType::Logical);
    node->dialect = context.dialect;
    node->parts.push_back(std::move(needle));
    node->parts.push_back(std::move(text));
    return finishNode(std::move(node), position);
}

NodePointer makeJunction(Operation operation, NodePointer left, NodePointer right, std::size_t position) {
    requireLogical(*left, position);
    requireLogical(*right, position);
    return finishNode(chain(operation, ValueType::Logical, std::move(left), std::move(right)), position);
}

NodePointer makeNot(NodePointer part, std::size_t position) {
    requireLogical(*part, position);
    NodePointer node = makeNode(Operation::Not, ValueType::Logical);
    node->parts.push_back(std::move(part));
    return finishNode(std::move(node), position);
}

} // namespace dbase
