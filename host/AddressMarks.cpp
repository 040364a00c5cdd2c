#include "host/AddressMarks.h"

#include <QLineEdit>

#include "controller/NumberRange.h"
#include "package/AmbCodPostales.h"

namespace host {
namespace {

using ambrel::tagOf;

std::string bytesOf(const QLineEdit& box) { return ambrel::toNearestWindows1252(box.text().trimmed()); }

void mark(QLineEdit& box, bool isValidated) { ambrel::setTag(box, isValidated ? 1 : 0); }

} // namespace

bool AddressMarks::isAtStreet() const {
    return !tables_.tbPostal.isEmpty() && tables_.tbPostalVIA.text() == bytesOf(*boxes_.street);
}

bool AddressMarks::isAtNumber() const {
    const ambrel::StretchRanges ranges{
        .odd = {tables_.tbPostalIMPAR_INI.integer(), tables_.tbPostalIMPAR_FIN.integer()},
        .even = {tables_.tbPostalPAR_INI.integer(), tables_.tbPostalPAR_FIN.integer()}};
    return isAtStreet() && ranges.hold(Cad_Int(bytesOf(*boxes_.number)));
}

void AddressMarks::markNumber() const { mark(*boxes_.number, isAtNumber()); }

void AddressMarks::markWhatFollows() const {
    const bool municipality = tagOf(*boxes_.municipality) != 0;
    const bool street = municipality && tagOf(*boxes_.street) != 0 && isAtStreet();
    const std::string postalCode = bytesOf(*boxes_.postalCode);

    const QString province =
        municipality ? LocalizaProvincia(ambrel::fromWindows1252(tables_.tbMunicipiCODPOSTAL.text()))
                     : QString();
    mark(*boxes_.province, municipality && boxes_.province->text() == province);
    mark(*boxes_.streetType, street && tables_.tbPostalTIPO_VIA.text() == bytesOf(*boxes_.streetType));
    const bool codeOfMunicipality = municipality && tables_.tbMunicipiUNICO.text() == "S" &&
                                    tables_.tbMunicipiCODPOSTAL.text() == postalCode;
    const bool codeOfStreet = street && tables_.tbPostalCODPOSTAL.text() == postalCode;
    mark(*boxes_.postalCode, codeOfMunicipality || codeOfStreet);
}

} // namespace host
