// Reads streets from the files of municipalities with several postal codes.
#include "import/MunicipalityFileSource.h"

#include <QDir>
#include <QFileInfo>

#include "data/Province.h"
#include "import/ImportMessages.h"
#include "import/MunicipalityFile.h"
#include "import/ResponseFolder.h"
#include "import/StreetTypeNames.h"
#include "services/FileStart.h"
#include "services/Rficheros.h"
#include "services/Rnumcad.h"
#include "services/Text.h"

namespace ambrel {
namespace {

QString namesOf(const std::vector<std::string>& files) {
    QStringList names;
    for (const std::string& file : files) {
        names << QFileInfo(QString::fromStdString(file)).fileName();
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

MunicipalityFileSource::MunicipalityFileSource(const SourceTools& tools) : tools_(tools) {}

const StreetSource::Description& MunicipalityFileSource::description() const {
    static const Description description{
        .option = "RBMasDeUno",
        .caption = QStringLiteral("1.  Importar calles de municipios con más de un código postal  "),
        .placeLabel = QStringLiteral("Municipio"),
        .needs = Needs::Place,
        .codes = StreetCodes::Own,
        .nothingListed = QStringLiteral("Le faltan los ficheros correspondientes a los CP múltiples.\r"
                                        "póngase en contacto con nuestro soporte técnico"),
        .incomplete =
            QStringLiteral("Para importar vías de un municipio es necesario indicarlo en el desplegable")};
    return description;
}

PlaceList MunicipalityFileSource::places() { return CargaMunicipiosMasDeUnCodigo(); }

/// Deliberate: lists everything in the folder, without a filter, each name up to its first dot.
PlaceList MunicipalityFileSource::CargaMunicipiosMasDeUnCodigo() const {
    std::vector<std::string> entries;
    FindFileNoRecursivo(SlashSep(postalesFolder(tools_.database), "*.*", '\\'), file_attribute::any, entries);
    PlaceList list{.isWhole = true};
    for (const std::string& entry : entries) {
        const std::string name = entry.substr(entry.rfind('/') + 1);
        list.names << QString::fromStdString(name.substr(0, name.find('.')));
    }
    return list;
}

FoundStreets MunicipalityFileSource::find(const QString& place, const QString&) {
    return ImportarViasMasUnCodigo(place);
}

FoundStreets MunicipalityFileSource::ImportarViasMasUnCodigo(const QString& key) const {
    if (!QDir(QString::fromStdString(postalesFolder(tools_.database))).exists()) {
        return refuse(QStringLiteral("No existe la carpeta con los ficheros de códigos postales"));
    }
    const auto files = municipalityFiles(tools_.database, key.toStdString());
    if (files.size() > 1) { // reads none of them: only the user knows which one is right
        return refuse(QStringLiteral("Hay más de un fichero de ese municipio: %1. Deje sólo el bueno en la "
                                     "carpeta POSTALES")
                          .arg(namesOf(files)));
    }
    const auto text = files.empty() ? std::nullopt : fileStart(files.front(), largestMunicipalityFile + 1);
    if (!text) {
        return refuse(QStringLiteral("Se ha producido un error al leer el fichero de códigos postales del "
                                     "municipio"));
    }
    try {
        return {.isWhole = true, .streets = read(*text), .countsRows = true};
    } catch (const MunicipalityFileError& failure) {
        return refuse(QString::fromUtf8(failure.what()));
    }
}

std::vector<ImportedStreet> MunicipalityFileSource::read(const std::string& text) const {
    StreetTypeNames types(tools_.database);
    return readMunicipalityText(text,
                                [&types](const std::string& name) { return types.ExtraeTipoVia(name); });
}

FoundStreets MunicipalityFileSource::refuse(const QString& why) const {
    tools_.messages.info(why, QStringLiteral("No se puede realizar la importación"));
    return {.isWhole = true};
}

/// A file's name is the province's two digits, "-" and the municipality with "_" for "/".
HostPlaceName MunicipalityFileSource::hostPlace(const QString& place, const QString&) const {
    const QString name = place.mid(place.indexOf(QLatin1Char('-')) + 1).trimmed();
    return {.provinceCode = Cad_Int(toNearestWindows1252(place.left(provinceDigits))),
            .municipality = QString(name).replace(QLatin1Char('_'), QLatin1Char('/'))};
}

} // namespace ambrel
