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
        postal.DM->tbPostal.cancel(); // the row is still pending
    }
    postal.showStreetFailure(); // shows nothing where a message has already been shown
    return false;
}

// The import, which brings the streets of whole municipalities.
void importStreets(QWidget* owner, TClassCodPostales& postal) {
    TFImportarVias import(owner, postal);
    import.exec();
}
