// The stretches of one street as rows of POSTAL.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "directory/EditionFiles.h"
#include "directory/Records.h"

namespace ambrel::directory {

/// Observed numbers of one side, or a stretch without numbers.
struct ObservedStretch {
    std::uint32_t postalCode = 0;
    Numbering numbering = Numbering::None;
    std::uint16_t first = 0, last = 0;
    std::uint32_t line = 0; // of its file
};

/// A row of POSTAL. A side without numbers has 0 and 0.
struct JoinedStretch {
    std::uint32_t postalCode = 0;
    std::array<std::uint16_t, 4> bounds{}; // IMPAR_INI, IMPAR_FIN, PAR_INI, PAR_FIN
    std::array<RangeOpening, 4> opened{};  // what moved each of the bounds
    std::array<bool, 4> cut{};             // those before a row of the users
    std::uint16_t ordinal = 0;             // from 0, among those of its code
    std::uint32_t line = 0;                // the first of the lines that it comes from

    friend bool operator==(const JoinedStretch&, const JoinedStretch&) = default;
};

/// Joins the stretches of one street, whose order changes. Runs of one side and code become one range if no
/// other code lies between them; the first odd range of a code stands beside its first even one, and so on. A
/// street without any numbers is open; where only some stretches have none, those add a row only if their
/// code has no other, and no number finds it. Rows come by postal code.
void joinStretches(std::span<ObservedStretch> stretches, RangeOpening opening,
                   std::vector<JoinedStretch>& rows);

} // namespace ambrel::directory
