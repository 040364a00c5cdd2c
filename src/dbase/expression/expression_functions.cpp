// The functions of expressions: their names, arguments and result widths.
#include <algorithm>
#include <array>
#include <utility>

#include "dbase/expression/expression_node.h"
#include "dbase/system/names.h"

namespace dbase {

namespace {

using Node = Expression::Node;

struct Call {
    std::vector<NodePointer>& arguments;
    const ExpressionContext& context;
    std::size_t position;
};

struct Function {
    std::string_view name;
    Operation operation;
    ValueType result;
    std::string_view arguments;        // the type of each, in order: C N D L
    std::size_t needed;                // number of required arguments
    void (*shape)(Node&, const Call&); // sets the width; null if there is nothing to set
};

/// A constant argument as a whole number within limits; `missing` if it was not given.
int constantArgument(const Call& call, std::size_t index, int missing, int smallest, int largest) {
    if (index >= call.arguments.size()) {
        return missing;
    }
    const Node& argument = *call.arguments[index];
    if (!argument.isConstant) {
        throw ExpressionFault{call.position,
                              "el argumento " + std::to_string(index + 1) + " debe ser constante"};
    }
    if (!(argument.number >= smallest && argument.number <= largest)) {
        throw ExpressionFault{call.position, "el argumento " + std::to_string(index + 1) +
                                                 " debe estar entre " + std::to_string(smallest) + " y " +
                                                 std::to_string(largest)};
    }
    return static_cast<int>(argument.number);
}

void shapeLikeText(Node& node, const Call& call) {
    node.width = call.arguments[0]->width;
    node.hasFixedWidth = call.arguments[0]->hasFixedWidth;
    node.page = &CodePage::ofDriver(call.context.schema->languageDriver);
}

void shapeTrimmed(Node& node, const Call& call) {
    node.width = call.arguments[0]->width;
    node.hasFixedWidth = false;
}

void shapeEnd(Node& node, const Call& call) {
    const Node& text = *call.arguments[0];
    const Node& count = *call.arguments[1];
    node.width = count.isConstant ? wholeCount(count.number, text.width) : text.width;
    node.hasFixedWidth = count.isConstant && text.hasFixedWidth;
}

void shapeSubstr(Node& node, const Call& call) {
    const Node& text = *call.arguments[0];
    const Node& start = *call.arguments[1];
    const Node* count = call.arguments.size() > 2 ? call.arguments[2].get() : nullptr;
    const std::size_t skipped = start.isConstant ? wholeCount(start.number, text.width + 1) : 1;
    node.width = text.width + 1 - std::max<std::size_t>(skipped, 1);
    if (count != nullptr && count->isConstant) {
        node.width = wholeCount(count->number, node.width);
    }
    node.hasFixedWidth = text.hasFixedWidth && start.isConstant && (count == nullptr || count->isConstant);
}

void shapeStr(Node& node, const Call& call) {
    constexpr int defaultWidth = 10, maxWidth = 254, maxDecimals = 30;
    node.width = static_cast<std::size_t>(constantArgument(call, 1, defaultWidth, 1, maxWidth));
    node.decimals = constantArgument(call, 2, 0, 0, maxDecimals);
}

void shapeDate(Node& node, const Call&) { node.width = 8; }

constexpr std::array<Function, 17> functions{{
    {"UPPER", Operation::Upper, ValueType::Text, "C", 1, shapeLikeText},
    {"LOWER", Operation::Lower, ValueType::Text, "C", 1, shapeLikeText},
    {"LEFT", Operation::Left, ValueType::Text, "CN", 2, shapeEnd},
    {"RIGHT", Operation::Right, ValueType::Text, "CN", 2, shapeEnd},
    {"SUBSTR", Operation::Substr, ValueType::Text, "CNN", 2, shapeSubstr},
    {"STR", Operation::Str, ValueType::Text, "NNN", 1, shapeStr},
    {"DTOS", Operation::Dtos, ValueType::Text, "D", 1, shapeDate},
    {"DTOC", Operation::Dtoc, ValueType::Text, "D", 1, shapeDate},
    {"VAL", Operation::Val, ValueType::Number, "C", 1, nullptr},
    {"TRIM", Operation::TrimRight, ValueType::Text, "C", 1, shapeTrimmed},
    {"RTRIM", Operation::TrimRight, ValueType::Text, "C", 1, shapeTrimmed},
    {"LTRIM", Operation::TrimLeft, ValueType::Text, "C", 1, shapeTrimmed},
    {"ALLTRIM", Operation::TrimBoth, ValueType::Text, "C", 1, shapeTrimmed},
    {"RECNO", Operation::Recno, ValueType::Number, "", 0, nullptr},
    {"DELETED", Operation::Deleted, ValueType::Logical, "", 0, nullptr},
    // The table cannot describe the results of these two.
    {"SPACE", Operation::Constant, ValueType::Text, "N", 1, nullptr},
    {"IIF", Operation::Choose, ValueType::Text, "L**", 3, nullptr},
}};

/// Accepts whole names, and names cut to four letters or more.
const Function* findFunction(std::string_view written) {
    const std::string name = upperName(written);
    for (const Function& function : functions) {
        if (name == function.name || (name.size() >= 4 && function.name.starts_with(name))) {
            return &function;
        }
    }
    return nullptr;
}

ValueType typeOf(char letter) {
    return letter == 'C'   ? ValueType::Text
           : letter == 'N' ? ValueType::Number
           : letter == 'D' ? ValueType::Date
                           : ValueType::Logical;
}

void checkArguments(const Function& function, const Call& call) {
    const std::string name(function.name);
    const std::size_t given = call.arguments.size();
    if (given < function.needed || given > function.arguments.size()) {
        throw ExpressionFault{call.position, name + " no admite " + std::to_string(given) + " argumentos"};
    }
    for (std::size_t i = 0; i < given; ++i) {
        if (function.arguments[i] != '*' && call.arguments[i]->type != typeOf(function.arguments[i])) {
            throw ExpressionFault{call.position, "el argumento " + std::to_string(i + 1) + " de " + name +
                                                     " no es del tipo que pide"};
        }
    }
}

void shapeChoice(Node& node, const Call& call) {
    const Node& first = *call.arguments[1];
    const Node& second = *call.arguments[2];
    if (first.type != second.type) {
        throw ExpressionFault{call.position, "los dos valores de IIF deben ser del mismo tipo"};
    }
    node.type = first.type;
    node.width = std::max(first.width, second.width);
    node.hasFixedWidth = first.hasFixedWidth && second.hasFixedWidth && first.width == second.width;
}

} // namespace

NodePointer makeCall(std::string_view name, std::vector<NodePointer> arguments,
                     const ExpressionContext& context, std::size_t position) {
    const Function* function = findFunction(name);
    if (function == nullptr) {
        throw ExpressionFault{position, "no se conoce la función " + CodePage::windows1252().toUtf8(name)};
    }
    const Call call{arguments, context, position};
    checkArguments(*function, call);
    if (function->name == "SPACE") {
        constexpr int maxBlanks = 254;
        return makeText(
            std::string(static_cast<std::size_t>(constantArgument(call, 0, 0, 0, maxBlanks)), ' '));
    }
    auto node = std::make_unique<Node>();
    node->operation = function->operation;
    node->type = function->result;
    if (function->operation == Operation::Choose) {
        shapeChoice(*node, call);
    } else if (function->shape != nullptr) {
        function->shape(*node, call);
    }
    for (NodePointer& argument : arguments) {
        node->parts.push_back(std::move(argument));
    }
    return finishNode(std::move(node), position);
}

} // namespace dbase
