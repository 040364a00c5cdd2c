// Goes through the municipalities one by one.
#include "directory/PlaceDifference.h"

#include <algorithm>
#include <set>

#include "data/TableDefinitions.h"
#include "directory/DirectoryRecords.h"
#include "directory/LeadingZeros.h"

namespace ambrel::directory {
namespace {

PlaceCode placeOfRow(const PlaceRow& row) { return row.official.place; }
PlaceCode placeOfEarlier(const EarlierPlace& row) { return row.official.place; }

/// Takes the rows of one place from the front of a list in the order of places.
template<typename Row, typename PlaceOfRow>
std::span<const Row> takePlace(std::span<const Row>& rows, PlaceCode place, PlaceOfRow placeOf) {
    std::size_t size = 0;
    while (size < rows.size() && std::invoke(placeOf, rows[size]) == place) {
        ++size;
    }
    const std::span<const Row> taken = rows.first(size);
    rows = rows.subspan(size);
    return taken;
}

bool isSameName(const PlaceRow& row, const EarlierPlace& earlier) {
    return row.official.isEntity == earlier.official.isEntity &&
           std::string_view(row.name).substr(0, provenanceNameWidth) == earlier.name;
}

bool isSameUnit(const OfficialPlaceKey& one, const OfficialPlaceKey& other) {
    return one.isEntity == other.isEntity && one.unit == other.unit && one.name == other.name;
}

/// For each row the earlier one that it continues, each taken once: that of its key, else of its name and
/// code, else of its unit; null for a new one. `earlier`: in the order of their keys.
std::vector<const EarlierPlace*> matchPlaces(std::span<const PlaceRow> rows,
                                             std::span<const EarlierPlace> earlier) {
    std::vector<const EarlierPlace*> matches(rows.size());
    std::vector<bool> isTaken(earlier.size());
    const auto placeIn = [&](const EarlierPlace& one) {
        return static_cast<std::size_t>(&one - earlier.data());
    };
    const auto match = [&](const auto& candidates, const auto& isSame) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto its = matches[i] == nullptr ? candidates(rows[i]) : std::span<const EarlierPlace>();
            const auto found = std::ranges::find_if(
                its, [&](const EarlierPlace& one) { return !isTaken[placeIn(one)] && isSame(rows[i], one); });
            if (found != its.end()) {
                matches[i] = &*found;
                isTaken[placeIn(*found)] = true;
            }
        }
    };
    const auto ofKey = [&](const PlaceRow& row) {
        return std::span(std::ranges::lower_bound(earlier, row.official, {}, &EarlierPlace::official),
                         std::ranges::upper_bound(earlier, row.official, {}, &EarlierPlace::official));
    };
    const auto all = [&](const PlaceRow&) { return earlier; };
    match(ofKey, [](const PlaceRow&, const EarlierPlace&) { return true; });
    match(all, [](const PlaceRow& row, const EarlierPlace& one) {
        return isSameName(row, one) && row.official.postalCode == one.official.postalCode;
    });
    match(all, [](const PlaceRow& row, const EarlierPlace& one) {
        return isSameUnit(row.official, one.official);
    });
    return matches;
}

std::string textOf(std::string_view name, std::string_view code, bool hasOneCode) {
    return std::string(name) + ' ' + std::string(code) + (hasOneCode ? ", UNICO S" : ", UNICO N");
}

std::string textOf(const PlaceRow& row) {
    return textOf(row.name, digits(row.official.postalCode, 5), row.hasOneCode);
}

std::string textOf(const std::set<std::uint32_t>& codes, bool hasOneCode) {
    std::string text;
    for (const std::uint32_t code : codes) {
        text += (text.empty() ? "" : " ") + digits(code, 5);
    }
    return textOf(text, {}, hasOneCode);
}

} // namespace

PlaceDifference::PlaceDifference(Edition& edition, const EarlierEdition& earlier,
                                 const std::vector<StoredPlace>& stored, const StoredTables& tables,
                                 TableChanges& changes, LoadTally& tally)
    : edition_(edition), earlier_(earlier), stored_(stored), tables_(tables), changes_(changes),
      tally_(tally), placeRecord_(tables.places->schema()),
      provenanceRecord_(tables.provenance != nullptr ? tables.provenance->schema() : provenanceSchema()) {}

void PlaceDifference::compare() {
    keepUnitNames();
    const std::vector<PlaceRow> all = edition_.places().rows();
    Rows rows = all;
    Earlier earlier = earlier_.places;
    Stored stored = stored_;
    while (!rows.empty() || !earlier.empty()) {
        const PlaceCode place = rows.empty() ? placeOfEarlier(earlier.front())
                                : earlier.empty()
                                    ? placeOfRow(rows.front())
                                    : std::min(placeOfEarlier(earlier.front()), placeOfRow(rows.front()));
        while (!stored.empty() && stored.front().place < place) {
            stored = stored.subspan(1);
        }
        const Rows itsRows = takePlace(rows, place, placeOfRow);
        const Earlier itsEarlier = takePlace(earlier, place, placeOfEarlier);
        const Stored itsStored = takePlace(stored, place, &StoredPlace::place);
        if (edition_.speaksOf(place)) {
            comparePlace(itsRows, itsEarlier, itsStored);
        }
    }
}

/// Where no file has the units' names in full, those that the tables have stay.
void PlaceDifference::keepUnitNames() {
    if (edition_.hasUnits()) {
        return;
    }
    for (const EarlierPlace& one : earlier_.places) {
        if (one.official.isEntity && !one.name.empty()) {
            edition_.places().setUnitName(one.official, one.name);
        }
    }
}

void PlaceDifference::comparePlace(Rows rows, Earlier earlier, Stored stored) {
    if (earlier.empty() && !stored.empty()) {
        return compareOwn(rows, stored);
    }
    const std::vector<const EarlierPlace*> matches = matchPlaces(rows, earlier);
    for (const EarlierPlace& one : earlier) {
        if (std::ranges::find(matches, &one) == matches.end()) {
            goAway(one);
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (matches[i] != nullptr) {
            goOn(rows[i], *matches[i]);
        } else {
            come(rows[i], stored);
        }
    }
}

/// A municipality of the users': stays, and names its streets. Reported where it lacks a code or says that it
/// has only one.
void PlaceDifference::compareOwn(Rows rows, Stored stored) {
    std::set<std::uint32_t> official, ours;
    bool hasOneCode = false;
    for (const PlaceRow& row : rows) {
        official.insert(row.official.postalCode);
    }
    for (const StoredPlace& one : stored) {
        ours.insert(one.postalCode);
        hasOneCode = hasOneCode || one.hasOneCode;
    }
    const auto named = std::ranges::find_if(stored, [](const StoredPlace& one) { return !one.isEntity; });
    if (rows.empty() || named == stored.end()) {
        return;
    }
    edition_.places().setMunicipality(named->place, named->name);
    if (!std::ranges::includes(ours, official) || (hasOneCode && official.size() > 1)) {
        report(ConflictKind::OwnMunicipality, rows.front().official, named->name, textOf(ours, hasOneCode),
               textOf(official, official.size() == 1));
    }
}

void PlaceDifference::come(const PlaceRow& row, Stored stored) {
    const auto own = std::ranges::find_if(stored, [&](const StoredPlace& one) {
        return !one.isOfEdition && one.postalCode == row.official.postalCode &&
               one.isEntity == row.official.isEntity && one.name == row.name;
    });
    if (own == stored.end()) {
        putProvenance(row, add(row), 0);
        return;
    }
    tally_.keep();
    if (own->hasOneCode != row.hasOneCode) {
        report(ConflictKind::OwnMunicipality, row.official, own->name,
               textOf(own->name, digits(own->postalCode, 5), own->hasOneCode), textOf(row));
    }
}

void PlaceDifference::goOn(const PlaceRow& row, const EarlierPlace& earlier) {
    const Fingerprint print = placeRecord_.fingerprint(placeRecord_.write(row));
    const bool isOther = print != earlier.fingerprint;
    switch (earlier.state) {
    case RowState::Untouched:
        if (isOther) {
            change(row, earlier);
        }
        break;
    case RowState::Changed:
        stayChanged(row, earlier, print);
        break;
    case RowState::Deleted:
        tally_.keep();
        if (isOther && earlier.fingerprint != 0) {
            report(ConflictKind::DeletedByHand, row.official, row.name, {}, textOf(row));
        }
        break;
    case RowState::Lost:
        add(row);
        break;
    }
    if (isOther || row.official != earlier.official || !isSameName(row, earlier)) {
        putProvenance(row, print, earlier.provenance);
    }
}

void PlaceDifference::stayChanged(const PlaceRow& row, const EarlierPlace& earlier, Fingerprint print) {
    const std::vector<char> current = tables_.places->row(earlier.record);
    if (current.empty() || placeRecord_.fingerprint(current) == print) {
        return;
    }
    tally_.keep();
    if (print != earlier.fingerprint) {
        report(ConflictKind::ChangedByHand, row.official, placeRecord_.name(current),
               textOf(placeRecord_.name(current), placeRecord_.postalCode(current),
                      placeRecord_.hasOneCode(current)),
               textOf(row));
    }
}

void PlaceDifference::change(const PlaceRow& row, const EarlierPlace& earlier) {
    const std::vector<char> before = tables_.places->row(earlier.record);
    if (before.empty()) {
        return; // deleted while others work beside a trial
    }
    changes_.change(DirectoryTable::Places, earlier.record, before, placeRecord_.write(row, before));
    const std::string code = digits(row.official.postalCode, 5);
    DirectoryChange change{.kind = ChangeKind::Changes,
                           .place = row.official.place,
                           .municipality = row.shortPlaceName,
                           .nameBefore = placeRecord_.name(before),
                           .codeBefore = placeRecord_.postalCode(before),
                           .name = row.name,
                           .code = code};
    change.isRenamed = change.nameBefore != change.name;
    change.hasOtherCode = change.codeBefore != change.code;
    tally_.change(change);
}

void PlaceDifference::goAway(const EarlierPlace& earlier) {
    const std::vector<char> row =
        earlier.record != 0 ? tables_.places->row(earlier.record) : std::vector<char>();
    if (!row.empty() && earlier.state == RowState::Untouched) {
        changes_.erase(DirectoryTable::Places, earlier.record, row);
        tally_.change({.kind = ChangeKind::Goes,
                       .place = earlier.official.place,
                       .municipality = edition_.places().municipality(earlier.official.place),
                       .nameBefore = placeRecord_.name(row),
                       .codeBefore = placeRecord_.postalCode(row)});
    } else if (!row.empty()) {
        report(ConflictKind::ChangedByHand, earlier.official, placeRecord_.name(row),
               textOf(placeRecord_.name(row), placeRecord_.postalCode(row), placeRecord_.hasOneCode(row)),
               {});
    }
    if (const auto provenance = tables_.provenance->row(earlier.provenance); !provenance.empty()) {
        changes_.erase(DirectoryTable::Provenance, earlier.provenance, provenance);
    }
}

Fingerprint PlaceDifference::add(const PlaceRow& row) {
    const std::span<const char> record = placeRecord_.write(row);
    const Fingerprint print = placeRecord_.fingerprint(record);
    changes_.add(DirectoryTable::Places, record);
    const std::string code = digits(row.official.postalCode, 5);
    tally_.change({.kind = ChangeKind::Comes,
                   .place = row.official.place,
                   .municipality = row.shortPlaceName,
                   .name = row.name,
                   .code = code});
    return print;
}

/// `number`: of the row's present record in PROCEDEN; 0 if it has none yet.
void PlaceDifference::putProvenance(const PlaceRow& row, Fingerprint print, dbase::RecordNumber number) {
    const std::string official = row.official.text();
    const ProvenanceRow now{.official = official, .fingerprint = print, .wholeName = row.name};
    if (number == 0) {
        changes_.add(DirectoryTable::Provenance, provenanceRecord_.write(now, edition_.date()));
    } else if (const auto before = tables_.provenance->row(number); !before.empty()) {
        changes_.change(DirectoryTable::Provenance, number, before,
                        provenanceRecord_.write(now, edition_.date(), before));
    }
}

void PlaceDifference::report(ConflictKind kind, const OfficialPlaceKey& official, std::string_view name,
                             const std::string& ours, const std::string& theirs) {
    tally_.conflict({.kind = kind,
                     .place = official.place,
                     .municipality = edition_.places().municipality(official.place),
                     .name = name,
                     .ours = ours,
                     .official = theirs});
}

} // namespace ambrel::directory
