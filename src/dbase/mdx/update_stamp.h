// The stamp that our writers leave in unused bytes of the .MDX header; see docs/formats.md.
#pragma once

#include <array>
#include <cstdint>

#include "dbase/mdx/index_layout.h"

namespace dbase {

struct UpdateStamp {
    bool present = false;      // false in an index that only other programs have written
    bool inUpdate = false;     // a writer is at work, or died during the update
    std::uint32_t records = 0; // records that the tags cover
    std::uint64_t counter = 0; // incremented at the start and end of every update; odd in between
    std::uint64_t session = 0; // of the journal begun last beside this index; 0: none
    /// Of an update that changes the table where it is: its rows may be those of before and of afterwards.
    bool isHalfChanged = false;

    /// The stamp of an update that starts from this one and ends with the tags covering `covered` records. If
    /// a writer died, the update counts as that writer's, started again.
    [[nodiscard]] UpdateStamp begun(std::uint32_t covered) const {
        return {true, true, covered, counter - counter % 2 + 1, session};
    }
    /// The stamp at the end of such an update.
    [[nodiscard]] UpdateStamp ended(std::uint32_t covered) const {
        return {true, false, covered, counter - counter % 2 + 2, session};
    }
};

using StampBytes = std::array<char, mdx::stampSize>;

[[nodiscard]] UpdateStamp decodeStamp(const StampBytes& bytes);
[[nodiscard]] StampBytes encodeStamp(const UpdateStamp& stamp);

} // namespace dbase
