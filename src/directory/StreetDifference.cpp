// Goes through earlier and official streets side by side.
#include "directory/StreetDifference.h"

#include <algorithm>

#include "directory/LeadingZeros.h"
#include "directory/RangeLimits.h"
#include "directory/RowMatching.h"
#include "directory/StreetNames.h"

namespace ambrel::directory {
namespace {

bool hasKeyOf(const JoinedStretch& row, const EarlierRow& earlier) {
    return row.postalCode == earlier.postalCode && row.ordinal == earlier.ordinal;
}

/// "CL MAYOR 1-9999 2-9998 28001"
std::string textOf(std::string_view type, std::string_view name, const Bounds& bounds,
                   std::string_view code) {
    std::string text(type);
    const auto append = [&](std::string_view part) {
        text += (text.empty() || part.empty() ? "" : " ") + std::string(part);
    };
    append(name);
    for (const std::size_t side : {0U, 2U}) {
        if (bounds[side + 1] != 0) {
            append(std::to_string(bounds[side]) + '-' + std::to_string(bounds[side + 1]));
        }
    }
    append(code);
    return text;
}

std::string textOf(const OfficialStreet& street, const JoinedStretch& row) {
    return textOf(street.type, street.name, row.bounds, digits(row.postalCode, 5));
}

} // namespace

StreetDifference::StreetDifference(const Edition& edition, const EarlierEdition& earlier,
                                   StoredStreets& stored, const StoredTables& tables, TableChanges& changes,
                                   LoadTally& tally)
    : edition_(edition), left_(earlier.streets), stored_(stored), tables_(tables), changes_(changes),
      tally_(tally), rows_(*tables.streets), streetRecord_(tables.streets->schema()),
      provenanceRecord_(tables.provenance != nullptr ? tables.provenance->schema() : provenanceSchema()) {}

void StreetDifference::compare(const OfficialStreet& street) {
    passBy(street.id);
    const std::span<const EarlierRow> earlier = earlierOf(street.id);
    if (street.name.empty()) {
        return; // nothing says what it has become: its rows stay
    }
    const auto known = std::ranges::find(earlier, RowState::Untouched, &EarlierRow::state);
    if (!street.isListed && known != earlier.end()) {
        // Its line may be missing or bad: a name of which the short one is the beginning stays.
        const Row row = tables_.streets->row(known->record);
        if (!row.empty() && streetRecord_.name(row).starts_with(street.name)) {
            OfficialStreet named = street;
            named.type = streetRecord_.type(row);
            named.name = streetRecord_.name(row);
            return compareRows(named, earlier);
        }
    }
    compareRows(street, earlier);
}

void StreetDifference::compareRows(const OfficialStreet& street, std::span<const EarlierRow> earlier) {
    streetRecord_.expect(street);
    if (std::ranges::equal(street.rows, earlier, hasKeyOf)) {
        for (std::size_t i = 0; i < earlier.size(); ++i) {
            goOn(street, street.rows[i], earlier[i]);
        }
        return;
    }
    const std::vector<std::optional<std::size_t>> matches = matchesOf(street, earlier);
    for (std::size_t i = 0; i < earlier.size(); ++i) {
        if (std::ranges::find(matches, std::optional(i)) == matches.end()) {
            goAway(earlier[i]);
        }
    }
    for (std::size_t i = 0; i < street.rows.size(); ++i) {
        if (matches[i]) {
            goOn(street, street.rows[i], earlier[*matches[i]]);
        } else {
            come(street, street.rows[i]);
        }
    }
}

/// The streets before another one that the edition does not have.
void StreetDifference::passBy(StreetId before) {
    while (!left_.empty() && left_.front().street < before) {
        if (edition_.speaksOf(left_.front().street)) {
            goAway(left_.front());
        }
        left_ = left_.subspan(1);
    }
}

std::span<const EarlierRow> StreetDifference::earlierOf(StreetId street) {
    std::size_t size = 0;
    while (size < left_.size() && left_[size].street == street) {
        ++size;
    }
    const std::span<const EarlierRow> rows = left_.first(size);
    left_ = left_.subspan(size);
    return rows;
}

std::vector<std::optional<std::size_t>>
StreetDifference::matchesOf(const OfficialStreet& street, std::span<const EarlierRow> earlier) const {
    std::vector<EarlierStretch> stretches;
    for (const EarlierRow& one : earlier) {
        const Row row = one.record != 0 ? tables_.streets->row(one.record) : Row();
        stretches.push_back({one.postalCode, one.ordinal,
                             row.empty() ? std::nullopt : std::optional(streetRecord_.bounds(row))});
    }
    return matchRows(stretches, street.rows);
}

void StreetDifference::come(const OfficialStreet& street, const JoinedStretch& row) {
    if (!stored_.own.isEmpty() && overlapsOwn(street, row)) {
        tally_.keep();
        return;
    }
    const std::uint32_t key = stored_.keys.next(placeOf(street.id));
    addProvenance(street, row, key, add(street, row, key));
}

void StreetDifference::goOn(const OfficialStreet& street, const JoinedStretch& row,
                            const EarlierRow& earlier) {
    const Fingerprint print = printOf(street, row, earlier);
    if (earlier.state == RowState::Untouched && print != earlier.fingerprint && !stored_.own.isEmpty()) {
        const JoinedStretch rest = besideOwn(street, row, earlier);
        if (rest != row) {
            tally_.keep();
            return follow(street, rest, earlier,
                          streetRecord_.fingerprint(streetRecord_.write(earlier.key, street, rest)));
        }
    }
    follow(street, row, earlier, print);
}

void StreetDifference::follow(const OfficialStreet& street, const JoinedStretch& row,
                              const EarlierRow& earlier, Fingerprint print) {
    const bool isOther = print != earlier.fingerprint;
    switch (earlier.state) {
    case RowState::Untouched:
        if (isOther) {
            change(street, row, earlier);
        }
        break;
    case RowState::Changed:
        stayChanged(street, row, earlier, print);
        break;
    case RowState::Deleted:
        tally_.keep();
        if (isOther && earlier.fingerprint != 0) {
            report(ConflictKind::DeletedByHand, street, earlier.key, {}, textOf(street, row));
        }
        break;
    case RowState::Lost:
        add(street, row, earlier.key);
        break;
    }
    if (isOther || !hasKeyOf(row, earlier) || packed(row) != earlier.opened || earlier.isNameShortened ||
        !street.wholeName.empty()) {
        renewProvenance(street, row, earlier, print);
    }
}

/// Of what the office has now. That of a row which nobody has touched is known, and nearly all of them say
/// the same as before.
Fingerprint StreetDifference::printOf(const OfficialStreet& street, const JoinedStretch& row,
                                      const EarlierRow& earlier) {
    if (earlier.state == RowState::Untouched) {
        const std::span<const char> record = rows_.find(earlier.record);
        if (!record.empty() && streetRecord_.says(record, earlier.key, row)) {
            return earlier.fingerprint;
        }
    }
    return streetRecord_.fingerprint(streetRecord_.write(earlier.key, street, row));
}

/// A row that somebody has changed; if the office has made the same of it, it follows the office again.
void StreetDifference::stayChanged(const OfficialStreet& street, const JoinedStretch& row,
                                   const EarlierRow& earlier, Fingerprint print) {
    const Row current = tables_.streets->row(earlier.record);
    if (current.empty() || streetRecord_.fingerprint(current) == print) {
        return;
    }
    tally_.keep();
    if (print != earlier.fingerprint) {
        report(ConflictKind::ChangedByHand, street, earlier.key, current, textOf(street, row));
    }
}

void StreetDifference::goAway(const EarlierRow& earlier) {
    const Row row = earlier.record != 0 ? tables_.streets->row(earlier.record) : Row();
    if (!row.empty()) {
        const OfficialStreet gone{.id = earlier.street,
                                  .type = streetRecord_.type(row),
                                  .name = streetRecord_.name(row),
                                  .municipality = streetRecord_.municipality(row)};
        if (earlier.state == RowState::Untouched) {
            changes_.erase(DirectoryTable::Streets, earlier.record, row);
            tally_.change({.kind = ChangeKind::Goes,
                           .place = placeOf(earlier.street),
                           .municipality = gone.municipality,
                           .key = earlier.key,
                           .typeBefore = gone.type,
                           .nameBefore = gone.name,
                           .codeBefore = streetRecord_.postalCode(row),
                           .boundsBefore = streetRecord_.bounds(row)});
        } else {
            report(ConflictKind::ChangedByHand, gone, earlier.key, row, {});
        }
    }
    if (const Row provenance = tables_.provenance->row(earlier.provenance); !provenance.empty()) {
        changes_.erase(DirectoryTable::Provenance, earlier.provenance, provenance);
    }
}

void StreetDifference::change(const OfficialStreet& street, const JoinedStretch& row,
                              const EarlierRow& earlier) {
    const Row before = tables_.streets->row(earlier.record);
    if (before.empty()) {
        return; // deleted while others work beside a trial
    }
    changes_.change(DirectoryTable::Streets, earlier.record, before,
                    streetRecord_.write(earlier.key, street, row, before));
    const std::string code = digits(row.postalCode, 5);
    DirectoryChange change{.kind = ChangeKind::Changes,
                           .place = placeOf(street.id),
                           .municipality = street.municipality,
                           .key = earlier.key,
                           .typeBefore = streetRecord_.type(before),
                           .nameBefore = streetRecord_.name(before),
                           .codeBefore = streetRecord_.postalCode(before),
                           .boundsBefore = streetRecord_.bounds(before),
                           .type = street.type,
                           .name = street.name,
                           .code = code,
                           .bounds = row.bounds};
    change.isRenamed = change.typeBefore != change.type || change.nameBefore != change.name;
    change.hasOtherCode = change.codeBefore != change.code;
    change.hasOtherRange = change.boundsBefore != change.bounds;
    tally_.change(change);
}

bool StreetDifference::isSameStreet(const OfficialStreet& street, const Row& own) const {
    const std::string_view type = streetRecord_.type(own);
    return (type == street.type || type.empty() || street.type.empty()) &&
           plainCapitals(streetRecord_.name(own)) == plainCapitals(street.name);
}

/// Those of a street that share numbers with bounds.
std::vector<StreetDifference::OwnRow> StreetDifference::ownRows(const OfficialStreet& street,
                                                                const Bounds& bounds) const {
    std::vector<OwnRow> rows;
    for (const OwnStreets::Row& one : stored_.own.find(placeOf(street.id), street.name)) {
        Row row = tables_.streets->row(one.record);
        if (!row.empty() && isSameStreet(street, row)) {
            const Bounds its = boundsOfSides(streetRecord_.bounds(row));
            if (numbersShared(its, bounds) > 0) {
                rows.push_back({std::move(row), its});
            }
        }
    }
    return rows;
}

bool StreetDifference::overlapsOwn(const OfficialStreet& street, const JoinedStretch& row) {
    const std::vector<OwnRow> owned = ownRows(street, row.bounds);
    if (owned.empty()) {
        return false;
    }
    const std::string code = digits(row.postalCode, 5);
    const auto withOtherCode = std::ranges::find_if(
        owned, [&](const OwnRow& own) { return streetRecord_.postalCode(own.row) != code; });
    std::vector<Bounds> bounds;
    std::ranges::transform(owned, std::back_inserter(bounds), &OwnRow::bounds);
    if (withOtherCode != owned.end() || numbersCovered(row.bounds, bounds) < numbersIn(row.bounds)) {
        const Row& ours = (withOtherCode != owned.end() ? *withOtherCode : owned.front()).row;
        report(ConflictKind::OwnStreet, street, streetRecord_.key(ours).value_or(0), ours,
               textOf(street, row));
    }
    return true;
}

/// What is left of a row that changes once it has lost the numbers that users' rows with another code have:
/// they would have two answers. Where a user has put a row over the official one, they have them already.
JoinedStretch StreetDifference::besideOwn(const OfficialStreet& street, const JoinedStretch& row,
                                          const EarlierRow& earlier) {
    JoinedStretch rest = row;
    const std::vector<OwnRow> owned = ownRows(street, row.bounds);
    const Row before = owned.empty() ? Row() : tables_.streets->row(earlier.record);
    if (before.empty()) {
        return rest;
    }
    const OfficialStreet streetBefore{
        .id = street.id, .type = streetRecord_.type(before), .name = streetRecord_.name(before)};
    const Bounds boundsBefore = streetRecord_.bounds(before);
    std::vector<Bounds> taken;
    for (const OwnRow& own : owned) {
        const std::string_view code = streetRecord_.postalCode(own.row);
        const bool hadOther = isSameStreet(streetBefore, own.row) && streetRecord_.postalCode(before) != code;
        const std::vector<Bounds> grown = numbersOutside(own.bounds, hadOther ? boundsBefore : Bounds{});
        const auto isShared = [&](const Bounds& part) { return numbersShared(part, row.bounds) > 0; };
        if (code != digits(row.postalCode, 5) && std::ranges::any_of(grown, isShared)) {
            std::ranges::copy(grown, std::back_inserter(taken));
            report(ConflictKind::OwnStreet, street, streetRecord_.key(own.row).value_or(0), own.row,
                   textOf(street, row));
        }
    }
    rest.bounds = limited(row.bounds, taken, boundsBefore);
    std::ranges::transform(rest.bounds, row.bounds, rest.cut.begin(), std::ranges::not_equal_to());
    return rest;
}

Fingerprint StreetDifference::add(const OfficialStreet& street, const JoinedStretch& row, std::uint32_t key) {
    const std::span<const char> record = streetRecord_.write(key, street, row);
    const Fingerprint print = streetRecord_.fingerprint(record);
    changes_.add(DirectoryTable::Streets, record);
    const std::string code = digits(row.postalCode, 5);
    tally_.change({.kind = ChangeKind::Comes,
                   .place = placeOf(street.id),
                   .municipality = street.municipality,
                   .key = key,
                   .type = street.type,
                   .name = street.name,
                   .code = code,
                   .bounds = row.bounds});
    return print;
}

/// What PROCEDEN has to say of a row.
class StreetDifference::Provenance {
public:
    Provenance(const OfficialStreet& street, const JoinedStretch& row, std::uint32_t key, Fingerprint print)
        : official_(OfficialKey{street.id, row.postalCode, row.ordinal}.text()), opened_(openedText(row)),
          row_{.key = key,
               .official = official_,
               .line = row.line,
               .opened = opened_,
               .isNameShortened = !street.wholeName.empty(),
               .fingerprint = print,
               .wholeName = street.wholeName} {}
    Provenance(const Provenance&) = delete;
    Provenance& operator=(const Provenance&) = delete;
    [[nodiscard]] const ProvenanceRow& row() const { return row_; }

private:
    std::string official_, opened_;
    ProvenanceRow row_;
};

void StreetDifference::addProvenance(const OfficialStreet& street, const JoinedStretch& row,
                                     std::uint32_t key, Fingerprint print) {
    changes_.add(DirectoryTable::Provenance,
                 provenanceRecord_.write(Provenance(street, row, key, print).row(), edition_.date()));
}

/// Edition and line stay those of the edition that changed the row last.
void StreetDifference::renewProvenance(const OfficialStreet& street, const JoinedStretch& row,
                                       const EarlierRow& earlier, Fingerprint print) {
    const Row before = tables_.provenance->row(earlier.provenance);
    const std::optional<ProvenanceRow> was = before.empty() ? std::nullopt : provenanceRecord_.read(before);
    const Provenance now(street, row, earlier.key, print);
    if (was && !now.row().saysTheSameAs(*was)) {
        changes_.change(DirectoryTable::Provenance, earlier.provenance, before,
                        provenanceRecord_.write(now.row(), edition_.date(), before));
    }
}

void StreetDifference::report(ConflictKind kind, const OfficialStreet& street, std::uint32_t key,
                              const Row& ours, const std::string& official) {
    const std::string text = ours.empty()
                                 ? std::string()
                                 : textOf(streetRecord_.type(ours), streetRecord_.name(ours),
                                          streetRecord_.bounds(ours), streetRecord_.postalCode(ours));
    tally_.conflict({.kind = kind,
                     .place = placeOf(street.id),
                     .municipality = street.municipality,
                     .key = key,
                     .name = street.name,
                     .ours = text,
                     .official = official});
}

} // namespace ambrel::directory
