// Streets of a municipality with several postal codes, from its file in POSTALES.
#pragma once

#include "import/StreetSources.h"

namespace ambrel {

/// The streets bring their postal codes and house numbers.
class MunicipalityFileSource : public StreetSource {
public:
    explicit MunicipalityFileSource(const SourceTools& tools);

    [[nodiscard]] const Description& description() const override;
    [[nodiscard]] PlaceList places() override;
    /// Deliberate: always whole, even if there is no file.
    [[nodiscard]] FoundStreets find(const QString& place, const QString& municipality) override;
    [[nodiscard]] HostPlaceName hostPlace(const QString& place, const QString& municipality) const override;

private:
    [[nodiscard]] PlaceList CargaMunicipiosMasDeUnCodigo() const;
    [[nodiscard]] FoundStreets ImportarViasMasUnCodigo(const QString& key) const;
    [[nodiscard]] std::vector<ImportedStreet> read(const std::string& text) const;
    [[nodiscard]] FoundStreets refuse(const QString& why) const;

    SourceTools tools_;
};

} // namespace ambrel
