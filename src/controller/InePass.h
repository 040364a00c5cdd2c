// The maintenance pass that writes municipality and INE code into the streets, by their postal code.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace ambrel {

enum class InePassRows {
    All,
    WithoutData, // only those where both MUNICIPI and COD_INE are blank
};

/// Told now and then, between two changes: records of POSTAL that are done, of how many.
using InePassProgress = std::function<void(std::uint32_t done, std::uint32_t total)>;

/// What became of the streets.
struct InePassCount {
    std::uint32_t filled = 0; // that have their municipality and code from the pass
    std::uint32_t inUse = 0;  // that would have, but are held by somebody and stay as they were
};

/// Gives each street the first municipality, minor entities aside, with its postal code; where there are only
/// minor entities, a street without code gets the one that has its name. Streets that nothing is found for,
/// and those that another user holds, stay as they are. Opens POSTAL and MUNICIPI of a database for the time
/// of the pass, and waits once for the disk, at its end, where Config.AsegurarEnDisco asks for it. Errors:
/// dbase::Error for tables that cannot be opened or written.
InePassCount fillIneCodes(const std::string& database, InePassRows rows, const InePassProgress& progress);

} // namespace ambrel
