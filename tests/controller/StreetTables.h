// Test fixture: the postal tables with a few municipalities, opened as the controller opens them.
#pragma once

#include <optional>

#include "data/CodPostalesDM.h"
#include "data/PostalTables.h"

namespace postal_tests {

/// MADRID is a capital with several codes, ALPEDRETE and NAVACERRADA are towns with one; BARCELONA is in
/// another province.
class StreetTables : public PostalTables {
protected:
    StreetTables();

    /// Opens both tables and goes to a municipality. The street table is on its first row.
    TDMCodPostales& openIn(const std::string& municipality);
    /// Goes to a street row by its key.
    void goToRow(const std::string& codigo1);
    /// Key of the current street row.
    [[nodiscard]] std::string currentRow() const;

private:
    std::optional<TDMCodPostales> tables_;
};

} // namespace postal_tests
