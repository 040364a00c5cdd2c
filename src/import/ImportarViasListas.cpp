// The import dialog's combos: provinces, municipalities and files.
#include <QComboBox>
#include <QScopeGuard>

#include "controller/ClasCodPostales.h"
#include "data/Province.h"
#include "dialogs/common/FocusHelp.h"
#include "import/HostPlaces.h"
#include "import/ImportarVias.h"
#include "import/InputPause.h"
#include "import/ResponseFolder.h"
#include "services/Mensaje.h"
#include "services/Rficheros.h"
#include "ui_ImportarVias.h"

namespace {

QString failureTitle() { return QStringLiteral("Error al importar los datos"); }

/// Adds places with their numbers as item data; none of them is chosen.
void setPlaces(QComboBox& combo, const std::vector<ambrel::HostPlace>& places) {
    for (const ambrel::HostPlace& place : places) {
        combo.addItem(place.name, place.number);
    }
    combo.setCurrentIndex(-1);
}

} // namespace

// --- The web's side.

/// Deliberate: whatever the folder holds is listed, without filter, as a name up to its first dot.
void TFImportarVias::CargaMunicipiosMasDeUnCodigo() {
    std::vector<std::string> entries;
    FindFileNoRecursivo(SlashSep(ambrel::postalesFolder(databaseName()), "*.*", '\\'),
                        ambrel::file_attribute::any, entries);
    for (const std::string& entry : entries) {
        const std::string name = entry.substr(entry.rfind('/') + 1);
        ui_->CBProvincias->addItem(QString::fromStdString(name.substr(0, name.find('.'))));
    }
    ui_->CBProvincias->setCurrentIndex(-1);
}

void TFImportarVias::CargaMunicipiosUnCodigo() {
    openProgress(QStringLiteral("Importando el listado de provincias"));
    bool isLoaded = false;
    {
        const auto end = qScopeGuard([this] { closeProgress(); });
        isLoaded = succeeds([this] { return TraeProvincias(); });
        QWidget* const next = isLoaded ? static_cast<QWidget*>(ui_->CBProvincias) : ui_->BBCancelar;
        next->setFocus();
    }
    if (!isLoaded) {
        Mensaje_Error(this,
                      QStringLiteral("No se han podido cargar las provincias.Salga de la ventana y vuelva a "
                                     "intentarlo de nuevo más tarde"),
                      failureTitle());
    }
}

void TFImportarVias::CBProvinciasExit() {
    help_->DejaFoco(ui_->CBProvincias);
    if (mode() == ambrel::ImportMode::SeveralCodes) {
        if (ui_->CBProvincias->count() == 0) {
            Mensaje_Info(this,
                         QStringLiteral("Le faltan los ficheros correspondientes a los CP múltiples.\r"
                                        "póngase en contacto con nuestro soporte técnico"),
                         QStringLiteral("Faltan datos"));
        }
        return;
    }
    if (!loadMunicipalities()) {
        ui_->CBProvincias->setCurrentIndex(-1);
        ui_->CBMunicipios->clear();
        Mensaje_Error(this,
                      QStringLiteral("No se han podido cargar los municipios asociados a la provincia "
                                     "indicada.Inténtelo de nuevo más tarde"),
                      failureTitle());
    }
    if (ui_->CBMunicipios->isVisible()) {
        ui_->CBMunicipios->setFocus();
    }
}

bool TFImportarVias::loadMunicipalities() {
    openProgress(QStringLiteral("Importando el listado de municipios de..."));
    const auto end = qScopeGuard([this] { closeProgress(); });
    CambiaMensaje(ui_->CBProvincias->currentText(), Progreso);
    return succeeds([this] { return TraeMunicipios(); });
}

// --- The host's side.

void TFImportarVias::CargaProvinciasAmbrel() {
    LiberaProvinciasAmbrel();
    LiberaMunicipiosAmbrel();
    setPlaces(*ui_->CBProvinciasAmbrel, ambrel::hostProvinces(databaseName()));
}

void TFImportarVias::CBProvinciasAmbrelExit() {
    help_->DejaFoco(ui_->CBProvinciasAmbrel);
    if (ui_->CBProvinciasAmbrel->currentIndex() >= 0) {
        loadHostMunicipalities();
    } else {
        Mensaje_Info(this, QStringLiteral("Indique una provincia para poder seleccionar el municipio"),
                     QStringLiteral("Faltan datos"));
    }
    if (ui_->GBDatosAmbrel->isVisible() && ui_->CBMunicipiosAmbrel->isVisible()) {
        ui_->CBMunicipiosAmbrel->setFocus();
    }
}

void TFImportarVias::loadHostMunicipalities() {
    openProgress(QStringLiteral("Cargando el listado de municipios de ") +
                 ui_->CBProvinciasAmbrel->currentText());
    const auto end = qScopeGuard([this] { closeProgress(); });
    LiberaMunicipiosAmbrel();
    const int province = ui_->CBProvinciasAmbrel->currentData().toInt();
    setPlaces(*ui_->CBMunicipiosAmbrel,
              ambrel::hostMunicipalities(databaseName(), ambrel::codeOf(province, ambrel::provinceDigits)));
}

void TFImportarVias::LiberaProvinciasAmbrel() { ui_->CBProvinciasAmbrel->clear(); }

void TFImportarVias::LiberaMunicipiosAmbrel() { ui_->CBMunicipiosAmbrel->clear(); }
