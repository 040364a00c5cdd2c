// Tables that end before the last record their header announces: truncated ones, and copies still under way.
//
// Opening such a table keeps its complete records and makes the header agree with them. That is
// right where a writer died; but an administrator who only asks may still have a complete copy.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "loading/failure.h"

namespace ambcp {

/// A table that must not be touched before somebody has looked at it; the program then ends with exit
/// code 1.
class DamagedTable : public loading::Failure {
public:
    using loading::Failure::Failure;
};

struct Shortfall {
    std::uint32_t announced = 0; // number of records in the header
    std::uint32_t held = 0;      // complete records in the file
};

/// The records that a table lacks; null when it lacks none, or a record is being added right now. Changes
/// nothing. Errors: dbase::Error.
[[nodiscard]] std::optional<Shortfall> shortfallOf(const std::string& tableFile);

/// Number of complete records that count. Errors: dbase::Error.
[[nodiscard]] std::uint32_t recordsIn(const std::string& tableFile);

/// Says what is wrong and what to do, without the file's name.
[[nodiscard]] std::string describe(const Shortfall& shortfall);

/// Called before a table is opened for a question or to add rows. Errors: DamagedTable for a truncated one,
/// unless the journal beside it shows that our programs left it so: it began with no more records than there
/// are; dbase::Error.
void requireWhole(const std::string& tableFile);

} // namespace ambcp
