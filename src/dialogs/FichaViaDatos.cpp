// The street card: provinces and street types in their combos, and checks of the typed data.
#include <QComboBox>
#include <algorithm>
#include <string>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dialogs/FichaVia.h"
#include "dialogs/common/ProvinceItems.h"
#include "services/Mensaje.h"
#include "services/Text.h"
#include "ui_FichaVia.h"

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
void TFFichaVia::showText(QComboBox& combo, const QString& text) {
    combo.setCurrentIndex(combo.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    combo.setEditText(text);
}

/// Deliberate: items already there stay.
void TFFichaVia::CargaProvincias() {
    QComboBox& combo = *ui_->CBProvincia;
    const QString shown = combo.currentText();
    for (const ambrel::Province& province : tables_.provinces()) {
        combo.addItem(itemOf(province));
    }
    showText(combo, shown); // a combo automatically makes its first item current
}

void TFFichaVia::CargaTipoVia() {
    QComboBox& combo = *ui_->CBTipoVia;
    combo.clear();
    QString current;
    for (const ambrel::StreetType& type : tables_.streetTypes()) {
        const QString item = itemOf(type);
        combo.insertItem(placeOf(item, combo), item);
        if (type.code == commonestType) {
            current = item;
        }
    }
    showText(combo, current);
}

void TFFichaVia::BuscaProvinciaPorCodigo() {
    const std::string code = Controlador.DM->tbPostalPROVINCIA.text();
    const auto province = code.empty() ? std::nullopt : tables_.findProvince(code);
    if (province) {
        showText(*ui_->CBProvincia, itemOf(*province));
    } else {
        clearCurrentItem(*ui_->CBProvincia);
    }
}

void TFFichaVia::BuscaTipoViaPorCodigo() {
    const std::string code = Controlador.DM->tbPostalTIPO_VIA.text();
    const auto type = code.empty() ? std::nullopt : tables_.findStreetType(code);
    if (type) {
        showText(*ui_->CBTipoVia, itemOf(*type));
    } else {
        clearCurrentItem(*ui_->CBTipoVia);
    }
}

QString TFFichaVia::ObtenCodProv(const QString& province) {
    const auto text = toWindows1252(province);
    const auto shown = toWindows1252(ui_->CBProvincia->currentText());
    if (!text || !shown) {
        return QStringLiteral("00");
    }
    return fromWindows1252(tables_.provinceCode(ambrel::provinceNameIn(*text, *shown)));
}

QString TFFichaVia::ObtenTipoVia(const QString& streetType) {
    const auto text = toWindows1252(streetType);
    const auto found = text ? tables_.findStreetType(ambrel::streetTypeCodeIn(*text)) : std::nullopt;
    return found ? fromWindows1252(found->code) : QString();
}

bool TFFichaVia::ValidaProvincia(const QString& province, const QString& expectedCode) {
    const QString text = province.trimmed();
    return !text.isEmpty() && ObtenCodProv(text) == expectedCode;
}

bool TFFichaVia::ValidaTipoVia(const QString& streetType) {
    // A blank code may exist in the table.
    return tables_.findStreetType(toNearestWindows1252(ObtenTipoVia(streetType.trimmed()))).has_value();
}

bool TFFichaVia::ValidaCodPostal(const QString& postalCode, const QString& province) {
    const auto code = toWindows1252(postalCode.trimmed());
    const auto provinceCode = toWindows1252(ObtenCodProv(province));
    return code && provinceCode && ambrel::isPostalCodeOf(*code, *provinceCode);
}

/// Deliberate: empty numbers are filled in even if a check failed.
bool TFFichaVia::CompruebaDatos() {
    const bool areTextsRight = checkTexts();
    fillEmptyNumbers();
    return areTextsRight && checkNumbers();
}

bool TFFichaVia::checkTexts() {
    const auto fails = [this](const QString& message, QWidget* control) {
        Mensaje_Error(this, message, wrongData());
        control->setFocus();
        return false;
    };
    const TDMCodPostales& tables = *Controlador.DM;
    const QString municipality = ui_->EVecindad->text().trimmed();
    const QString province = ui_->CBProvincia->currentText().trimmed();
    if (municipality.isEmpty() || municipality != fromWindows1252(tables.tbMunicipiNOMBRE.text())) {
        return fails(QStringLiteral("No ha especificado la vecindad de la nueva via o no es correcta"),
                     ui_->EVecindad);
    }
    if (!ValidaProvincia(province, fromWindows1252(tables.tbMunicipiCOD_PROV.text()))) {
        return fails(QStringLiteral("No ha especificado la provincia de la nueva via o no es correcta"),
                     ui_->CBProvincia);
    }
    if (!ValidaTipoVia(ui_->CBTipoVia->currentText())) {
        return fails(QStringLiteral("No ha especificado el tipo de via de la nueva via o no es correcta"),
                     ui_->CBTipoVia);
    }
    if (ui_->DBEVia->text().trimmed().isEmpty()) {
        return fails(QStringLiteral("No ha especificado el nombre de la nueva via"), ui_->DBEVia);
    }
    if (!ValidaCodPostal(ui_->DBECodPostal->text(), province)) {
        return fails(QStringLiteral("No ha especificado el código postal de la nueva via o no es correcta"),
                     ui_->DBECodPostal);
    }
    return true;
}

void TFFichaVia::fillEmptyNumbers() {
    const std::initializer_list<std::pair<BoundEdit*, const char*>> defaults = {
        {ui_->DBEImparIni, "1"}, {ui_->DBEImparFin, "9999"}, {ui_->DBEParIni, "2"}, {ui_->DBEParFin, "9998"}};
    for (const auto& [edit, number] : defaults) {
        if (edit->text().trimmed().isEmpty()) {
            edit->setText(QLatin1String(number));
        }
    }
}

/// A number that the column cannot hold is still only in its edit.
bool TFFichaVia::checkNumbers() {
    for (BoundEdit* const edit : {ui_->DBEImparIni, ui_->DBEImparFin, ui_->DBEParIni, ui_->DBEParFin}) {
        if (!edit->isRefused()) {
            continue;
        }
        const QString message =
            QStringLiteral("\"%1\" no es un número válido en %2: escriba uno entero, de -32768 a 32767");
        Mensaje_Error(this, message.arg(edit->text(), edit->accessibleName()), wrongData());
        edit->setFocus();
        edit->selectAll();
        return false;
    }
    return true;
}
