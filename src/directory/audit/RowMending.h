// The one right repair of a row, where there is one.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "directory/audit/Finding.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

/// Texts in Windows-1252, without the blanks at their end.
struct ColumnChange {
    std::string column, from, to;
};

struct MendedRow {
    std::vector<ColumnChange> changes; // each column at most once
    std::set<FindingClass> kinds;      // that are mended
};

/// What findings of these classes in a row become; nothing is changed for those without a certain repair.
[[nodiscard]] MendedRow mendStreet(const StreetRow& row, const PlaceBook& book,
                                   const std::set<FindingClass>& kinds);
[[nodiscard]] MendedRow mendMunicipality(const MunicipalityRow& row, const PlaceBook& book,
                                         const std::set<FindingClass>& kinds);

} // namespace ambrel::directory
