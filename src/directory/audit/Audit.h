// The content of MUNICIPI and POSTAL, audited in one pass over each.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "AmbrelExport.h"
#include "directory/audit/Finding.h"

namespace ambrel::directory {

/// The streets of a province, by what is known of them.
struct AMBREL_EXPORT ProvinceCount {
    std::uint64_t municipalities = 0, withStreets = 0;
    std::uint64_t streets = 0, withCode = 0, withRanges = 0;
    std::uint64_t withFindings = 0; // streets; notes do not count
    ProvinceCount& operator+=(const ProvinceCount& other);
};

/// What an audit has counted.
struct AMBREL_EXPORT AuditTotals {
    std::uint64_t municipalityRows = 0, streetRows = 0;
    std::array<std::uint64_t, findingClassCount> findings{}; // by class
    std::map<std::string, ProvinceCount> provinces;          // by two digits
    std::uint64_t streets = 0, hiddenStreets = 0;
    std::uint64_t userKeys = 0; // in the block "99"
    std::string highestUserKey; // empty if there are none
    /// Above the highest one, before the block is full.
    [[nodiscard]] std::uint64_t keysLeft() const;
    [[nodiscard]] std::uint64_t all() const;
};

/// Rows read so far, and all of them.
using AuditProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

/// Gives each finding to a function; others may use the tables meanwhile. Memory: MUNICIPI, the longest
/// street, and 12 bytes for each row of POSTAL. `database`: as hosts call it. Errors: dbase::Error; what the
/// functions throw, which ends the audit.
AMBREL_EXPORT AuditTotals auditTables(const std::string& database, const FindingSink& sink,
                                      const AuditProgress& progress = {});

} // namespace ambrel::directory
