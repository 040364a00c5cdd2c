// Any bytes as the header of a table.
#include <span>

#include "Trial.h"
#include "dbase/dbf/table_header.h"
#include "dbase/system/error.h"

namespace {

using namespace dbase;
using trial::require;

/// What every reader of records relies on.
void checkLayout(const Schema& schema, std::size_t available) {
    require(schema.headerLength <= available);
    std::size_t end = 1;
    for (const Column& column : schema.columns) {
        require(column.offset == end && column.width > 0 && !column.name.empty());
        require(&schema.columns[schema.find(column.name).value()] == &column);
        end += column.width;
    }
    require(end == schema.recordLength);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const std::vector<char> bytes(data, data + size);
        HeaderCounts counts;
        const Schema schema = decodeHeader(bytes, counts, "T.DBF");
        checkLayout(schema, size);
        HeaderCounts again;
        const Schema copy = decodeHeader(encodeHeader(schema, counts), again, "T.DBF");
        require(copy.columns.size() == schema.columns.size() && again.records == counts.records);
    } catch (const Error& error) {
        require(error.code() == ErrorCode::BadTable);
    }
    return 0;
}
