#include <QLineEdit>

#include "package/AmbCodPostales.h"

// Whether the current municipality has the street of a box; its first row is current then. A nearest search
// may end on a neighbour, and one with a type on another type of the street.
bool findStreet(TClassCodPostales& postal, const QString& street, const QString& type) {
    const TDMCodPostales& row = *postal.DM;
    postal.OrdenaPorViaPostal();
    postal.BuscaEnPostal(street, type, nearestSearch);
    const QString typeFound = ambrel::fromWindows1252(row.tbPostalTIPO_VIA.text());
    return postal.BuscaEnPostal(street, typeFound, exactSearch) &&
           row.tbPostalVIA.text() == ambrel::toWindows1252(street);
}

// Call it with a validated municipality, and with `postalCode` null or in edit.
void leaveStreet(TClassCodPostales& postal, QLineEdit* street, const QString& type,
                 dbase::Field* postalCode) {
    constexpr int justAdded = 1;
    const auto lookUp = [&] {
        const bool found = findStreet(postal, street->text(), type);
        ambrel::setTag(*street, found ? postal.DM->tbPostalCODIGO1.integer() : 0);
    };
    if (ambrel::tagOf(*street) == 0 && !street->text().isEmpty()) {
        lookUp(); // a pasted text: no key has looked it up
    }
    const dbase::Bookmark municipality = postal.DM->tbMunicipi.bookmark();
    postal.ExitDireccionPostal(street, postalCode, nullptr, true, QString(), type);
    if (ambrel::tagOf(*street) != justAdded) {
        return;
    }
    if (StrLeft(postal.DM->tbPostalCODIGO1.text(), 2) == "99") { // the card may have changed its name
        street->setText(ambrel::fromWindows1252(postal.DM->tbPostalVIA.text()));
    }
    postal.DM->tbMunicipi.goTo(municipality);
    lookUp();
}
