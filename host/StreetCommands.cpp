#include "host/StreetCommands.h"

#include <QLineEdit>

#include "host/AddressValidation.h"
#include "package/AmbCodPostales.h"

namespace host {

StreetCommands::StreetCommands(const AddressForm& form, TClassCodPostales& controller,
                               AddressValidation& validation, QObject* parent)
    : QObject(parent), boxes_(form.boxes()), controller_(controller), validation_(validation) {
    connect(&form, &AddressForm::listWanted, this, ambrel::guarded([this](const QLineEdit* box) {
        if (box == boxes_.street)
            chooseStreet();
    }));
}

void StreetCommands::chooseStreet() {
    auto& municipalities = controller_.DM->tbMunicipi;
    const bool standalone = ambrel::tagOf(*boxes_.municipality) == 0;
    const dbase::Bookmark before = municipalities.bookmark();
    if (standalone)
        controller_.OrdenaPorViaPostal();
    else
        validation_.goToStreet();
    if (controller_.BuscarDireccionPostal(standalone)) {
        validation_.takeStreet();
        validation_.settle(*boxes_.street);
    } else {
        municipalities.goTo(before);
        validation_.lookUpStreet(); // it may have been changed or deleted in the list
        validation_.settle(*boxes_.number);
    }
    boxes_.street->setFocus();
}

void StreetCommands::showCard() {
    if (ambrel::tagOf(*boxes_.street) == 0) {
        Mensaje_Info(boxes_.street->window(), tr("Elija antes una vía que esté en las tablas."),
                     tr("Ficha de la vía"));
        return;
    }
    const TDMCodPostales& tables = *controller_.DM;
    validation_.goToStreet();
    const bool isUsers = validation_.isAtUserStreet();
    const dbase::Bookmark municipality = tables.tbMunicipi.bookmark();
    controller_.MuestraFichaVia(isUsers ? opModificacion : opConsulta, boxes_.municipality->text());
    const dbase::Bookmark street = tables.tbPostal.bookmark();
    controller_.DM->tbMunicipi.goTo(municipality);
    if (isUsers && controller_.DM->tbPostal.goTo(street))
        validation_.takeStreet();
    validation_.settle(*boxes_.street);
}

} // namespace host
