// What is wrong between the rows of one street: those with the same province, capital mark, name and type.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "directory/audit/Finding.h"
#include "directory/audit/OfficialRows.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

/// Takes rows in the order of the tag VIA and keeps those of one street only.
class SameStreetAudit {
public:
    /// The streets of one municipality.
    struct StreetCount {
        std::uint64_t streets = 0;
        std::uint64_t hidden = 0;       // another municipality's comes first
        std::uint64_t withRanges = 0;   // some row does not have all numbers
        std::uint64_t withCode = 0;     // all rows have a code that MUNICIPI has
        std::uint64_t withFindings = 0; // notes do not count
        std::string hiddenExample = {}; // in UTF-8
    };

    /// `book` must outlive it. `database`: of the table that says which rows are official.
    SameStreetAudit(const PlaceBook& book, const std::string& database, FindingSink sink)
        : book_(book), official_(database), sink_(std::move(sink)), counts_(book.places().size()) {}

    /// `hasFinding`: whether the row by itself has one that is not a note.
    void add(const StreetRow& row, std::optional<PlaceNumber> place, bool hasFinding);
    /// After the last row.
    void finish() { endStreet(); }

    /// By place.
    [[nodiscard]] const std::vector<StreetCount>& counts() const { return counts_; }

private:
    struct Member {
        StreetRow row;
        std::optional<PlaceNumber> place;
        bool hasFinding = false;
    };
    struct Range;
    using Members = std::vector<const Member*>;

    void endStreet();
    void auditMunicipality(const Members& members, PlaceNumber shown);
    void auditNumbers(const Members& members);
    void auditRepeated(const Members& members);
    void auditSide(const Members& members, bool isOdd);
    void tell(const Finding& finding);
    [[nodiscard]] Finding overlapOf(const Range& range, const Range& other);
    void tellOverlap(std::span<const Range> before, const Range& range, const Range& rival);
    void tellGap(const Range& before, const Range& after);
    [[nodiscard]] bool areVillages(const Member& one, const Member& other) const;
    void noteTwoOfficialStreets(const Member& one, const Member& other, Finding& found);

    const PlaceBook& book_;
    OfficialRows official_;
    FindingSink sink_;
    std::vector<StreetCount> counts_;
    std::vector<Member> members_; // kept, with their texts' memory, from street to street
    std::size_t size_ = 0;
    bool hasFinding_ = false; // the rows of the street at hand, among each other
};

} // namespace ambrel::directory
