// Looks at rows of MUNICIPI one by one.
#include "directory/audit/MunicipalityAudit.h"

#include "dbase/system/counted.h"
#include "directory/audit/ForeignCodes.h"
#include "directory/audit/NameAudit.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

using loading::utf8FromAnsi;

Finding aboutRow(const MunicipalityRow& row) {
    return {.table = AuditedTable::Municipalities,
            .record = row.record,
            .key = utf8FromAnsi(row.ineCode + ' ' + row.postalCode),
            .province = fiveDigits(row.ineCode) ? row.ineCode.substr(0, 2) : ""};
}

void auditPostalCode(const MunicipalityRow& row, const FindingSink& sink) {
    const std::string name = utf8FromAnsi(row.name);
    if (!isPostalCode(row.postalCode)) {
        sink(withoutPostalCode(aboutRow(row), row.postalCode, name));
    } else if (fiveDigits(row.ineCode) && !row.postalCode.starts_with(row.ineCode.substr(0, 2)) &&
               !isKnownForeignCode(row.postalCode, row.ineCode)) {
        sink(withText(aboutRow(row), FindingClass::ForeignPostalCode,
                      "el código " + row.postalCode + " de " + name + " es de otra provincia"));
    }
}

} // namespace

char singleMarkOf(const PlaceBook::Place& place) { return place.codes == 1 ? 'S' : 'N'; }

bool hasWrongSingleMark(const MunicipalityRow& row, const PlaceBook::Place& place) {
    return place.codes > 0 && !row.singleMark.empty() && row.singleMark.front() != singleMarkOf(place);
}

Finding aboutMunicipality(const PlaceBook::Place& place) {
    return {.table = AuditedTable::Municipalities,
            .record = place.record,
            .key = utf8FromAnsi(place.ineCode),
            .province = place.ineCode.substr(0, 2)};
}

void auditMunicipalityRow(const MunicipalityRow& row, const PlaceBook& book, const FindingSink& sink) {
    auditName(row.name, "NOMBRE", aboutRow(row), sink);
    auditPostalCode(row, sink);
    const auto number = book.placeOfIne(row.ineCode);
    if (!number) {
        sink(withText(aboutRow(row), FindingClass::UnknownMunicipality,
                      "«" + utf8FromAnsi(row.ineCode) + "» no es un código INE (" + utf8FromAnsi(row.name) +
                          ")"));
        return;
    }
    const PlaceBook::Place& place = book.places()[*number];
    if (hasWrongSingleMark(row, place)) {
        Finding found = withText(aboutRow(row), FindingClass::SingleCodeMark,
                                 utf8FromAnsi(row.name) + " tiene UNICO «" + utf8FromAnsi(row.singleMark) +
                                     "» y su municipio " +
                                     dbase::counted(place.codes, "código postal", "códigos postales"),
                                 std::string("UNICO=") + singleMarkOf(place));
        if (row.singleMark.front() == 'S') {
            found.severity = Severity::Grave; // streets with the other codes are not accepted
        }
        sink(found);
    }
}

} // namespace ambrel::directory
