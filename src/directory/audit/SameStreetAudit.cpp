// Compares the rows of a street.
#include "directory/audit/SameStreetAudit.h"

#include <algorithm>
#include <tuple>

#include "directory/audit/NameAudit.h"
#include "directory/audit/StreetRowAudit.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

auto streetKey(const StreetRow& row) { return std::tie(row.province, row.capital, row.name, row.type); }

auto stretch(const StreetRow& row) {
    return std::tie(row.postalCode, row.oddFirst, row.oddLast, row.evenFirst, row.evenLast, row.municipality,
                    row.ineCode);
}

bool hasAllNumbers(const StreetRow& row) {
    return row.oddFirst <= 1 && row.oddLast >= 9999 && row.evenFirst <= 2 && row.evenLast >= 9998;
}

bool hasNumbers(const StreetRow& row) {
    return row.oddFirst != 0 || row.oddLast != 0 || row.evenFirst != 0 || row.evenLast != 0;
}

} // namespace

struct SameStreetAudit::Range {
    int first, last;
    const Member* member;

    [[nodiscard]] const std::string& postalCode() const { return member->row.postalCode; }
    [[nodiscard]] std::string text() const {
        return std::to_string(first) + "–" + std::to_string(last) + " (" +
               loading::utf8FromAnsi(postalCode()) + ")";
    }
};

void SameStreetAudit::add(const StreetRow& row, std::optional<PlaceNumber> place, bool hasFinding) {
    if (size_ > 0 && streetKey(members_.front().row) != streetKey(row)) {
        endStreet();
    }
    if (row.name.empty()) {
        return; // not a street, and there may be any number of them
    }
    if (size_ == members_.size()) {
        members_.emplace_back();
    }
    members_[size_].row = row;
    members_[size_].place = place;
    members_[size_].hasFinding = hasFinding;
    ++size_;
}

void SameStreetAudit::endStreet() {
    Members ofPlaces, others;
    for (std::size_t i = 0; i < size_; ++i) {
        (members_[i].place ? ofPlaces : others).push_back(&members_[i]);
    }
    auditNumbers(others);
    auditRepeated(others);
    if (!ofPlaces.empty()) {
        const PlaceNumber shown = *ofPlaces.front()->place;
        std::ranges::stable_sort(ofPlaces, {}, [](const Member* member) { return *member->place; });
        for (auto begin = ofPlaces.begin(); begin != ofPlaces.end();) {
            const auto end = std::find_if(begin, ofPlaces.end(), [&](const Member* member) {
                return member->place != (*begin)->place;
            });
            auditMunicipality(Members(begin, end), shown);
            begin = end;
        }
    }
    size_ = 0;
}

void SameStreetAudit::auditMunicipality(const Members& members, PlaceNumber shown) {
    const PlaceNumber place = *members.front()->place;
    StreetCount& count = counts_[place];
    ++count.streets;
    if (place != shown) {
        if (++count.hidden == 1) {
            count.hiddenExample = streetName(members.front()->row);
        }
    }
    const auto hasCode = [&](const Member* member) { return !book_.usesOf(member->row.postalCode).empty(); };
    count.withCode += std::ranges::all_of(members, hasCode) ? 1 : 0;
    const auto hasRange = [](const Member* member) { return !hasAllNumbers(member->row); };
    count.withRanges += std::ranges::any_of(members, hasRange) ? 1 : 0;
    hasFinding_ = std::ranges::any_of(members, &Member::hasFinding);
    auditNumbers(members);
    if (members.size() > 1) {
        auditRepeated(members);
        auditSide(members, true);
        auditSide(members, false);
    }
    count.withFindings += hasFinding_ ? 1 : 0;
}

void SameStreetAudit::tell(const Finding& finding) {
    hasFinding_ = hasFinding_ || finding.severity != Severity::Note;
    sink_(finding);
}

/// The official directory has rows without numbers beside others of their street, only for their code.
void SameStreetAudit::auditNumbers(const Members& members) {
    const bool hasSome =
        std::ranges::any_of(members, [](const Member* member) { return hasNumbers(member->row); });
    for (const Member* const member : members) {
        if (hasNumbers(member->row)) {
            continue;
        }
        const std::string row = "la fila de " + loading::utf8FromAnsi(member->row.postalCode);
        Finding found =
            withText(aboutStreet(member->row), FindingClass::NoNumbers,
                     streetName(member->row) + ": " +
                         (hasSome               ? row + " no tiene ningún número"
                          : members.size() == 1 ? row + " no tiene ningún número, y la vía no tiene otra"
                                                : "ni " + row + " ni otra de la vía tiene ningún número"));
        if (hasSome) {
            found.severity = Severity::Note;
        }
        tell(found);
    }
}

void SameStreetAudit::auditRepeated(const Members& members) {
    Members sorted = members;
    std::ranges::stable_sort(sorted, [](const Member* one, const Member* other) {
        return stretch(one->row) < stretch(other->row);
    });
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        if (stretch(sorted[i - 1]->row) == stretch(sorted[i]->row)) {
            Finding found = withText(aboutStreet(sorted[i]->row), FindingClass::RepeatedRow,
                                     streetName(sorted[i]->row) + ": la fila dice lo mismo que el registro " +
                                         std::to_string(sorted[i - 1]->row.record));
            noteTwoOfficialStreets(*sorted[i], *sorted[i - 1], found);
            tell(found);
        }
    }
}

void SameStreetAudit::auditSide(const Members& members, bool isOdd) {
    std::vector<Range> ranges;
    for (const Member* const member : members) {
        const StreetRow& row = member->row;
        const Range range =
            isOdd ? Range{row.oddFirst, row.oddLast, member} : Range{row.evenFirst, row.evenLast, member};
        if (range.last > 0 && range.first <= range.last) {
            ranges.push_back(range);
        }
    }
    std::ranges::stable_sort(ranges, {}, &Range::first);
    // Of the ranges so far, the one that reaches farthest, and the farthest with another code than that one.
    const Range* farthest = nullptr;
    const Range* other = nullptr;
    for (const Range& range : ranges) {
        const Range* const rival =
            farthest != nullptr && farthest->postalCode() == range.postalCode() ? other : farthest;
        if (rival != nullptr && range.first <= rival->last) {
            tellOverlap({ranges.data(), &range}, range, *rival);
        } else if (rival != nullptr && rival == farthest && range.first > rival->last + 2) {
            tellGap(*rival, range);
        }
        if (farthest == nullptr || range.last > farthest->last) {
            if (farthest != nullptr && farthest->postalCode() != range.postalCode()) {
                other = farthest;
            }
            farthest = &range;
        } else if (farthest->postalCode() != range.postalCode() &&
                   (other == nullptr || range.last > other->last)) {
            other = &range;
        }
    }
}

/// Villages of one municipality may each have a street of the name, with a code of its own.
bool SameStreetAudit::areVillages(const Member& one, const Member& other) const {
    return book_.isOfEntity(*one.place, one.row.postalCode) ||
           book_.isOfEntity(*other.place, other.row.postalCode);
}

Finding SameStreetAudit::overlapOf(const Range& range, const Range& other) {
    const bool isOfVillages = areVillages(*range.member, *other.member);
    Finding found =
        withText(aboutStreet(range.member->row), FindingClass::Overlap,
                 streetName(range.member->row) + ": el tramo " + range.text() + " se solapa con el " +
                     other.text() + " del registro " + std::to_string(other.member->row.record) +
                     (isOfVillages ? "; parecen vías de dos localidades" : ""));
    if (isOfVillages) {
        found.severity = Severity::Note;
    } else {
        noteTwoOfficialStreets(*range.member, *other.member, found);
    }
    return found;
}

/// Of the ranges before it that overlap one, `rival` reaches farthest; where that is only worth a note,
/// another one may be graver.
void SameStreetAudit::tellOverlap(std::span<const Range> before, const Range& range, const Range& rival) {
    Finding found = overlapOf(range, rival);
    for (auto other = before.begin(); found.severity == Severity::Note && other != before.end(); ++other) {
        if (range.first <= other->last && range.postalCode() != other->postalCode() &&
            !areVillages(*range.member, *other->member)) {
            if (const Finding one = overlapOf(range, *other); one.severity != Severity::Note) {
                found = one;
            }
        }
    }
    tell(found);
}

/// The office knows two streets of one name and type: nothing is wrong, and nothing to be deleted.
void SameStreetAudit::noteTwoOfficialStreets(const Member& one, const Member& other, Finding& found) {
    const std::string street = official_.streetOf(one.row.key);
    const std::string otherStreet = official_.streetOf(other.row.key);
    if (!street.empty() && !otherStreet.empty() && street != otherStreet) {
        found.text += "; en el callejero oficial son dos vías";
        found.severity = Severity::Note;
    }
}

void SameStreetAudit::tellGap(const Range& before, const Range& after) {
    const std::string first = std::to_string(before.last + 2), last = std::to_string(after.first - 2);
    tell(withText(
        aboutStreet(after.member->row), FindingClass::Gap,
        streetName(after.member->row) + ": entre el tramo " + before.text() + " y el " + after.text() +
            (first == last ? " falta el número " + first : " faltan los números " + first + " a " + last)));
}

} // namespace ambrel::directory
