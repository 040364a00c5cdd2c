// The rival of suggestions: SQLite's trigram index over the streets of all towns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sqlite_postal.h"
#include "town_directory.h"

namespace bench {

/// 100 candidates of a town by trigrams in common, ordered by slips.
class TrigramIndex {
public:
    explicit TrigramIndex(const TownDirectory& directory);

    /// That of the large directory, created at the first call.
    static TrigramIndex& large();

    /// The five names of a town, by its place in the directory, that are nearest to a text.
    [[nodiscard]] std::vector<std::string> nearest(std::uint32_t town, const std::string& typed);

private:
    Database database_;
    Statement select_;
    std::vector<std::int64_t> first_; // row of each town, and the one after the last
};

} // namespace bench
