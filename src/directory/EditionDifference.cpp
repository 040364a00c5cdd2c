// Places first: streets name their municipalities as MUNICIPI does.
#include "directory/EditionDifference.h"

#include "directory/EditionLosses.h"
#include "directory/LoadTally.h"
#include "directory/PlaceDifference.h"
#include "directory/StreetDifference.h"

namespace ambrel::directory {

LoadSummary compareEdition(Edition& edition, RangeOpening opening, const std::vector<StreetTypeRow>& types,
                           const StoredTables& tables, StoredState& state, TableChanges& changes,
                           const LoadObserver& observer) {
    LoadSummary summary;
    LoadTally tally(summary, observer);
    const EarlierEdition& earlier = state.earlier;
    summary.previousEdition = earlier.date;
    summary.isOlder = !edition.date().empty() && edition.date() < earlier.date;
    PlaceDifference(edition, earlier, state.places, tables, changes, tally).compare();
    StreetDifference difference(edition, earlier, state.streets, tables, changes, tally);
    StreetTypeCodes codes(types);
    edition.forEachStreet(opening, codes, [&](const OfficialStreet& street) {
        summary.streetRows += street.rows.size();
        summary.shortenedNames += street.wholeName.empty() ? 0 : street.rows.size();
        for (const JoinedStretch& row : street.rows) {
            summary.openedRows += row.opened != JoinedStretch().opened ? 1 : 0;
        }
        difference.compare(street);
    });
    difference.finish();
    summary.unknownTypes = codes.unknown();
    summary.unlikelyLosses = unlikelyLosses(edition, earlier, summary);
    return summary;
}

} // namespace ambrel::directory
