// What our writers leave in bytes of the .MDX header that the format does not use; see docs/formats.md.
#pragma once

#include <array>
#include <cstdint>

#include "dbase/mdx/index_layout.h"

namespace dbase {

struct UpdateStamp {
    bool present = false;      // false in an index that only other programs wrote
    bool inUpdate = false;     // a writer is at work, or died at it
    std::uint32_t records = 0; // records that the tags cover
    std::uint64_t counter = 0; // one more at the begin and at the end of every update; odd in between

    /// The stamp of an update that begins at this one, the tags covering so many records at its end. Where a
    /// writer died the update is taken for his, begun anew.
    [[nodiscard]] UpdateStamp begun(std::uint32_t covered) const {
        return {true, true, covered, counter - counter % 2 + 1};
    }
    /// The stamp at the end of such an update.
    [[nodiscard]] UpdateStamp ended(std::uint32_t covered) const {
        return {true, false, covered, counter - counter % 2 + 2};
    }
};

using StampBytes = std::array<char, mdx::stampSize>;

[[nodiscard]] UpdateStamp decodeStamp(const StampBytes& bytes);
[[nodiscard]] StampBytes encodeStamp(const UpdateStamp& stamp);

} // namespace dbase
