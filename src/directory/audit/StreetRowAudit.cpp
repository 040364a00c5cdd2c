// Looks at rows of POSTAL one by one.
#include "directory/audit/StreetRowAudit.h"

#include "directory/audit/ForeignCodes.h"
#include "directory/audit/NameAudit.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

using loading::utf8FromAnsi;

std::string quoted(std::string_view ansi) { return "«" + utf8FromAnsi(ansi) + "»"; }

std::string rangeText(int first, int last) { return std::to_string(first) + "–" + std::to_string(last); }

std::string municipalityText(const PlaceBook::Place& place) {
    return utf8FromAnsi(place.ineCode + ' ' + place.name);
}

} // namespace

bool isPlainlyReversed(int first, int last, bool isOdd) {
    const int rest = isOdd ? 1 : 0;
    return last > 0 && first > last && first % 2 == rest && last % 2 == rest;
}

bool isCancelledCard(const StreetRow& row) {
    return row.key.starts_with("99") && row.capital.empty() && row.ineCode.empty() &&
           row.municipality.empty();
}

bool hasWrongProvince(const StreetRow& row, std::optional<PlaceNumber> place, const PlaceBook& book) {
    const bool isOfPlace = place && book.places()[*place].codes > 0;
    return isOfPlace ? !book.hasProvince(*place, row.province)
                     : isPostalCode(row.postalCode) && row.postalCode.substr(0, 2) != row.province;
}

std::string rightProvince(const StreetRow& row, std::optional<PlaceNumber> place, const PlaceBook& book) {
    const bool isCertain =
        place ? book.hasCode(*place, row.postalCode) : !book.usesOf(row.postalCode).empty();
    return isCertain ? row.postalCode.substr(0, 2) : std::string();
}

bool hasWrongCapital(const StreetRow& row, std::optional<PlaceNumber> place, const PlaceBook& book) {
    const bool isOfPlace = place && book.places()[*place].codes > 0;
    return isOfPlace ? !book.hasMark(*place, row.capital) : row.capital.empty();
}

Finding aboutStreet(const StreetRow& row) {
    return {.table = AuditedTable::Streets,
            .record = row.record,
            .key = utf8FromAnsi(row.key),
            .province = provinceOf(row)};
}

std::string provinceOf(const StreetRow& row) {
    const std::string& text = isPostalCode(row.postalCode) ? row.postalCode : row.province;
    return isPostalCode(text.substr(0, 2) + "001") ? text.substr(0, 2) : std::string();
}

std::string streetName(const StreetRow& row) {
    return utf8FromAnsi(row.type.empty() ? row.name : row.type + ' ' + row.name);
}

void StreetRowAudit::audit(const StreetRow& row, std::optional<PlaceNumber> place,
                           const FindingSink& sink) const {
    auditName(row.name, "VIA", aboutStreet(row), sink);
    auditNumbers(row, sink);
    auditPlace(row, place, sink);
    auditProvince(row, place, sink);
    auditCapital(row, place, sink);
    if (types_ != nullptr && !row.type.empty() && !types_->contains(row.type)) {
        sink(withText(aboutStreet(row), FindingClass::UnknownType,
                      "TIPO_VIA no tiene el tipo " + quoted(row.type) + " de " + streetName(row)));
    }
}

void StreetRowAudit::auditNumbers(const StreetRow& row, const FindingSink& sink) const {
    struct Side {
        std::string name;
        int first, last;
        bool isOdd;
    };
    for (const Side& side :
         {Side{"IMPAR", row.oddFirst, row.oddLast, true}, Side{"PAR", row.evenFirst, row.evenLast, false}}) {
        if (side.first == 0 && side.last == 0) {
            continue; // no numbers on this side
        }
        if (side.first > side.last) {
            const std::string swapped = side.name + "_INI=" + std::to_string(side.last) + ", " + side.name +
                                        "_FIN=" + std::to_string(side.first);
            sink(withText(aboutStreet(row), FindingClass::ReversedRange,
                          "el tramo " + rangeText(side.first, side.last) + " de " + streetName(row) +
                              " está al revés",
                          isPlainlyReversed(side.first, side.last, side.isOdd) ? swapped : ""));
        }
        if ((side.first % 2 != 0) != side.isOdd || (side.last % 2 != 0) != side.isOdd) {
            sink(withText(aboutStreet(row), FindingClass::WrongParity,
                          "el tramo " + rangeText(side.first, side.last) + " de " + streetName(row) +
                              " no es de números " + (side.isOdd ? "impares" : "pares")));
        }
    }
}

void StreetRowAudit::auditPlace(const StreetRow& row, std::optional<PlaceNumber> place,
                                const FindingSink& sink) const {
    auditPostalCode(row, place, sink);
    if (!row.ineCode.empty() && !book_.placeOfIne(row.ineCode)) {
        sink(withText(aboutStreet(row), FindingClass::UnknownMunicipality,
                      "MUNICIPI no tiene el código INE " + quoted(row.ineCode) + " de " + streetName(row)));
    } else if (!place && book_.usesOf(row.postalCode).empty()) {
        sink(withText(aboutStreet(row), FindingClass::NoMunicipality,
                      streetName(row) + " no dice de qué municipio es, y su código postal no es de ninguno"));
    }
}

void StreetRowAudit::auditProvince(const StreetRow& row, std::optional<PlaceNumber> place,
                                   const FindingSink& sink) const {
    if (hasWrongProvince(row, place, book_)) {
        const std::string right = rightProvince(row, place, book_);
        sink(withText(aboutStreet(row), FindingClass::WrongProvince,
                      "la provincia " + quoted(row.province) + " de " + streetName(row) +
                          " no es la de ningún código postal de su municipio",
                      right.empty() ? "" : "PROVINCIA=" + right));
    }
}

void StreetRowAudit::auditPostalCode(const StreetRow& row, std::optional<PlaceNumber> place,
                                     const FindingSink& sink) const {
    if (!isPostalCode(row.postalCode)) {
        sink(withoutPostalCode(aboutStreet(row), row.postalCode, streetName(row)));
        return;
    }
    const bool isUsed = !book_.usesOf(row.postalCode).empty();
    if (place && book_.places()[*place].codes > 0 && !book_.hasCode(*place, row.postalCode)) {
        const PlaceBook::Place& municipality = book_.places()[*place];
        if (isKnownForeignCode(row.postalCode, municipality.ineCode)) {
            return;
        }
        const bool isOfProvince = book_.hasProvince(*place, row.postalCode.substr(0, 2));
        Finding found = withText(aboutStreet(row), FindingClass::ForeignPostalCode,
                                 "ninguna fila de " + municipalityText(municipality) + " tiene el código " +
                                     row.postalCode + " de " + streetName(row) +
                                     (isOfProvince ? "" : ", ni otro de su provincia"));
        found.severity = isOfProvince ? Severity::Warning : Severity::Grave;
        sink(found);
    } else if (!isUsed) {
        Finding found =
            withText(aboutStreet(row), FindingClass::NoPostalCode,
                     "ningún municipio tiene el código " + row.postalCode + " de " + streetName(row));
        found.severity = Severity::Warning;
        sink(found);
    }
}

void StreetRowAudit::auditCapital(const StreetRow& row, std::optional<PlaceNumber> place,
                                  const FindingSink& sink) const {
    if (!hasWrongCapital(row, place, book_)) {
        return;
    }
    const auto mark = book_.capitalOf(row);
    const std::string proposal = mark ? "CAPITAL=" + utf8FromAnsi(std::string(1, *mark)) : std::string();
    if (!row.capital.empty()) {
        sink(withText(aboutStreet(row), FindingClass::ForeignCapital,
                      "ninguna fila de " + municipalityText(book_.places()[*place]) +
                          " tiene la marca de capital " + quoted(row.capital) + " de " + streetName(row),
                      proposal));
    } else if (isCancelledCard(row)) {
        sink(
            withText(aboutStreet(row), FindingClass::CancelledCard,
                     streetName(row) + " se dio de alta y se canceló su ficha: le faltan CAPITAL y municipio",
                     proposal));
    } else {
        sink(withText(aboutStreet(row), FindingClass::BlankCapital,
                      "CAPITAL de " + streetName(row) + " está en blanco", proposal));
    }
}

} // namespace ambrel::directory
