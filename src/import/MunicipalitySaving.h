// Saving the streets that were found into the chosen municipality of the host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "import/StreetSaving.h"

namespace ambrel {

class FoundStreetsView;
class HostPlaceChoice;
class ImportMessages;

/// Refers to everything that it is made with.
class MunicipalitySaving {
public:
    MunicipalitySaving(TClassCodPostales& controller, ImportMessages& messages, const FoundStreetsView& found,
                       const HostPlaceChoice& place);

    /// Whether the chosen municipality has a single postal code.
    [[nodiscard]] bool CompruebaMunicipioConUnicoCP() const;
    /// Adds the streets or, in a municipality with several postal codes that are not the streets' own,
    /// completes the types of those that are there. Says at the end how many.
    void GuardaVias(StreetCodes codes);
    /// The same within a run over many municipalities: without a word, the progress window stays open, and a
    /// municipality with several codes is left out (null).
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
