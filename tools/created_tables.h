// The tables that an order creates because they are missing.
#pragma once

#include <string>
#include <vector>

namespace ambcp {

/// Those of the five tables that were missing, without municipalities and streets; provinces and street types
/// are the country's. They are removed again, and the folder if it was missing, unless they are kept or
/// somebody has filled one meanwhile.
class CreatedTables {
public:
    /// A stop in the middle leaves some of them, and the next one creates the others. Errors: dbase::Error,
    /// Failure.
    explicit CreatedTables(std::string folder);
    ~CreatedTables();
    CreatedTables(const CreatedTables&) = delete;
    CreatedTables& operator=(const CreatedTables&) = delete;

    void keep() { isKept_ = true; }

private:
    void create();
    void createIfMissing(const std::string& name);
    void remove() noexcept;

    std::string folder_;
    std::vector<std::string> missingFolders_; // the innermost first
    std::vector<std::string> created_;        // names of tables
    bool isKept_ = false;
};

} // namespace ambcp
