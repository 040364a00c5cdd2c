// Evaluates expressions. Texts are views into the record, the expression or a scratch area of the
// evaluation, so that filters on plain columns allocate nothing.
#include <algorithm>
#include <array>

#include "dbase/dbf/collation.h"
#include "dbase/dbf/decimal.h"
#include "dbase/expression/expression_node.h"
#include "dbase/system/trim.h"

namespace dbase {

namespace {

using Node = Expression::Node;

/// Memory for the texts that one evaluation produces.
class Scratch {
public:
    char* take(std::size_t size) {
        if (size <= sizeof near_ - used_) {
            char* const room = near_ + used_;
            used_ += size;
            return room;
        }
        far_.push_back(std::make_unique<char[]>(size));
        return far_.back().get();
    }

private:
    char near_[512]; // uninitialized: clearing it would cost more than most filters
    std::size_t used_ = 0;
    std::vector<std::unique_ptr<char[]>> far_;
};

std::string_view evaluateText(const Node& node, const RecordView& record, Scratch& scratch);
double evaluateNumber(const Node& node, const RecordView& record, Scratch& scratch);
std::optional<JulianDay> evaluateDate(const Node& node, const RecordView& record, Scratch& scratch);
bool evaluateCondition(const Node& node, const RecordView& record, Scratch& scratch);

std::string_view rawColumn(const Node& node, const RecordView& record) {
    return {record.bytes.data() + node.offset, node.bytes};
}

// --- Texts

std::string_view concat(const Node& node, const RecordView& record, Scratch& scratch) {
    char* const room = scratch.take(node.width);
    std::size_t size = 0;
    for (const auto& part : node.parts) {
        const std::string_view text = evaluateText(*part, record, scratch);
        std::copy(text.begin(), text.end(), room + size);
        size += text.size();
    }
    return {room, size};
}

std::string_view concatTrimmed(const Node& node, const RecordView& record, Scratch& scratch) {
    const std::string_view first = evaluateText(*node.parts[0], record, scratch);
    const std::string_view second = evaluateText(*node.parts[1], record, scratch);
    const std::string_view trimmed = withoutTrailingBlanks(first);
    char* const room = scratch.take(node.width);
    char* to = std::copy(trimmed.begin(), trimmed.end(), room);
    to = std::copy(second.begin(), second.end(), to);
    to = std::fill_n(to, first.size() - trimmed.size(), ' ');
    return {room, static_cast<std::size_t>(to - room)};
}

std::string_view changeCase(const Node& node, const RecordView& record, Scratch& scratch) {
    const std::string_view text = evaluateText(*node.parts[0], record, scratch);
    char* const room = scratch.take(text.size());
    const bool isUpper = node.operation == Operation::Upper;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        room[i] = static_cast<char>(isUpper ? node.page->upper(byte) : node.page->lower(byte));
    }
    return {room, text.size()};
}

std::size_t count(const Node& node, const RecordView& record, Scratch& scratch) {
    return wholeCount(evaluateNumber(node, record, scratch), maxExpressionWidth);
}

std::string_view part(const Node& node, const RecordView& record, Scratch& scratch) {
    const std::string_view text = evaluateText(*node.parts[0], record, scratch);
    const std::size_t number = count(*node.parts[1], record, scratch);
    if (node.operation == Operation::Left) {
        return text.substr(0, number);
    }
    if (node.operation == Operation::Right) {
        return text.substr(text.size() - std::min(number, text.size()));
    }
    const std::size_t start = std::min(std::max<std::size_t>(number, 1) - 1, text.size());
    return node.parts.size() > 2 ? text.substr(start, count(*node.parts[2], record, scratch))
                                 : text.substr(start);
}

std::string_view numberText(const Node& node, const RecordView& record, Scratch& scratch) {
    const double value = evaluateNumber(*node.parts[0], record, scratch);
    char* const room = scratch.take(node.width);
    if (!formatFixed({room, node.width}, value, node.decimals)) {
        std::fill_n(room, node.width, '*');
    }
    return {room, node.width};
}

/// Deliberate: DTOC writes month/day/year, dBase's own default order, with which other programs built their
/// keys.
std::string_view dateText(const Node& node, const RecordView& record, Scratch& scratch) {
    const auto day = evaluateDate(*node.parts[0], record, scratch);
    char* const room = scratch.take(8);
    if (node.operation == Operation::Dtos) {
        const std::string digits = day ? encodeDate(*day) : std::string(8, ' ');
        std::copy(digits.begin(), digits.end(), room);
    } else if (day) {
        const std::string digits = encodeDate(*day);
        const std::string text = digits.substr(4, 2) + "/" + digits.substr(6, 2) + "/" + digits.substr(2, 2);
        std::copy(text.begin(), text.end(), room);
    } else {
        std::copy_n("  /  /  ", 8, room);
    }
    return {room, 8};
}

std::string_view evaluateText(const Node& node, const RecordView& record, Scratch& scratch) {
    switch (node.operation) {
    case Operation::Column:
        return rawColumn(node, record);
    case Operation::Constant:
        return node.text;
    case Operation::Concat:
        return concat(node, record, scratch);
    case Operation::ConcatTrimmed:
        return concatTrimmed(node, record, scratch);
    case Operation::Upper:
    case Operation::Lower:
        return changeCase(node, record, scratch);
    case Operation::Left:
    case Operation::Right:
    case Operation::Substr:
        return part(node, record, scratch);
    case Operation::Str:
        return numberText(node, record, scratch);
    case Operation::Dtos:
    case Operation::Dtoc:
        return dateText(node, record, scratch);
    case Operation::TrimRight:
        return withoutTrailingBlanks(evaluateText(*node.parts[0], record, scratch));
    case Operation::TrimLeft:
        return withoutLeadingBlanks(evaluateText(*node.parts[0], record, scratch));
    case Operation::TrimBoth:
        return trimmed(evaluateText(*node.parts[0], record, scratch), isBlank);
    case Operation::Choose:
        return evaluateText(*node.parts[evaluateCondition(*node.parts[0], record, scratch) ? 1 : 2], record,
                            scratch);
    default:
        return {};
    }
}

// --- Numbers

double columnNumber(std::string_view raw) {
    if (const auto whole = decodeInteger(raw)) {
        return static_cast<double>(*whole);
    }
    return decodeNumber(raw).value_or(0);
}

/// The number at the start of a text, after blanks; 0 if there is none.
double leadingNumber(std::string_view text) {
    text = withoutLeadingBlanks(text);
    std::size_t size = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    bool hasPoint = false;
    for (; size < text.size(); ++size) {
        const bool isPoint = text[size] == '.' && !hasPoint;
        hasPoint = hasPoint || isPoint;
        if (!isPoint && (text[size] < '0' || text[size] > '9')) {
            break;
        }
    }
    return decodeNumber(text.substr(0, size)).value_or(0);
}

double evaluateNumber(const Node& node, const RecordView& record, Scratch& scratch) {
    switch (node.operation) {
    case Operation::Column:
        return columnNumber(rawColumn(node, record));
    case Operation::Constant:
        return node.number;
    case Operation::Sum: {
        double sum = 0;
        for (const auto& term : node.parts) {
            sum += evaluateNumber(*term, record, scratch);
        }
        return sum;
    }
    case Operation::Difference:
        return evaluateNumber(*node.parts[0], record, scratch) -
               evaluateNumber(*node.parts[1], record, scratch);
    case Operation::Negate:
        return -evaluateNumber(*node.parts[0], record, scratch);
    case Operation::Val:
        return leadingNumber(evaluateText(*node.parts[0], record, scratch));
    case Operation::Recno:
        return record.number;
    case Operation::Choose:
        return evaluateNumber(*node.parts[evaluateCondition(*node.parts[0], record, scratch) ? 1 : 2], record,
                              scratch);
    default:
        return 0;
    }
}

// --- Dates

std::optional<JulianDay> evaluateDate(const Node& node, const RecordView& record, Scratch& scratch) {
    switch (node.operation) {
    case Operation::Column:
        return decodeDate(rawColumn(node, record));
    case Operation::Constant:
        return node.day;
    case Operation::Choose:
        return evaluateDate(*node.parts[evaluateCondition(*node.parts[0], record, scratch) ? 1 : 2], record,
                            scratch);
    default:
        return std::nullopt;
    }
}

// --- Conditions

int compareTexts(std::string_view a, std::string_view b, bool isCollated) {
    if (!isCollated) {
        return a.compare(b);
    }
    const auto& weights = collationWeights();
    const std::size_t size = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < size; ++i) {
        if (a[i] != b[i]) {
            return weights[static_cast<unsigned char>(a[i])] - weights[static_cast<unsigned char>(b[i])];
        }
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

/// Negative, 0 or positive if the left part is less than, equal to or greater than the right one.
int compareTextParts(const Node& node, const RecordView& record, Scratch& scratch) {
    std::string_view left = evaluateText(*node.parts[0], record, scratch);
    std::string_view right = evaluateText(*node.parts[1], record, scratch);
    if (node.dialect == Dialect::Filter) {
        left = decodeText(left);
        right = decodeText(right);
    } else {
        left = left.substr(0, right.size()); // a text that begins with the right one is equal to it
    }
    if (left == right) {
        return 0;
    }
    return compareTexts(left, right, node.isCollated);
}

template<class T>
int order(const T& left, const T& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Blank dates come after all others, as in keys.
int compareDates(const std::optional<JulianDay>& left, const std::optional<JulianDay>& right) {
    if (left && right) {
        return order(*left, *right);
    }
    return order(!left, !right);
}

bool compare(const Node& node, const RecordView& record, Scratch& scratch) {
    const Node& left = *node.parts[0];
    const Node& right = *node.parts[1];
    int result = 0;
    switch (left.type) {
    case ValueType::Text:
        result = compareTextParts(node, record, scratch);
        break;
    case ValueType::Number:
        result = order(evaluateNumber(left, record, scratch), evaluateNumber(right, record, scratch));
        break;
    case ValueType::Date:
        result = compareDates(evaluateDate(left, record, scratch), evaluateDate(right, record, scratch));
        break;
    case ValueType::Logical:
        result =
            evaluateCondition(left, record, scratch) == evaluateCondition(right, record, scratch) ? 0 : 1;
        break;
    }
    switch (node.relation) {
    case Relation::Equal:
        return result == 0;
    case Relation::NotEqual:
        return result != 0;
    case Relation::Less:
        return result < 0;
    case Relation::Greater:
        return result > 0;
    case Relation::LessOrEqual:
        return result <= 0;
    case Relation::GreaterOrEqual:
        return result >= 0;
    }
    return false;
}

bool contains(const Node& node, const RecordView& record, Scratch& scratch) {
    const std::string_view needle = evaluateText(*node.parts[0], record, scratch);
    const std::string_view text = evaluateText(*node.parts[1], record, scratch);
    if (node.dialect == Dialect::Index) {
        return text.find(needle) != std::string_view::npos;
    }
    const std::string_view word = decodeText(needle);
    return !word.empty() &&
           decodeText(text).find(word) != std::string_view::npos; // a blank column is in no list
}

bool evaluateCondition(const Node& node, const RecordView& record, Scratch& scratch) {
    const auto isTrue = [&](const auto& term) { return evaluateCondition(*term, record, scratch); };
    switch (node.operation) {
    case Operation::Column:
        return decodeLogical(rawColumn(node, record)).value_or(false);
    case Operation::Constant:
        return node.logical;
    case Operation::Compare:
        return compare(node, record, scratch);
    case Operation::Contains:
        return contains(node, record, scratch);
    case Operation::And:
        return std::all_of(node.parts.begin(), node.parts.end(), isTrue);
    case Operation::Or:
        return std::any_of(node.parts.begin(), node.parts.end(), isTrue);
    case Operation::Not:
        return !isTrue(node.parts[0]);
    case Operation::Deleted:
        return record.isDeleted();
    case Operation::Choose:
        return isTrue(node.parts[isTrue(node.parts[0]) ? 1 : 2]);
    default:
        return false;
    }
}

} // namespace

Value evaluateNode(const Node& node, const RecordView& record) {
    Scratch scratch;
    Value value;
    value.type = node.type;
    switch (node.type) {
    case ValueType::Text:
        value.text.reserve(node.width);
        value.text = evaluateText(node, record, scratch);
        value.text.resize(node.width, ' ');
        break;
    case ValueType::Number:
        value.number = evaluateNumber(node, record, scratch);
        break;
    case ValueType::Date: {
        const auto day = evaluateDate(node, record, scratch);
        value.hasValue = day.has_value();
        value.day = day.value_or(0);
        break;
    }
    case ValueType::Logical:
        value.logical = evaluateCondition(node, record, scratch);
        break;
    }
    return value;
}

bool evaluateLogical(const Node& node, const RecordView& record) {
    Scratch scratch;
    return evaluateCondition(node, record, scratch);
}

} // namespace dbase
