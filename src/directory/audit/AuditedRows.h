// The rows of MUNICIPI and POSTAL one by one, while others may change them. Errors of all: dbase::Error.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "directory/audit/Finding.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

/// Reads the rows of MUNICIPI that are not deleted.
[[nodiscard]] PlaceBook readPlaces(const std::string& database);

/// Calls a function with every row of a table, in the order of a tag; empty for that of the records.
void forEachMunicipality(const std::string& database,
                         const std::function<void(const MunicipalityRow&)>& visit);
void forEachStreet(const std::string& database, const std::string& tag,
                   const std::function<void(const StreetRow&)>& visit);

/// Of a table, deleted ones included.
[[nodiscard]] std::uint64_t recordCount(const std::string& database, AuditedTable table);

} // namespace ambrel::directory
