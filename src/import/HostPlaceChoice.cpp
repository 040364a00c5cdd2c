// Chooses the host's province and municipality.
#include "import/HostPlaceChoice.h"

#include <QComboBox>
#include <utility>

#include "data/Province.h"
#include "import/HostPlaces.h"
#include "import/ImportMessages.h"
#include "import/MunicipalityMatch.h"
#include "lookup/RutCodPostales.h"
#include "services/Text.h"

namespace ambrel {
namespace {

/// Adds places with their numbers as item data, with none chosen.
void setPlaces(QComboBox& combo, const std::vector<HostPlace>& places) {
    for (const HostPlace& place : places) {
        combo.addItem(place.name, place.number);
    }
    combo.setCurrentIndex(-1);
}

/// The chosen item's number as a code; empty if none is chosen.
std::string chosenCode(const QComboBox& combo, int digits) {
    return combo.currentIndex() < 0 ? std::string() : codeOf(combo.currentData().toInt(), digits);
}

} // namespace

int Indice(const QComboBox& combo, const QString& text) {
    const QString wanted = text.toUpper();
    for (int index = 0; index < combo.count(); ++index) {
        if (combo.itemText(index).toUpper() == wanted) {
            return index;
        }
    }
    return -1;
}

HostPlaceChoice::HostPlaceChoice(std::string database, ImportMessages& messages, QComboBox& provinces,
                                 QComboBox& municipalities, std::function<void()> onLeave)
    : database_(std::move(database)), messages_(messages), provinces_(provinces),
      municipalities_(municipalities), onLeave_(std::move(onLeave)) {}

void HostPlaceChoice::CargaProvinciasAmbrel() {
    LiberaProvinciasAmbrel();
    LiberaMunicipiosAmbrel();
    setPlaces(provinces_, hostProvinces(database_));
}

void HostPlaceChoice::CBProvinciasAmbrelExit() {
    if (onLeave_) {
        onLeave_();
    }
    if (provinces_.currentIndex() >= 0) {
        loadMunicipalities();
    } else {
        messages_.info(QStringLiteral("Indique una provincia para poder seleccionar el municipio"),
                       missingDataTitle());
    }
    if (municipalities_.isVisible()) {
        municipalities_.setFocus();
    }
}

void HostPlaceChoice::loadMunicipalities() {
    const ShownProgress progress(messages_, QStringLiteral("Cargando el listado de municipios de ") +
                                                provinces_.currentText());
    LiberaMunicipiosAmbrel();
    const int province = provinces_.currentData().toInt();
    setPlaces(municipalities_, hostMunicipalities(database_, codeOf(province, provinceDigits)));
}

void HostPlaceChoice::LiberaProvinciasAmbrel() { provinces_.clear(); }

void HostPlaceChoice::LiberaMunicipiosAmbrel() { municipalities_.clear(); }

void HostPlaceChoice::clear() {
    clearProvince();
    municipalities_.setCurrentIndex(-1);
}

void HostPlaceChoice::clearProvince() { provinces_.setCurrentIndex(-1); }

/// Deliberate: of two provinces with the code, the later one is chosen.
int HostPlaceChoice::provinceIndex(const HostPlaceName& place) const {
    if (!place.provinceCode) {
        return Indice(provinces_, place.province);
    }
    for (int index = provinces_.count() - 1; index >= 0; --index) {
        if (provinces_.itemData(index).toInt() == *place.provinceCode) {
            return index;
        }
    }
    return -1;
}

void HostPlaceChoice::choose(const HostPlaceName& place) {
    provinces_.setCurrentIndex(provinceIndex(place));
    if (provinces_.currentIndex() >= 0) {
        CBProvinciasAmbrelExit();
        chooseMunicipality(place.municipality);
    }
}

void HostPlaceChoice::chooseMunicipality(const QString& name) {
    municipalities_.setCurrentIndex(Indice(municipalities_, name));
}

bool HostPlaceChoice::chooseForAnswer(const QString& province, QString& municipality) {
    if (provinces_.currentIndex() < 0) {
        provinces_.setCurrentIndex(Indice(provinces_, province));
        if (provinces_.currentIndex() >= 0) {
            CBProvinciasAmbrelExit();
        }
    }
    if (provinces_.currentIndex() < 0) {
        chooseMunicipality(municipality);
        return false;
    }
    const auto match = matchMunicipality(
        municipality, [this](const QString& name) { return Indice(municipalities_, name); });
    municipalities_.setCurrentIndex(match.index);
    municipality = match.name;
    return match.index >= 0;
}

void HostPlaceChoice::ask(const QString& province, const QString& municipality) {
    QString codIne, postalCode, name = municipality, provinceName = province, provinceCode, number;
    const QString caption = QStringLiteral("Seleccione el municipio donde importar las vias de %1 (%2)");
    if (IMunicipios(messages_.window(), codIne, postalCode, name, provinceName, provinceCode, number,
                    QStringLiteral("NOMBRE"), caption.arg(municipality, province))) {
        choose({.province = provinceName, .municipality = name});
    }
}

bool HostPlaceChoice::isChosen() const {
    return provinces_.currentIndex() >= 0 && municipalities_.currentIndex() >= 0;
}

QString HostPlaceChoice::municipalityName() const { return municipalities_.currentText(); }

HostMunicipality HostPlaceChoice::municipality() const {
    return {.provinceCode = chosenCode(provinces_, provinceDigits),
            .postalCode = chosenCode(municipalities_, postalCodeDigits),
            .name = toNearestWindows1252(municipalities_.currentText()),
            .isFirstOfList = municipalities_.currentIndex() == 0};
}

} // namespace ambrel
