// The one right repair of a row, where there is one.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
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

/// Names of municipalities that are repaired in MUNICIPI: the columns that repeat them have to follow, or
/// nobody could tell any more that they name the same place.
class NameRepairs {
public:
    struct Repair {
        std::string from, to; // NOMBRE as it stands; what the copy becomes
        std::set<FindingClass> kinds;
    };

    /// Notes what becomes of NOMBRE of a row, if anything.
    void note(const MunicipalityRow& row, const PlaceBook& book, const std::set<FindingClass>& kinds);
    [[nodiscard]] bool isEmpty() const { return repairs_.empty(); }
    /// What becomes of a name, or of what a column of some width holds of it; null if nothing does.
    [[nodiscard]] std::optional<Repair> of(PlaceNumber place, std::string_view copy, std::size_t width) const;

private:
    std::map<std::pair<PlaceNumber, std::string>, Repair> repairs_; // by the name as it stands
};

/// What findings of these classes in a row become; nothing is changed for those without a certain repair.
[[nodiscard]] MendedRow mendStreet(const StreetRow& row, const PlaceBook& book,
                                   const std::set<FindingClass>& kinds);
[[nodiscard]] MendedRow mendMunicipality(const MunicipalityRow& row, const PlaceBook& book,
                                         const std::set<FindingClass>& kinds);

} // namespace ambrel::directory
