// The difference between the streets of an edition and the rows of POSTAL.
#pragma once

#include <string>
#include <vector>

#include "directory/LoadTally.h"
#include "directory/RowsInOrder.h"
#include "directory/StoredStreets.h"
#include "directory/TableChanges.h"

namespace ambrel::directory {

/// Takes the streets of an edition in their order. Rows that an edition brought, and that nobody has touched
/// since, follow the office; all others stay, and are reported where the office has something else.
class StreetDifference {
public:
    /// All of it must outlive this object.
    StreetDifference(const Edition& edition, const EarlierEdition& earlier, StoredStreets& stored,
                     const StoredTables& tables, TableChanges& changes, LoadTally& tally);

    void compare(const OfficialStreet& street);
    /// After the last street.
    void finish() { passBy(~StreetId{}); }

private:
    using Row = std::vector<char>;
    /// A row of the users.
    struct OwnRow {
        Row row;
        Bounds bounds; // of their sides
    };

    class Provenance;

    void passBy(StreetId before);
    void compareRows(const OfficialStreet& street, std::span<const EarlierRow> earlier);
    [[nodiscard]] std::span<const EarlierRow> earlierOf(StreetId street);
    [[nodiscard]] std::vector<std::optional<std::size_t>>
    matchesOf(const OfficialStreet& street, std::span<const EarlierRow> earlier) const;

    void come(const OfficialStreet& street, const JoinedStretch& row);
    void goOn(const OfficialStreet& street, const JoinedStretch& row, const EarlierRow& earlier);
    void follow(const OfficialStreet& street, const JoinedStretch& row, const EarlierRow& earlier,
                Fingerprint print);
    [[nodiscard]] Fingerprint printOf(const OfficialStreet& street, const JoinedStretch& row,
                                      const EarlierRow& earlier);
    void goAway(const EarlierRow& earlier);
    void change(const OfficialStreet& street, const JoinedStretch& row, const EarlierRow& earlier);
    void stayChanged(const OfficialStreet& street, const JoinedStretch& row, const EarlierRow& earlier,
                     Fingerprint print);
    [[nodiscard]] bool isSameStreet(const OfficialStreet& street, const Row& own) const;
    [[nodiscard]] std::vector<OwnRow> ownRows(const OfficialStreet& street, const Bounds& bounds) const;
    [[nodiscard]] bool overlapsOwn(const OfficialStreet& street, const JoinedStretch& row);
    [[nodiscard]] JoinedStretch besideOwn(const OfficialStreet& street, const JoinedStretch& row,
                                          const EarlierRow& earlier);

    Fingerprint add(const OfficialStreet& street, const JoinedStretch& row, std::uint32_t key);
    void addProvenance(const OfficialStreet& street, const JoinedStretch& row, std::uint32_t key,
                       Fingerprint print);
    void renewProvenance(const OfficialStreet& street, const JoinedStretch& row, const EarlierRow& earlier,
                         Fingerprint print);
    void report(ConflictKind kind, const OfficialStreet& street, std::uint32_t key, const Row& ours,
                const std::string& official);

    const Edition& edition_;
    std::span<const EarlierRow> left_; // not passed by yet
    StoredStreets& stored_;
    StoredTables tables_;
    TableChanges& changes_;
    LoadTally& tally_;
    RowsInOrder rows_; // of POSTAL
    StreetRecord streetRecord_;
    ProvenanceRecord provenanceRecord_;
};

} // namespace ambrel::directory
