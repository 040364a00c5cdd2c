// The maintenance pass that writes municipality and INE code into the streets, based on their postal code.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace ambrel {

enum class InePassRows {
    All,
    WithoutData, // only those with both MUNICIPI and COD_INE blank
};

/// Called now and then, between two changes, with the number of POSTAL records done and their total.
using InePassProgress = std::function<void(std::uint32_t done, std::uint32_t total)>;

/// Outcome of the pass.
struct InePassCount {
    std::uint32_t filled = 0; // received their municipality and code from the pass
    std::uint32_t inUse = 0;  // would have, but are held by another user and stay as they were
};

/// Gives each street the first municipality with its postal code that is not a minor entity; if there are
/// only minor entities, a street without a code gets the one with its name. Streets for which nothing
/// is found, and those held by another user, stay as they are. Opens POSTAL and MUNICIPI of a database for
/// the duration of the pass, and waits for the disk once, at the end, if Config.AsegurarEnDisco requires it.
/// Errors: dbase::Error for tables that cannot be opened or written.
InePassCount fillIneCodes(const std::string& database, InePassRows rows, const InePassProgress& progress);

} // namespace ambrel
