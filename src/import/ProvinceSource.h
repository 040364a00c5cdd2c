// Streets of all municipalities of a province from the street-directory service.
#pragma once

#include "import/StreetSources.h"

namespace ambrel {

/// The answers are filed in POSTALES; the streets come without postal codes.
class ProvinceSource : public StreetSource {
public:
    explicit ProvinceSource(const SourceTools& tools);

    [[nodiscard]] const Description& description() const override;
    [[nodiscard]] PlaceList places() override;
    [[nodiscard]] PlaceList municipalities(const QString& place) override;
    [[nodiscard]] MunicipalityEnd file(const QString& province, const QString& municipality) override;

private:
    SourceTools tools_;
};

} // namespace ambrel
