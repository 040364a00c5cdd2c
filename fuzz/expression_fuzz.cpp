// Any text as an expression of either dialect, evaluated on any record.
#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "Trial.h"
#include "dbase/dbf/table_header.h"
#include "dbase/expression/expression.h"
#include "dbase/mdx/key.h"
#include "dbase/system/error.h"

namespace {

using namespace dbase;
using trial::require;

Schema makeSchema(std::uint8_t languageDriver) {
    Schema schema;
    schema.columns = {{"C", ColumnType::Character, 5, 0, 0},
                      {"D", ColumnType::Date, 8, 0, 0},
                      {"L", ColumnType::Logical, 1, 0, 0},
                      {"N", ColumnType::Numeric, 8, 2, 0},
                      {"T", ColumnType::Character, 254, 0, 0}};
    schema.languageDriver = languageDriver;
    completeLayout(schema, {});
    return schema;
}

void evaluate(const Expression& expression, const RecordView& record) {
    const Value value = expression.evaluate(record);
    require(value.type == expression.type());
    require(value.type != ValueType::Text || value.text.size() == expression.width());
    require(value.type != ValueType::Logical || value.logical == expression.test(record));
    require(expression.coveredWidth(std::vector<bool>(record.schema->columns.size())) <= expression.width());

    std::string key(maxKeyLength, '\0');
    encodeKey(value, KeyType::Character, key);
    encodeKey(value, KeyType::Numeric, std::span(key).first(numericKeyLength));
    encodeKey(value, KeyType::Date, std::span(key).first(dateKeyLength));
}

} // namespace

/// The first byte chooses dialect and driver; the text ends at the first line feed, and the rest is the
/// record.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static const Schema plain = makeSchema(0x57), collated = makeSchema(0x59), dos = makeSchema(0x02);
    const Schema& schema = data[0] & 2 ? collated : data[0] & 4 ? dos : plain;
    const std::string input(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t end = std::min(input.find('\n'), input.size());
    std::string record = input.substr(std::min(end + 1, input.size()), schema.recordLength);
    record.resize(schema.recordLength, ' ');
    try {
        const Expression expression = Expression::parse(std::string_view(input).substr(0, end), schema,
                                                        data[0] & 1 ? Dialect::Filter : Dialect::Index);
        evaluate(expression, {&schema, record, 1});
    } catch (const Error& error) {
        require(error.code() == ErrorCode::BadExpression);
    }
    return 0;
}
