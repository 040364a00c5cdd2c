// Streets of a municipality from the street-directory service.
#pragma once

#include "import/StreetSources.h"

namespace ambrel {

/// The streets come without postal codes.
class MunicipalitySource : public StreetSource {
public:
    explicit MunicipalitySource(const SourceTools& tools);

    [[nodiscard]] const Description& description() const override;
    [[nodiscard]] PlaceList places() override;
    [[nodiscard]] PlaceList municipalities(const QString& place) override;
    [[nodiscard]] FoundStreets find(const QString& place, const QString& municipality) override;

private:
    SourceTools tools_;
};

} // namespace ambrel
