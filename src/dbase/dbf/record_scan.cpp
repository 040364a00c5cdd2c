// Reads all records in pieces of a megabyte.
#include "dbase/dbf/record_scan.h"

#include <algorithm>

namespace dbase {

namespace {
constexpr std::size_t pieceBytes = std::size_t{1} << 20;
}

RecordScan::RecordScan(const TableFile& records) : records_(records), count_(records.recordCount()) {}

const RecordView* RecordScan::next() {
    if (read_ == count_) {
        return nullptr;
    }
    const std::size_t length = records_.schema().recordLength;
    if (at_ == piece_.size()) {
        const std::size_t rows =
            std::min<std::size_t>(count_ - read_, std::max<std::size_t>(pieceBytes / length, 1));
        piece_.resize(rows * length);
        records_.file().read(records_.offsetOf(read_ + 1), piece_);
        at_ = 0;
    }
    current_ = {&records_.schema(), {piece_.data() + at_, length}, ++read_};
    at_ += length;
    return &current_;
}

} // namespace dbase
