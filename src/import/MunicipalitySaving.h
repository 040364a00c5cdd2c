// Saves the found streets into the chosen municipality of the host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "import/StreetSaving.h"

namespace ambrel {

class FoundStreetsView;
class HostPlaceChoice;
class ImportMessages;

/// Refers to all arguments of its constructor, which must outlive it.
class MunicipalitySaving {
public:
    MunicipalitySaving(TClassCodPostales& controller, ImportMessages& messages, const FoundStreetsView& found,
                       const HostPlaceChoice& place);

    /// Whether the chosen municipality has a single postal code.
    [[nodiscard]] bool CompruebaMunicipioConUnicoCP() const;
    /// Adds the streets or, in a municipality with several postal codes that are not the streets' own,
    /// completes the types of the existing ones. Reports the number at the end.
    void GuardaVias(StreetCodes codes);
    /// The same within a run over many municipalities: shows no message, leaves the progress window open, and
    /// skips a municipality with several codes (null).
    [[nodiscard]] std::optional<StreetSaving::Outcome> GuardaViasEnLote(StreetCodes codes);

private:
    [[nodiscard]] bool completesTypes(StreetCodes codes) const;
    [[nodiscard]] StreetSaving::Outcome save(StreetCodes codes, const std::vector<std::string>* postalCodes);
    void report(const StreetSaving::Outcome& outcome) const;

    TClassCodPostales& Controlador;
    ImportMessages& messages_;
    const FoundStreetsView& found_;
    const HostPlaceChoice& place_;
};

} // namespace ambrel
