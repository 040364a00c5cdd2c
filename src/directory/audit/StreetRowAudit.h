// What is wrong with one row of POSTAL by itself.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "directory/audit/Finding.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

class StreetRowAudit {
public:
    /// `types`: the codes of TIPO_VIA; null if there is none to compare with. Both must outlive it.
    StreetRowAudit(const PlaceBook& book, const std::set<std::string, std::less<>>* types)
        : book_(book), types_(types) {}

    /// `place`: the result of PlaceBook::placeOf().
    void audit(const StreetRow& row, std::optional<PlaceNumber> place, const FindingSink& sink) const;

private:
    void auditNumbers(const StreetRow& row, const FindingSink& sink) const;
    void auditPlace(const StreetRow& row, std::optional<PlaceNumber> place, const FindingSink& sink) const;
    void auditPostalCode(const StreetRow& row, std::optional<PlaceNumber> place,
                         const FindingSink& sink) const;
    void auditProvince(const StreetRow& row, std::optional<PlaceNumber> place, const FindingSink& sink) const;
    void auditCapital(const StreetRow& row, std::optional<PlaceNumber> place, const FindingSink& sink) const;

    const PlaceBook& book_;
    const std::set<std::string, std::less<>>* types_;
};

/// A finding about a row of POSTAL that says where it is.
[[nodiscard]] Finding aboutStreet(const StreetRow& row);

/// That of its postal code, or else PROVINCIA: two digits, or nothing.
[[nodiscard]] std::string provinceOf(const StreetRow& row);

/// "CL MAYOR", in UTF-8.
[[nodiscard]] std::string streetName(const StreetRow& row);

/// A row that was posted before its card, which was then cancelled.
[[nodiscard]] bool isCancelledCard(const StreetRow& row);

/// Whether nobody seeks the street by its PROVINCIA. `place`: the result of PlaceBook::placeOf().
[[nodiscard]] bool hasWrongProvince(const StreetRow& row, std::optional<PlaceNumber> place,
                                    const PlaceBook& book);
/// The province by which the street is sought, two digits; empty if that is not certain.
[[nodiscard]] std::string rightProvince(const StreetRow& row, std::optional<PlaceNumber> place,
                                        const PlaceBook& book);

/// Whether searches by the street's key fail for its capital mark.
[[nodiscard]] bool hasWrongCapital(const StreetRow& row, std::optional<PlaceNumber> place,
                                   const PlaceBook& book);

/// A range that swapping its bounds would mend: both are there and of the right parity.
[[nodiscard]] bool isPlainlyReversed(int first, int last, bool isOdd);

} // namespace ambrel::directory
