// The import dialog and the street-directory service: requests, and answers into combos and list.
#include <QComboBox>
#include <QDir>
#include <QFileInfo>

#include "controller/ClasCodPostales.h"
#include "import/Envelope.h"
#include "import/ImportarVias.h"
#include "import/InputPause.h"
#include "import/ProvinceRun.h"
#include "import/ResponseFolder.h"
#include "import/Transport.h"
#include "services/Mensaje.h"
#include "services/Text.h"
#include "ui_ImportarVias.h"

using ambrel::fromWindows1252;
using ambrel::toNearestWindows1252;

namespace {

QString failureTitle() { return QStringLiteral("Error al importar datos"); }

/// What could not be found, and the advice on a line of its own.
QString failureText(const QString& what) {
    return what + QLatin1Char('\r') + QStringLiteral("Reinténtelo más tarde");
}

/// In the order given, with none of them chosen.
void setItems(QComboBox& combo, const std::vector<std::string>& names) {
    QStringList items;
    for (const std::string& name : names) {
        items << fromWindows1252(name);
    }
    combo.addItems(items);
    combo.setCurrentIndex(-1);
}

} // namespace

/// One request and its answer, in XML. Errors: TransportError for the exchange, any other for an answer that
/// is no document.
void TFImportarVias::exchange(const QString& progress, const std::string& operation,
                              const std::string& request) {
    CambiaMensaje(progress, Progreso);
    std::string answer;
    {
        const ambrel::InputPause pause;
        answer = ambrel::postSoap(ambrel::directoryUrl(), ambrel::soapAction(operation),
                                  fromWindows1252(request).toStdString(), [&pause] { pause.letDraw(); });
    }
    XML.load(answer);
}

bool TFImportarVias::TraeProvincias() {
    try {
        exchange(QStringLiteral("Importando listado de provincias..."), "ConsultaProvincia",
                 ambrel::provincesRequest());
    } catch (const ambrel::TransportError&) {
        closeProgress();
        Mensaje_Error(this,
                      failureText(QStringLiteral("Se ha producido un error al localizar las provincias.")),
                      failureTitle());
        return false;
    }
    keepCopy();
    return CargaProvincias();
}

bool TFImportarVias::TraeMunicipios() {
    const QString province = ui_->CBProvincias->currentText();
    try {
        exchange(QStringLiteral("Importando municipios de la provincia ") + province, "ConsultaMunicipio",
                 ambrel::municipalitiesRequest(toNearestWindows1252(province)));
    } catch (const ambrel::TransportError&) {
        closeProgress();
        Mensaje_Error(
            this,
            failureText(QStringLiteral("Se ha producido un error al localizar los municipios de la provincia "
                                       "seleccionada ") +
                        province),
            failureTitle());
        return false;
    }
    keepCopy();
    return CargaMunicipios();
}

bool TFImportarVias::TraeVias(const QString& Carpeta, const QString& Fichero) {
    const QString municipality = ui_->CBMunicipios->currentText();
    try {
        exchange(QStringLiteral("Importando datos del municipio ") + municipality, "ConsultaVia",
                 ambrel::streetsRequest(toNearestWindows1252(ui_->CBProvincias->currentText()),
                                        toNearestWindows1252(municipality)));
    } catch (const ambrel::TransportError&) {
        // Deliberate: here the error is shown before the progress window is closed.
        Mensaje_Error(this,
                      failureText(QStringLiteral("Se ha producido un error al localizar las vías del "
                                                 "municipio seleccionado ") +
                                  municipality),
                      failureTitle());
        closeProgress();
        return false;
    }
    if (Fichero.isEmpty()) {
        keepCopy();
        return CargaVias();
    }
    const bool isFiled =
        ambrel::fileAnswer(XML, databaseName(), Carpeta.toStdString(), Fichero.toStdString());
    if (run_) {
        run_->told(isFiled ? ambrel::MunicipalityEnd::Done : ambrel::MunicipalityEnd::NotFiled);
    }
    return true; // Deliberate: also when nothing could be filed
}

/// Leaves the last answer beside the program, for whoever wants to read it.
void TFImportarVias::keepCopy() const {
    const QString file = QString::fromStdString(ambrel::scratchFile());
    QDir().mkpath(QFileInfo(file).path());
    XML.save(file.toStdString());
}

/// Closes the progress window after an answer that was not read whole. No message: the callers tell.
bool TFImportarVias::isRead(ambrel::Reading reading) {
    if (reading == ambrel::Reading::NoRoot || reading == ambrel::Reading::Partial) {
        closeProgress();
    }
    return reading == ambrel::Reading::Whole;
}

bool TFImportarVias::CargaProvincias() {
    ui_->CBProvincias->clear();
    const ambrel::NameList list = ambrel::readProvinces(
        XML, [this] { CambiaMensaje(QStringLiteral("Cargando listado de provincias"), Progreso); });
    setItems(*ui_->CBProvincias, list.names);
    return isRead(list.reading);
}

bool TFImportarVias::CargaMunicipios() {
    ui_->CBMunicipios->clear();
    const ambrel::NameList list = ambrel::readMunicipalities(
        XML, [this] { CambiaMensaje(QStringLiteral("Cargando datos de municipios"), Progreso); });
    setItems(*ui_->CBMunicipios, list.names);
    return isRead(list.reading);
}

bool TFImportarVias::CargaVias() {
    ambrel::StreetList list = ambrel::readStreets(
        XML, [this] { CambiaMensaje(QStringLiteral("Cargando datos de vías"), Progreso); });
    if (list.count) {
        ui_->LMensaje_->setText(QStringLiteral("Se han encontrado %1 vías").arg(*list.count));
    }
    if (!list.streets.empty()) {
        ui_->SGVias->append(std::move(list.streets));
    }
    // Deliberate: an answer without nodes is none that failed, unlike those of the two other readers.
    return isRead(list.reading) || list.reading == ambrel::Reading::Empty;
}
