// Reads MUNICIPI, and finds the rows that an edition brought.
#include "directory/StoredPlaces.h"

#include <algorithm>

#include "data/TableDefinitions.h"
#include "directory/DirectoryRecords.h"
#include "directory/FixedLine.h"

namespace ambrel::directory {
namespace {

/// Rows that an edition brought find their stored ones among those of one municipality.
void findEarlier(std::span<EarlierPlace> earlier, std::span<StoredPlace> stored) {
    const auto find = [&](RowState state, const auto& isSame) {
        for (EarlierPlace& one : earlier) {
            const auto found = std::ranges::find_if(stored, [&](const StoredPlace& row) {
                return one.record == 0 && !row.isOfEdition && isSame(one, row);
            });
            if (found != stored.end()) {
                one.record = found->record;
                one.state = state;
                found->isOfEdition = true;
            }
        }
    };
    find(RowState::Untouched,
         [](const EarlierPlace& one, const StoredPlace& row) { return one.fingerprint == row.fingerprint; });
    find(RowState::Changed, [](const EarlierPlace& one, const StoredPlace& row) {
        return one.official.isEntity == row.isEntity &&
               one.name == std::string_view(row.name).substr(0, provenanceNameWidth);
    });
    find(RowState::Changed, [](const EarlierPlace& one, const StoredPlace& row) {
        return one.official.isEntity == row.isEntity && one.official.postalCode == row.postalCode;
    });
}

} // namespace

std::vector<StoredPlace> readStoredPlaces(const StoredRows& table, EarlierEdition& earlier) {
    std::vector<StoredPlace> stored;
    const PlaceRecord record(table.schema());
    bool isEmpty = true;
    table.forEach([&](dbase::RecordNumber number, std::span<const char> bytes) {
        isEmpty = false;
        const std::string_view code = record.postalCode(bytes);
        if (const auto place = record.place(bytes)) {
            stored.push_back({.record = number,
                              .place = *place,
                              .isEntity = record.isEntity(bytes),
                              .hasOneCode = record.hasOneCode(bytes),
                              .postalCode = FixedLine(code).number(1, 5).value_or(0),
                              .name = std::string(record.name(bytes)),
                              .fingerprint = record.fingerprint(bytes)});
        }
    });
    std::ranges::stable_sort(stored, {}, &StoredPlace::place);
    const auto placeOfEarlier = [](const EarlierPlace& row) { return row.official.place; };
    for (std::span<EarlierPlace> left = earlier.places; !left.empty();) {
        const PlaceCode place = placeOfEarlier(left.front());
        const auto first = std::ranges::lower_bound(stored, place, {}, &StoredPlace::place);
        const auto last = std::ranges::upper_bound(stored, place, {}, &StoredPlace::place);
        const auto end = std::ranges::upper_bound(left, place, {}, placeOfEarlier);
        const auto size = static_cast<std::size_t>(end - left.begin());
        findEarlier(left.first(size), {first, last});
        left = left.subspan(size);
    }
    for (EarlierPlace& one : earlier.places) {
        one.state = isEmpty ? RowState::Lost : one.state;
    }
    return stored;
}

} // namespace ambrel::directory
