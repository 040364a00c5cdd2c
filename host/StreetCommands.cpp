#include "host/StreetCommands.h"

#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

#include "host/AddressValidation.h"
#include "package/AmbCodPostales.h"

namespace host {
namespace {

constexpr bool nearest = false;

} // namespace

StreetCommands::StreetCommands(const AddressForm& form, TClassCodPostales& controller,
                               AddressValidation& validation, QObject* parent)
    : QObject(parent), boxes_(form.boxes()), controller_(controller), validation_(validation) {
    const auto choose = ambrel::guarded([this] { chooseStreet(); });
    connect(form.findChild<QPushButton*>(QStringLiteral("BBVia")), &QPushButton::clicked, this, choose);
    connect(new QShortcut(Qt::Key_F4, boxes_.street, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, choose);
}

void StreetCommands::chooseStreet() {
    auto& municipalities = controller_.DM->tbMunicipi;
    const bool standalone = ambrel::tagOf(*boxes_.municipality) == 0;
    const dbase::Bookmark before = municipalities.bookmark();
    controller_.OrdenaPorViaPostal();
    if (!standalone)
        controller_.BuscaEnPostal(boxes_.street->text(), boxes_.streetType->text(), nearest);
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
    controller_.OrdenaPorViaPostal();
    controller_.BuscaEnPostal(boxes_.street->text(), boxes_.streetType->text(), nearest);
    const bool isUsers = StrLeft(tables.tbPostalCODIGO1.text(), 2) == "99";
    const dbase::Bookmark municipality = tables.tbMunicipi.bookmark();
    controller_.MuestraFichaVia(isUsers ? opModificacion : opConsulta, boxes_.municipality->text());
    const dbase::Bookmark street = tables.tbPostal.bookmark();
    controller_.DM->tbMunicipi.goTo(municipality);
    if (isUsers && controller_.DM->tbPostal.goTo(street))
        validation_.takeStreet();
    validation_.settle(*boxes_.street);
}

} // namespace host
