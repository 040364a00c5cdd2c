// The difference between the places of an edition and the rows of MUNICIPI.
#pragma once

#include <string>
#include <vector>

#include "directory/LoadTally.h"
#include "directory/StoredPlaces.h"
#include "directory/TableChanges.h"

namespace ambrel::directory {

/// Takes all places of an edition at once. Rows that an edition brought, and that nobody has touched since,
/// follow the office; all others stay. A municipality that only the users have is theirs as a whole.
class PlaceDifference {
public:
    /// All of it must outlive this object.
    PlaceDifference(Edition& edition, const EarlierEdition& earlier, const std::vector<StoredPlace>& stored,
                    const StoredTables& tables, TableChanges& changes, LoadTally& tally);

    /// From now on the edition's streets name each municipality as MUNICIPI does afterwards.
    void compare();

private:
    using Rows = std::span<const PlaceRow>;
    using Earlier = std::span<const EarlierPlace>;
    using Stored = std::span<const StoredPlace>;

    void comparePlace(Rows rows, Earlier earlier, Stored stored);
    void keepUnitNames();
    void come(const PlaceRow& row, Stored stored);
    void goOn(const PlaceRow& row, const EarlierPlace& earlier);
    void goAway(const EarlierPlace& earlier);
    void compareOwn(Rows rows, Stored stored);
    void change(const PlaceRow& row, const EarlierPlace& earlier);
    void stayChanged(const PlaceRow& row, const EarlierPlace& earlier, Fingerprint print);
    Fingerprint add(const PlaceRow& row);
    void putProvenance(const PlaceRow& row, Fingerprint print, dbase::RecordNumber number);
    void report(ConflictKind kind, const OfficialPlaceKey& official, std::string_view name,
                const std::string& ours, const std::string& theirs);

    Edition& edition_;
    const EarlierEdition& earlier_;
    const std::vector<StoredPlace>& stored_;
    StoredTables tables_;
    TableChanges& changes_;
    LoadTally& tally_;
    PlaceRecord placeRecord_;
    ProvenanceRecord provenanceRecord_;
};

} // namespace ambrel::directory
