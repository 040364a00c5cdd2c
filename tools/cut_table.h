// Tables that end before the last record their header announces: cut ones, and copies still under way.
//
// Whoever opens such a table goes on with its complete records and makes the header agree with them. That is
// right where a writer died; but an administrator who only asks may still have a copy with all of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "loading/failure.h"

namespace ambcp {

/// A table that is not to be touched before somebody has looked after it; the program then ends with exit
/// code 1.
class DamagedTable : public loading::Failure {
public:
    using loading::Failure::Failure;
};

struct Shortfall {
    std::uint32_t announced = 0; // records that the header tells of
    std::uint32_t held = 0;      // complete ones in the file
};

/// What a table lacks; null when it lacks nothing, or somebody is adding a record right now. Changes nothing.
/// Errors: dbase::Error.
[[nodiscard]] std::optional<Shortfall> shortfallOf(const std::string& tableFile);

/// Complete records that count. Errors: dbase::Error.
[[nodiscard]] std::uint32_t recordsIn(const std::string& tableFile);

/// Says what is wrong and what to do, without the file's name.
[[nodiscard]] std::string describe(const Shortfall& shortfall);

/// Comes before a table is opened for a question or to take more rows. Errors: DamagedTable for a cut one,
/// save where the journal beside it tells that one of our programs left it so; dbase::Error.
void requireWhole(const std::string& tableFile);

} // namespace ambcp
