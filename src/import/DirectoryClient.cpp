// Sends requests to the street-directory service and reads its answers.
#include "import/DirectoryClient.h"

#include <QDir>
#include <QFileInfo>
#include <exception>

#include "import/Envelope.h"
#include "import/ImportMessages.h"
#include "import/InputPause.h"
#include "import/ResponseFolder.h"
#include "import/ResponseReaders.h"
#include "import/Transport.h"
#include "services/EventGuard.h"
#include "services/Text.h"

namespace ambrel {
namespace {

/// Reports what could not be found, with advice on a line of its own.
void reportFailure(const ImportMessages& messages, const QString& what) {
    messages.error(what + QLatin1Char('\r') + QStringLiteral("Reinténtelo más tarde"),
                   QStringLiteral("Error al importar datos"));
}

/// Returns the result of a step, or `failed` if it throws, which is shown to the user. An answer that cannot
/// be filed is passed on to the caller: the next ones would fail too.
template<class Result>
Result guardedResult(Result failed, const std::function<Result()>& step) {
    Result result = std::move(failed);
    std::exception_ptr notFiled;
    runGuarded([&] {
        try {
            result = step();
        } catch (const FilingError&) {
            notFiled = std::current_exception();
        }
    });
    if (notFiled) {
        std::rethrow_exception(notFiled);
    }
    return result;
}

/// The names in the given order.
QStringList namesOf(const NameList& list) {
    QStringList names;
    for (const std::string& name : list.names) {
        names << fromWindows1252(name);
    }
    return names;
}

} // namespace

DirectoryClient::DirectoryClient(ImportMessages& messages) : messages_(messages) {}

/// Sends one request and loads its answer into XML. Errors: TransportError for the exchange, any other for an
/// answer that is not a document.
void DirectoryClient::request(const QString& progress, const std::string& operation,
                              const std::string& text) {
    messages_.change(progress);
    std::string answer;
    {
        const InputPause pause;
        answer = postSoap(directoryUrl(), soapAction(operation), fromWindows1252(text).toStdString(),
                          [&pause] { pause.letDraw(); });
    }
    XML.load(answer);
}

PlaceList DirectoryClient::TraeProvincias() {
    return guardedResult<PlaceList>({}, [this]() -> PlaceList {
        try {
            request(QStringLiteral("Importando listado de provincias..."), "ConsultaProvincia",
                    provincesRequest());
        } catch (const TransportError&) {
            messages_.close();
            reportFailure(messages_, QStringLiteral("Se ha producido un error al localizar las provincias."));
            return {};
        }
        keepCopy();
        return CargaProvincias();
    });
}

PlaceList DirectoryClient::TraeMunicipios(const QString& province) {
    return guardedResult<PlaceList>({}, [&]() -> PlaceList {
        try {
            request(QStringLiteral("Importando municipios de la provincia ") + province, "ConsultaMunicipio",
                    municipalitiesRequest(toNearestWindows1252(province)));
        } catch (const TransportError&) {
            messages_.close();
            reportFailure(
                messages_,
                QStringLiteral(
                    "Se ha producido un error al localizar los municipios de la provincia seleccionada ") +
                    province);
            return {};
        }
        keepCopy();
        return CargaMunicipios();
    });
}

/// Errors: as for request(); a failed exchange is reported to the user and ends in SilentAbort.
void DirectoryClient::requestStreets(const QString& province, const QString& municipality) {
    try {
        request(QStringLiteral("Importando datos del municipio ") + municipality, "ConsultaVia",
                streetsRequest(toNearestWindows1252(province), toNearestWindows1252(municipality)));
    } catch (const TransportError&) {
        // Deliberate: here the error is shown before the progress window is closed.
        reportFailure(
            messages_,
            QStringLiteral("Se ha producido un error al localizar las vías del municipio seleccionado ") +
                municipality);
        messages_.close();
        throw SilentAbort();
    }
}

FoundStreets DirectoryClient::TraeVias(const QString& province, const QString& municipality) {
    return guardedResult<FoundStreets>({}, [&] {
        requestStreets(province, municipality);
        keepCopy();
        return CargaVias();
    });
}

MunicipalityEnd DirectoryClient::fileStreets(const std::string& database, const QString& province,
                                             const QString& municipality) {
    return guardedResult<MunicipalityEnd>(MunicipalityEnd::NoAnswer, [&] {
        requestStreets(province, municipality);
        const bool isFiled = fileAnswer(XML, database, province.toStdString(), municipality.toStdString());
        return isFiled ? MunicipalityEnd::Done : MunicipalityEnd::NotFiled;
    });
}

FoundStreets DirectoryClient::readFiled(const std::string& path) {
    try {
        XML.clear();
        XML.loadFile(path);
    } catch (const std::exception&) {
        return {}; // a file that is not an answer is skipped without a message
    }
    return CargaVias();
}

/// Saves the last answer beside the program, for people to read.
void DirectoryClient::keepCopy() const {
    const QString file = QString::fromStdString(scratchFile());
    QDir().mkpath(QFileInfo(file).path());
    XML.save(file.toStdString());
}

/// Closes the progress window if the answer was not read whole. No message: the callers show one.
bool DirectoryClient::isRead(Reading reading) {
    if (reading == Reading::NoRoot || reading == Reading::Partial) {
        messages_.close();
    }
    return reading == Reading::Whole;
}

std::function<void()> DirectoryClient::showing(const QString& text) {
    return [this, text] { messages_.change(text); };
}

PlaceList DirectoryClient::CargaProvincias() {
    const NameList list = readProvinces(XML, showing(QStringLiteral("Cargando listado de provincias")));
    return {.isWhole = isRead(list.reading), .names = namesOf(list)};
}

PlaceList DirectoryClient::CargaMunicipios() {
    const NameList list = readMunicipalities(XML, showing(QStringLiteral("Cargando datos de municipios")));
    return {.isWhole = isRead(list.reading), .names = namesOf(list)};
}

FoundStreets DirectoryClient::CargaVias() {
    StreetList list = readStreets(XML, showing(QStringLiteral("Cargando datos de vías")));
    // Deliberate: an answer without nodes is not a failure, unlike in the two other readers.
    return {.isWhole = isRead(list.reading) || list.reading == Reading::Empty,
            .streets = std::move(list.streets),
            .count = list.count};
}

} // namespace ambrel
