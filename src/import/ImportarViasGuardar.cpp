// The import dialog: saving the streets of one municipality.
#include <QComboBox>

#include "controller/ClasCodPostales.h"
#include "data/Province.h"
#include "import/HostPlaces.h"
#include "import/ImportarVias.h"
#include "import/InputPause.h"
#include "import/ProvinceRun.h"
#include "services/Mensaje.h"
#include "services/Text.h"
#include "ui_ImportarVias.h"

namespace {

/// The chosen item's number as a code; empty when none is chosen.
std::string chosenCode(const QComboBox& combo, int digits) {
    return combo.currentIndex() < 0 ? std::string() : ambrel::codeOf(combo.currentData().toInt(), digits);
}

} // namespace

void TFImportarVias::BBGuardarPorMunicipioClick() {
    // Deliberate: an empty list goes on, since it has a row all the same; saving refuses its empty name.
    if (ui_->SGVias->streets().empty()) {
        Mensaje_Info(this, QStringLiteral("No hay vías que importar. El listado está vacío"),
                     QStringLiteral("Busque antes las vías"));
        return;
    }
    if (ui_->CBProvinciasAmbrel->currentIndex() >= 0 && ui_->CBMunicipiosAmbrel->currentIndex() >= 0) {
        GuardaVias();
    } else {
        Mensaje_Info(this,
                     QStringLiteral("No ha indicado correctamente el nombre de la provincia o el municipio"),
                     QStringLiteral("Seleccione donde importar las calles"));
    }
}

ambrel::HostMunicipality TFImportarVias::hostMunicipality() const {
    const QComboBox& municipalities = *ui_->CBMunicipiosAmbrel;
    return {.provinceCode = chosenCode(*ui_->CBProvinciasAmbrel, ambrel::provinceDigits),
            .postalCode = chosenCode(municipalities, ambrel::postalCodeDigits),
            .name = ambrel::toNearestWindows1252(municipalities.currentText()),
            .isFirstOfList = municipalities.currentIndex() == 0};
}

bool TFImportarVias::CompruebaMunicipioConUnicoCP() const {
    return ambrel::hasOnlyOneCode(databaseName(), hostMunicipality());
}

void TFImportarVias::GuardaVias() {
    const bool completes = mode() != ambrel::ImportMode::SeveralCodes && !CompruebaMunicipioConUnicoCP();
    if (completes && EnLote) {
        return;
    }
    std::vector<std::string> postalCodes;
    if (completes) {
        postalCodes = ambrel::CodigosPostalesMunicipio(databaseName(), hostMunicipality());
        if (postalCodes.empty()) {
            return;
        }
    }
    const ambrel::StreetSaving::Outcome outcome = saveStreets(completes ? &postalCodes : nullptr);
    if (EnLote) {
        if (!outcome.failure.isEmpty()) {
            batchFailure_ = outcome.failure;
        }
        if (run_) {
            run_->addStreets(outcome.stored);
            run_->told(outcome.failure.isEmpty() ? ambrel::MunicipalityEnd::Done
                                                 : ambrel::MunicipalityEnd::Failed);
        }
        return;
    }
    closeProgress();
    if (!outcome.failure.isEmpty()) {
        Mensaje_Error(this, outcome.failure, QStringLiteral("Atención"));
    }
    Mensaje_Info(
        parentWidget(),
        QStringLiteral("Se han importado %1 calles al módulo de Códigos Postales").arg(outcome.count),
        QStringLiteral("Importación finalizada"));
}

/// Adds the streets, or completes those with one of the postal codes.
ambrel::StreetSaving::Outcome TFImportarVias::saveStreets(const std::vector<std::string>* postalCodes) {
    const QString municipality = ui_->CBMunicipiosAmbrel->currentText();
    const std::vector<ambrel::ImportedStreet>& streets = ui_->SGVias->streets();
    openProgress(QStringLiteral("Importando las calles de ") + municipality);
    const QString text = QStringLiteral("Importando las calles... %1 de %2 de ");
    const auto showRow = [&](std::size_t row) {
        CambiaMensaje(text.arg(row).arg(streets.size()) + municipality, Progreso);
    };
    const ambrel::InputPause pause;
    ambrel::StreetSaving saving{.controller = Controlador,
                                .streets = streets,
                                .municipality = hostMunicipality(),
                                .mode = mode(),
                                .beforeRow = showRow};
    try {
        return postalCodes ? saving.completeTypes(*postalCodes) : saving.addNew();
    } catch (...) {
        if (!EnLote) {
            closeProgress();
        }
        throw;
    }
}
