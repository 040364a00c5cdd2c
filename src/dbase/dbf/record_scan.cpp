// Reads all records in pieces of a megabyte.
#include "dbase/dbf/record_scan.h"

#include <algorithm>

namespace dbase {

namespace {
constexpr std::size_t bytesAtOnce = std::size_t{1} << 20;
}

const RecordView* RecordScan::next() {
    if (read_ == which_.count) {
        return nullptr;
    }
    const std::size_t length = records_.schema().recordLength;
    if (at_ == piece_.size()) {
        const std::size_t rows =
            std::min<std::size_t>(which_.count - read_, std::max<std::size_t>(bytesAtOnce / length, 1));
        piece_.resize(rows * length);
        records_.file().read(records_.offsetOf(read_ + 1), piece_);
        if (which_.marked > read_ && which_.marked <= read_ + rows) {
            piece_[(which_.marked - read_ - 1) * length] = which_.mark;
        }
        at_ = 0;
    }
    current_ = {&records_.schema(), {piece_.data() + at_, length}, ++read_};
    at_ += length;
    return &current_;
}

} // namespace dbase
