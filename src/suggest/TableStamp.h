// Whether a table has changed since it was read.
#pragma once

#include <cstdint>

#include "dbase/dataset/dataset.h"
#include "dbase/table/table.h"

namespace ambrel::suggest {

/// Differs after every change by one of our programs, and after most changes by others.
struct TableStamp {
    std::uint64_t counter = 0;
    std::uint32_t records = 0;

    static TableStamp of(const dbase::Dataset& table) {
        const dbase::Table& open = table.openTable();
        return {open.changeCounter(), open.records().recordCount()};
    }
    friend bool operator==(const TableStamp&, const TableStamp&) = default;
};

} // namespace ambrel::suggest
