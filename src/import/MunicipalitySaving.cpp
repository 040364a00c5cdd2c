// Saves the streets of one municipality.
#include "import/MunicipalitySaving.h"

#include <QScopeGuard>
#include <QWidget>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "import/FoundStreetsView.h"
#include "import/HostPlaceChoice.h"
#include "import/ImportMessages.h"
#include "import/InputPause.h"
#include "services/Mensaje.h"

namespace ambrel {

MunicipalitySaving::MunicipalitySaving(TClassCodPostales& controller, ImportMessages& messages,
                                       const FoundStreetsView& found, const HostPlaceChoice& place)
    : Controlador(controller), messages_(messages), found_(found), place_(place) {}

bool MunicipalitySaving::CompruebaMunicipioConUnicoCP() const {
    return hasOnlyOneCode(Controlador.DM->tbPostal.databaseName(), place_.municipality());
}

bool MunicipalitySaving::completesTypes(StreetCodes codes) const {
    return codes == StreetCodes::OfMunicipality && !CompruebaMunicipioConUnicoCP();
}

std::optional<StreetSaving::Outcome> MunicipalitySaving::GuardaViasEnLote(StreetCodes codes) {
    return completesTypes(codes) ? std::nullopt : std::optional(save(codes, nullptr));
}

void MunicipalitySaving::GuardaVias(StreetCodes codes) {
    const bool completes = completesTypes(codes);
    std::vector<std::string> postalCodes;
    if (completes) {
        postalCodes =
            CodigosPostalesMunicipio(Controlador.DM->tbPostal.databaseName(), place_.municipality());
        if (postalCodes.empty()) {
            return;
        }
    }
    StreetSaving::Outcome outcome;
    {
        const auto end = qScopeGuard([this] { messages_.close(); });
        outcome = save(codes, completes ? &postalCodes : nullptr);
    }
    report(outcome);
}

/// Adds the streets, or completes those with one of the postal codes.
StreetSaving::Outcome MunicipalitySaving::save(StreetCodes codes,
                                               const std::vector<std::string>* postalCodes) {
    const QString name = place_.municipalityName();
    const std::vector<ImportedStreet>& streets = found_.streets();
    messages_.open(QStringLiteral("Importando las calles de ") + name);
    const QString text = QStringLiteral("Importando las calles... %1 de %2 de ");
    const auto showRow = [&](std::size_t row) { messages_.change(text.arg(row).arg(streets.size()) + name); };
    const InputPause pause;
    StreetSaving saving{.controller = Controlador,
                        .streets = streets,
                        .municipality = place_.municipality(),
                        .codes = codes,
                        .beforeRow = showRow};
    return postalCodes ? saving.completeTypes(*postalCodes) : saving.addNew();
}

void MunicipalitySaving::report(const StreetSaving::Outcome& outcome) const {
    if (!outcome.failure.isEmpty()) {
        messages_.error(outcome.failure, QStringLiteral("Atención"));
    }
    QWidget* const dialog = messages_.window();
    Mensaje_Info(
        dialog ? dialog->parentWidget() : nullptr,
        QStringLiteral("Se han importado %1 calles al módulo de Códigos Postales").arg(outcome.count),
        QStringLiteral("Importación finalizada"));
}

} // namespace ambrel
