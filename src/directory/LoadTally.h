// Counts what a load does, and passes it on to what follows the load.
#pragma once

#include "directory/DirectoryChange.h"

namespace ambrel::directory {

class LoadTally {
public:
    LoadTally(LoadSummary& summary, const LoadObserver& observer) : summary_(summary), observer_(observer) {}

    void change(const DirectoryChange& change);
    void conflict(const DirectoryConflict& conflict);
    /// A row of the edition is not taken, or not with all its numbers, because of one of the users'.
    void keep() { ++summary_.kept; }

private:
    [[nodiscard]] MunicipalitySummary& municipality(PlaceCode place, std::string_view name);

    LoadSummary& summary_;
    const LoadObserver& observer_;
};

} // namespace ambrel::directory
