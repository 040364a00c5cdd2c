// Streets of a municipality from the street-directory service.
#include "import/MunicipalitySource.h"

#include "import/DirectoryClient.h"

namespace ambrel {

MunicipalitySource::MunicipalitySource(const SourceTools& tools) : tools_(tools) {}

const StreetSource::Description& MunicipalitySource::description() const {
    static const Description description{
        .option = "RBUno",
        .caption = QStringLiteral("2.  Importar calles de municipios con un único código postal  /  Revisar "
                                  "tipos de vía con más de un código"),
        .placeLabel = QStringLiteral("Provincia"),
        .needs = Needs::PlaceMunicipality,
        .codes = StreetCodes::OfMunicipality,
        .listing = QStringLiteral("Importando el listado de provincias"),
        .incomplete =
            QStringLiteral("Para importar vías de un municipio es necesario indicar la provincia y el "
                           "nombre del municipio")};
    return description;
}

PlaceList MunicipalitySource::places() { return tools_.directory.TraeProvincias(); }

PlaceList MunicipalitySource::municipalities(const QString& place) {
    return tools_.directory.TraeMunicipios(place);
}

FoundStreets MunicipalitySource::find(const QString& place, const QString& municipality) {
    return tools_.directory.TraeVias(place, municipality);
}

} // namespace ambrel
