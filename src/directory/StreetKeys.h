// Keys of POSTAL for the rows of the official directory.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "directory/Records.h"

namespace ambrel::directory {

/// Gives out `CODIGO1`: the municipality's province and six digits, never one in use, and never of the block
/// "99" that users' own streets have. A key that was given up is not given out again as long as there are
/// others: hosts may have stored it.
class StreetKeys {
public:
    /// A key that a row has already, whatever it is; it is not given out again.
    void addUsed(std::uint32_t key);
    /// The key of a row that is gone.
    void addGone(std::uint32_t key);
    /// The key of a row of a municipality. Errors: loading::Failure when its province has no free one.
    [[nodiscard]] std::uint32_t next(PlaceCode place);

private:
    bool raise(std::uint32_t key);

    std::vector<bool> used_;                     // by key; as long as the highest one that is used
    std::array<std::uint32_t, 53> highest_ = {}; // six digits, by province
    std::array<std::uint32_t, 53> tried_ = {};   // the same, once those above the highest have run out
};

} // namespace ambrel::directory
