// Tables with the streets of invented towns, and the towns themselves.
#pragma once

#include <string>
#include <vector>

#include "suggest_names.h"

namespace bench {

/// The directory of one size. Each street is one stretch, open at its end.
struct TownDirectory {
    std::string database; // the name under which its folder is registered
    std::vector<SuggestTown> towns;

    TownDirectory(std::string name, std::uint32_t rows, std::uint32_t count);

    /// As many streets as other tables have rows, in 12,700 towns; created at the first call.
    static const TownDirectory& large();
    static const TownDirectory& small();

    [[nodiscard]] const SuggestTown& largest() const;

private:
    void loadTowns(const std::string& folder) const;
    void loadStreets(const std::string& folder) const;
};

} // namespace bench
