// Whole addresses in SQLite: what a program of its own would look up to find the same.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sqlite_postal.h"
#include "town_directory.h"

namespace bench {

/// An address that was found.
struct SqliteAddress {
    std::string ineCode, type, street, postalCode; // no code if it is not certain
};

/// The towns' rows of both tables with an index for each look-up, read in one transaction.
class SqliteTowns {
public:
    explicit SqliteTowns(const TownDirectory& directory);

    /// Those of the large directory, loaded at the first call.
    static SqliteTowns& large();

    /// The municipality with a name in a province; several codes if there are namesakes.
    [[nodiscard]] std::vector<std::string> municipalities(std::string_view name, std::string_view province);
    /// By the rules for whose street it is and which stretch holds the number.
    [[nodiscard]] SqliteAddress address(const std::string& ineCode, std::string_view type,
                                        std::string_view street, int number);

private:
    void load(const TownDirectory& directory);

    Database database_;
    Statement byName_, codes_, stretches_;
};

} // namespace bench
