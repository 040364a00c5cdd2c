// Streets of a whole province from the street-directory service.
#include "import/ProvinceSource.h"

#include "import/DirectoryClient.h"

namespace ambrel {

ProvinceSource::ProvinceSource(const SourceTools& tools) : tools_(tools) {}

const StreetSource::Description& ProvinceSource::description() const {
    static const Description description{
        .option = "RBTodosConUno",
        .caption =
            QStringLiteral("3.  Importar calles de todos los municipios, con un único código postal , de "
                           "la provincia seleccionada"),
        .placeLabel = QStringLiteral("Provincia"),
        .needs = Needs::WholeProvince,
        .codes = StreetCodes::OfMunicipality,
        .listing = QStringLiteral("Importando el listado de provincias"),
        .incomplete =
            QStringLiteral("Para importar vías de un municipio es necesario indicar la provincia y el "
                           "nombre del municipio")};
    return description;
}

PlaceList ProvinceSource::places() { return tools_.directory.TraeProvincias(); }

PlaceList ProvinceSource::municipalities(const QString& place) {
    return tools_.directory.TraeMunicipios(place);
}

MunicipalityEnd ProvinceSource::file(const QString& province, const QString& municipality) {
    return tools_.directory.fileStreets(tools_.database, province, municipality);
}

} // namespace ambrel
