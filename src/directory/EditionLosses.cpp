// Compares what goes with what there was.
#include "directory/EditionLosses.h"

#include <algorithm>
#include <array>

#include "directory/LeadingZeros.h"

namespace ambrel::directory {
namespace {

/// More than a tenth, where a tenth is more than a village.
bool isUnlikely(std::uint64_t goes, std::uint64_t present) { return goes > 50 && goes * 10 > present; }

std::string lineOf(const std::string& where, std::uint64_t goes, std::uint64_t present) {
    return where + ": se irían " + std::to_string(goes) + " filas de las " + std::to_string(present) +
           " que trajo una edición\n";
}

} // namespace

std::string unlikelyLosses(const Edition& edition, const EarlierEdition& earlier,
                           const LoadSummary& summary) {
    struct Province {
        std::uint64_t present = 0, goes = 0;
    };
    std::array<Province, 100> provinces{};
    for (const EarlierRow& row : earlier.streets) {
        const bool isThere = row.state == RowState::Untouched && edition.speaksOf(row.street);
        provinces.at(placeOf(row.street) / 1000).present += isThere ? 1 : 0;
    }
    for (const auto& [place, municipality] : summary.byMunicipality) {
        provinces.at(place / 1000).goes += municipality.goes;
    }
    std::string text;
    for (std::uint32_t number = 0; number < provinces.size(); ++number) {
        if (const Province& one = provinces.at(number); isUnlikely(one.goes, one.present)) {
            text += lineOf("POSTAL, provincia " + digits(number, 2), one.goes, one.present);
        }
    }
    const auto places =
        static_cast<std::uint64_t>(std::ranges::count_if(earlier.places, [&](const EarlierPlace& row) {
            return row.state == RowState::Untouched && edition.speaksOf(row.official.place);
        }));
    if (isUnlikely(summary.municipalities.goes, places)) {
        text += lineOf("MUNICIPI", summary.municipalities.goes, places);
    }
    return text;
}

} // namespace ambrel::directory
