// The street card: the municipality and the data that depend on it.
#include <QLineEdit>
#include <QScopeGuard>
#include <string>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/Province.h"
#include "data/TableScope.h"
#include "dbase/dataset/row_walk.h"
#include "dialogs/FichaViaParts.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/ProvinceItems.h"
#include "lookup/RutCodPostales.h"
#include "services/Confamb.h"
#include "services/KeyCodes.h"
#include "services/Mensaje.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "services/TagProperty.h"
#include "services/Text.h"

using ambrel::fromWindows1252;
using ambrel::setTag;
using ambrel::tagOf;

namespace {

/// How municipalities are looked up, according to the host's municipality number.
enum class LookUpBy { PostalCode = 1, IneCode = 2, Name = 3 };

} // namespace

void TFFichaVia::Parts::BuscaVecindad() {
    const TDMCodPostales& tables = *Controlador.DM;
    dbase::Dataset& municipalities = Controlador.DM->tbMunicipi;
    const std::string postalCode = tables.tbPostalCODPOSTAL.text();
    if (!postalCode.empty()) {
        ambrel::TagScope order(municipalities, "CODPOSTAL");
        const bool found = TBBusca(municipalities, {{"CODPOSTAL", postalCode}}, exactSearch);
        // Deliberate: a postal code without a municipality shows the street's own name.
        const dbase::Field& shown = found ? tables.tbMunicipiNOMBRE : tables.tbPostalVIA;
        ui.EVecindad->setText(fromWindows1252(shown.text()));
        order.restore();
    }
    if (!Vecindad.isEmpty()) {
        ui.EVecindad->setText(Vecindad);
    } else if (postalCode.empty()) {
        ui.EVecindad->setText(fromWindows1252(tables.tbMunicipiNOMBRE.text()));
    }
}

/// The Tag holds the municipality's postal code here, whereas other boxes have the INE code. If two
/// municipalities share a name, the one already current, by its postal code or by the user's choice, stays.
void TFFichaVia::Parts::EVecindadChange() {
    TDMCodPostales& tables = *Controlador.DM;
    const QString name = ui.EVecindad->text();
    Controlador.OrdenaPorNombreMunicipi();
    const dbase::Bookmark current = tables.tbMunicipi.bookmark();
    const bool isNamed = name == fromWindows1252(tables.tbMunicipiNOMBRE.view());
    const std::string codIne = tables.tbMunicipiCOD_INE.text();
    const bool found = Controlador.BuscaEnMunicipi(name, exactSearch);
    if (found && isNamed && tables.tbMunicipiCOD_INE.view() != codIne) {
        tables.tbMunicipi.goTo(current);
    }
    setTag(*ui.EVecindad, found ? tables.tbMunicipiCODPOSTAL.integer() : 0);
}

void TFFichaVia::Parts::EVecindadKeyUp(std::uint16_t& key, Qt::KeyboardModifiers shift) {
    if (key == ambrel::key_code::down) {
        BBListarClick();
        return;
    }
    const QString text = ui.EVecindad->text();
    const int tag = tagOf(*ui.EVecindad);
    Controlador.OrdenaPorNombreMunicipi();
    Controlador.KeyUpMunicipi(ui.EVecindad, key, shift);
    // A completion leaves the INE code in the Tag, where it would pass for a postal code.
    if (tagOf(*ui.EVecindad) != tag || ui.EVecindad->text() != text) {
        EVecindadChange();
    }
}

void TFFichaVia::Parts::EVecindadExit() {
    const auto leaveFocus = qScopeGuard([this] { help->DejaFoco(ui.EVecindad); });
    const QString name = nameForProvince();
    QString postalCode = ui.DBECodPostal->text();
    // Deliberate: the number from the Tag has no leading zero, and is "0" for an unknown municipality.
    if (postalCode.isEmpty()) {
        postalCode = fromWindows1252(Int_Cad(tagOf(*ui.EVecindad)));
    }
    QString notAskedFor; // empty: no province requested
    Controlador.ExitMunicipi(ui.EVecindad, notAskedFor, postalCode, true);
    const QString codIne = fromWindows1252(Controlador.DM->tbMunicipiCOD_INE.text());
    if (takePostalCode(codIne, postalCode)) {
        takeProvince(name, codIne);
    }
}

/// Deliberate: without a province in the combo, returns the municipality's name.
QString TFFichaVia::Parts::nameForProvince() const {
    const QString province = ui.CBProvincia->currentText();
    const auto bracket = province.indexOf(QLatin1Char('['));
    return (bracket < 0 ? ui.EVecindad->text() : province.left(bracket)).trimmed();
}

/// False if the user keeps the existing postal code.
bool TFFichaVia::Parts::takePostalCode(const QString& codIne, const QString& postalCode) {
    const QString shown = ui.DBECodPostal->text();
    const bool isNew = codIne != CodIne || shown != postalCode;
    if (!isNew || (!shown.isEmpty() && shown == postalCode)) {
        return true;
    }
    if (!shown.isEmpty() && Mensaje_SiNo(&card, QStringLiteral("¿Desea actualizar el código código postal?"),
                                         QStringLiteral("El código postal difiere al que hay establecido"),
                                         QStringLiteral("Atención")) != answeredYes) {
        return false;
    }
    CodIne = codIne;
    ui.DBECodPostal->setText(postalCode); // and with it the street's
    return true;
}

/// Deliberate: the code is the municipality's, the name that of the province shown, even if they differ.
void TFFichaVia::Parts::takeProvince(const QString& name, const QString& codIne) {
    const QString item = ambrel::provinceItem(name, codIne.left(ambrel::provinceDigits));
    if (ui.CBProvincia->currentText() != item) {
        showText(*ui.CBProvincia, item);
    }
}

void TFFichaVia::Parts::BBListarClick() {
    QString codIne = CodIne, postalCode = ui.DBECodPostal->text(), name = ui.EVecindad->text();
    const auto orOwn = [](QString& text) {
        if (text.isEmpty()) {
            text = fromWindows1252(Config.GetsMunicipio());
        }
    };
    QString tag;
    switch (static_cast<LookUpBy>(Config.GetnMunicipio())) {
    case LookUpBy::PostalCode:
        tag = QStringLiteral("CODPOSTAL");
        orOwn(postalCode);
        break;
    case LookUpBy::IneCode:
        tag = QStringLiteral("COD_INE");
        orOwn(codIne);
        break;
    case LookUpBy::Name:
    default: // no other number selects a lookup; the box holds a name
        tag = QStringLiteral("NOMBRE");
        orOwn(name);
        break;
    }
    QString provinceName, provinceCode, municipalityNumber;
    if (!IMunicipios(&card, codIne, postalCode, name, provinceName, provinceCode, municipalityNumber, tag,
                     QStringLiteral("Lista de municipios del I.N.E."))) {
        return;
    }
    ui.EVecindad->setText(name);
    goToMunicipality(codIne);
    EVecindadChange(); // sets the Tag to the chosen one's
    if (takePostalCode(codIne, postalCode)) {
        takeProvince(nameForProvince(), codIne);
    }
}

/// Searches among those with the name in the box, of which there may be several.
void TFFichaVia::Parts::goToMunicipality(const QString& codIne) {
    dbase::Dataset& municipalities = Controlador.DM->tbMunicipi;
    const TDMCodPostales& tables = *Controlador.DM;
    Controlador.OrdenaPorNombreMunicipi();
    if (!Controlador.BuscaEnMunicipi(ui.EVecindad->text(), exactSearch)) {
        return;
    }
    const dbase::Bookmark first = municipalities.bookmark();
    const std::string name = tables.tbMunicipiNOMBRE.text();
    const auto hasName = [&] { return tables.tbMunicipiNOMBRE.view() == name; };
    const auto hasCode = [&] { return fromWindows1252(tables.tbMunicipiCOD_INE.view()) == codIne; };
    if (!dbase::walkTo(municipalities, hasName, hasCode)) {
        municipalities.goTo(first);
    }
}
