#include <string>

#include "package/AmbCodPostales.h"

// Adds a street of the current municipality, and shows its card.
bool addStreet(TClassCodPostales& postal, const std::string& name, const std::string& type) {
    if (postal.AnadirVia()) {
        postal.DM->tbPostalVIA.setText(name); // Windows-1252
        postal.DM->tbPostalTIPO_VIA.setText(type);
        if (postal.AceptarVia()) {
            postal.MuestraFichaVia(opModificacion, {});
            return true;
        }
        postal.DM->tbPostal.cancel(); // it has stayed pending
    }
    postal.showStreetFailure(); // silent where a message was shown already
    return false;
}

// The import, with which the user brings the streets of whole municipalities.
void importStreets(QWidget* owner, TClassCodPostales& postal) {
    TFImportarVias import(owner, postal);
    import.exec();
}
