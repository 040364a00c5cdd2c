// The tables that an order creates because there are none yet.
#pragma once

#include <string>
#include <vector>

namespace ambcp {

/// The five tables, without municipalities and streets. They are removed again, and the folder if it was
/// missing, unless they are kept; those that somebody uses or has filled meanwhile stay.
class CreatedTables {
public:
    /// Errors: those of createTablesForStreets().
    explicit CreatedTables(std::string folder);
    ~CreatedTables();
    CreatedTables(const CreatedTables&) = delete;
    CreatedTables& operator=(const CreatedTables&) = delete;

    void keep() { isKept_ = true; }

private:
    std::string folder_;
    std::vector<std::string> missingFolders_; // the innermost first
    bool isKept_ = false;
};

} // namespace ambcp
