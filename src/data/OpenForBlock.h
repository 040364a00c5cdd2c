// A table that is open for as long as a block runs.
#pragma once

#include "dbase/dataset.h"

namespace ambrel {

/// Opens a closed table, and closes it at the end of the block, also when the block fails. Errors: those of
/// opening.
class OpenForBlock {
public:
    explicit OpenForBlock(dbase::Dataset& table) : table_(table) { table_.open(); }
    ~OpenForBlock() { table_.close(); }
    OpenForBlock(const OpenForBlock&) = delete;
    OpenForBlock& operator=(const OpenForBlock&) = delete;

private:
    dbase::Dataset& table_;
};

} // namespace ambrel
