// Moves on to the next rows, and elsewhere only after several that are not among them.
#include "directory/RowsInOrder.h"

namespace ambrel::directory {
namespace {

constexpr dbase::RecordNumber rowsAtATime = 512;
/// Rows that were added later stand at the end of the table, far from those of their neighbours.
constexpr int mostOutOfOrder = 8;

} // namespace

RowsInOrder::RowsInOrder(const StoredRows& table)
    : table_(table), bytes_(rowsAtATime * table.schema().recordLength) {}

std::span<const char> RowsInOrder::find(dbase::RecordNumber number) {
    if (number < first_ || number >= first_ + count_) {
        if (number != first_ + count_ && ++outOfOrder_ <= mostOutOfOrder) {
            return {};
        }
        first_ = number;
        count_ = table_.readFrom(number, bytes_);
        if (count_ == 0) {
            return {};
        }
    }
    outOfOrder_ = 0;
    const std::size_t length = table_.schema().recordLength;
    const std::span<const char> row = std::span(bytes_).subspan((number - first_) * length, length);
    return row.front() == dbase::deletedMark ? std::span<const char>() : row;
}

} // namespace ambrel::directory
