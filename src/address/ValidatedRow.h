// One row of many that are validated, as those who follow them see it.
#pragma once

#include <cstdint>

#include "address/JudgedAddress.h"

namespace ambrel {

/// Valid only while it is being handed over.
struct ValidatedRow {
    std::uint64_t number; // from 1; headings and empty lines do not count
    std::uint64_t line;   // where it begins in the file, from 1; 0 if rows are not lines
    const GivenAddress& given;
    const JudgedAddress& judged;
};

} // namespace ambrel
