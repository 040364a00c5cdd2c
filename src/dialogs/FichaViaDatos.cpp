// The street card: provinces and street types in their combos, and checks of the typed data.
#include <QComboBox>
#include <algorithm>
#include <string>

#include "controller/ClasCodPostales.h"
#include "controller/NumberRange.h"
#include "data/CodPostalesDM.h"
#include "data/TableDefinitions.h"
#include "dialogs/FichaViaParts.h"
#include "dialogs/common/ProvinceItems.h"
#include "services/Mensaje.h"
#include "services/Text.h"

using ambrel::BoundEdit;
using ambrel::fromWindows1252;
using ambrel::toNearestWindows1252;
using ambrel::toWindows1252;

namespace {

constexpr const char* commonestType = "CL"; // calle

QString wrongData() { return QStringLiteral("Incorrección de datos"); }

QString itemOf(const ambrel::Province& province) {
    return ambrel::provinceItem(fromWindows1252(province.name), fromWindows1252(province.code));
}

QString itemOf(const ambrel::StreetType& type) {
    return fromWindows1252(type.code) + QStringLiteral(" - ") + fromWindows1252(type.name);
}

void clearCurrentItem(QComboBox& combo) { combo.setCurrentIndex(-1); }

/// The index of an item among items in alphabetical order.
int placeOf(const QString& item, const QComboBox& combo) {
    int place = 0;
    while (place < combo.count() && combo.itemText(place) <= item) {
        ++place;
    }
    return place;
}

} // namespace

/// Shows a text; its item, if there is one, becomes current.
void TFFichaVia::Parts::showText(QComboBox& combo, const QString& text) {
    combo.setCurrentIndex(combo.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    combo.setEditText(text);
}

/// Deliberate: items already there stay.
void TFFichaVia::Parts::CargaProvincias() {
    QComboBox& combo = *ui.CBProvincia;
    const QString shown = combo.currentText();
    for (const ambrel::Province& province : cardTables.provinces()) {
        combo.addItem(itemOf(province));
    }
    showText(combo, shown); // a combo automatically makes its first item current
}

void TFFichaVia::Parts::CargaTipoVia() {
    QComboBox& combo = *ui.CBTipoVia;
    combo.clear();
    QString current;
    for (const ambrel::StreetType& type : cardTables.streetTypes()) {
        const QString item = itemOf(type);
        combo.insertItem(placeOf(item, combo), item);
        if (type.code == commonestType) {
            current = item;
        }
    }
    showText(combo, current);
}

void TFFichaVia::Parts::BuscaProvinciaPorCodigo() {
    const std::string code = Controlador.DM->tbPostalPROVINCIA.text();
    const auto province = code.empty() ? std::nullopt : cardTables.findProvince(code);
    if (province) {
        showText(*ui.CBProvincia, itemOf(*province));
    } else {
        clearCurrentItem(*ui.CBProvincia);
    }
}

void TFFichaVia::Parts::BuscaTipoViaPorCodigo() {
    const std::string code = Controlador.DM->tbPostalTIPO_VIA.text();
    const auto type = code.empty() ? std::nullopt : cardTables.findStreetType(code);
    if (type) {
        showText(*ui.CBTipoVia, itemOf(*type));
    } else {
        clearCurrentItem(*ui.CBTipoVia);
    }
}

QString TFFichaVia::Parts::ObtenCodProv(const QString& province) {
    const auto text = toWindows1252(province);
    const auto shown = toWindows1252(ui.CBProvincia->currentText());
    if (!text || !shown) {
        return QStringLiteral("00");
    }
    return fromWindows1252(cardTables.provinceCode(ambrel::provinceNameIn(*text, *shown)));
}

QString TFFichaVia::Parts::ObtenTipoVia(const QString& streetType) {
    const auto text = toWindows1252(streetType);
    const auto found = text ? cardTables.findStreetType(ambrel::streetTypeCodeIn(*text)) : std::nullopt;
    return found ? fromWindows1252(found->code) : QString();
}

bool TFFichaVia::Parts::ValidaProvincia(const QString& province, const QString& expectedCode) {
    const QString text = province.trimmed();
    return !text.isEmpty() && ObtenCodProv(text) == expectedCode;
}

bool TFFichaVia::Parts::ValidaTipoVia(const QString& streetType) {
    // A blank code may exist in the table.
    return cardTables.findStreetType(toNearestWindows1252(ObtenTipoVia(streetType.trimmed()))).has_value();
}

bool TFFichaVia::Parts::ValidaCodPostal(const QString& postalCode, const QString& province) {
    const auto code = toWindows1252(postalCode.trimmed());
    const auto provinceCode = toWindows1252(ObtenCodProv(province));
    return code && provinceCode && ambrel::isPostalCodeOf(*code, *provinceCode);
}

/// Deliberate: empty numbers are filled in even if a check failed.
bool TFFichaVia::Parts::CompruebaDatos() {
    const bool areTextsRight = checkTexts();
    fillEmptyNumbers();
    return areTextsRight && checkNumbers();
}

bool TFFichaVia::Parts::checkTexts() {
    const auto fails = [this](const QString& message, QWidget* control) {
        Mensaje_Error(&card, message, wrongData());
        control->setFocus();
        return false;
    };
    const TDMCodPostales& tables = *Controlador.DM;
    const QString municipality = ui.EVecindad->text().trimmed();
    const QString province = ui.CBProvincia->currentText().trimmed();
    if (municipality.isEmpty() || municipality != fromWindows1252(tables.tbMunicipiNOMBRE.text())) {
        return fails(QStringLiteral("No ha especificado la vecindad de la nueva via o no es correcta"),
                     ui.EVecindad);
    }
    if (!ValidaProvincia(province, fromWindows1252(tables.tbMunicipiCOD_PROV.text()))) {
        return fails(QStringLiteral("No ha especificado la provincia de la nueva via o no es correcta"),
                     ui.CBProvincia);
    }
    if (!ValidaTipoVia(ui.CBTipoVia->currentText())) {
        return fails(QStringLiteral("No ha especificado el tipo de via de la nueva via o no es correcta"),
                     ui.CBTipoVia);
    }
    if (ui.DBEVia->text().trimmed().isEmpty()) {
        return fails(QStringLiteral("No ha especificado el nombre de la nueva via"), ui.DBEVia);
    }
    if (ui.DBEVia->isRefused()) { // pasted: only typing stops where the column ends
        return fails(QStringLiteral("El nombre de la vía no cabe en la tabla (%1 letras, como mucho) o tiene "
                                    "signos que la tabla no guarda")
                         .arg(ambrel::streetNameWidth),
                     ui.DBEVia);
    }
    if (!ValidaCodPostal(ui.DBECodPostal->text(), province)) {
        return fails(QStringLiteral("No ha especificado el código postal de la nueva via o no es correcta"),
                     ui.DBECodPostal);
    }
    return true;
}

void TFFichaVia::Parts::fillEmptyNumbers() {
    using ambrel::wholeStreet;
    const std::initializer_list<std::pair<BoundEdit*, int>> defaults = {
        {ui.DBEImparIni, wholeStreet.odd.first},
        {ui.DBEImparFin, wholeStreet.odd.last},
        {ui.DBEParIni, wholeStreet.even.first},
        {ui.DBEParFin, wholeStreet.even.last}};
    for (const auto& [edit, number] : defaults) {
        if (edit->text().trimmed().isEmpty()) {
            edit->setText(QString::number(number));
        }
    }
}

/// A number that the column cannot hold is still only in its edit.
bool TFFichaVia::Parts::checkNumbers() {
    for (BoundEdit* const edit : {ui.DBEImparIni, ui.DBEImparFin, ui.DBEParIni, ui.DBEParFin}) {
        if (!edit->isRefused()) {
            continue;
        }
        const QString message =
            QStringLiteral("\"%1\" no es un número válido en %2: escriba uno entero, de -32768 a 32767");
        Mensaje_Error(&card, message.arg(edit->text(), edit->accessibleName()), wrongData());
        edit->setFocus();
        edit->selectAll();
        return false;
    }
    return true;
}
