// The import dialog: finding streets, in a municipality's file and on the web.
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <optional>

#include "data/Province.h"
#include "import/ImportarVias.h"
#include "import/InputPause.h"
#include "import/MunicipalityFile.h"
#include "import/ProvinceRun.h"
#include "import/ResponseFolder.h"
#include "import/StreetTypeNames.h"
#include "services/FileStart.h"
#include "services/Mensaje.h"
#include "services/Rficheros.h"
#include "services/Rnumcad.h"
#include "services/Text.h"
#include "ui_ImportarVias.h"

namespace {

QString missingTitle() { return QStringLiteral("Faltan datos"); }

QString refusedTitle() { return QStringLiteral("No se puede realizar la importación"); }

void tellNothingFound(QWidget* owner) {
    Mensaje_Info(owner, QStringLiteral("No se ha podido importar ningún nombre de vía"),
                 QStringLiteral("Inténtelo de nuevo"));
}

void tellMissingMunicipality(QWidget* owner) {
    Mensaje_Error(owner,
                  QStringLiteral("Para importar vías de un municipio es necesario indicar la provincia y el "
                                 "nombre del municipio"),
                  missingTitle());
}

/// None of them is read: which one is right only the user knows.
void tellSeveralFiles(QWidget* owner, const std::vector<std::string>& files) {
    QStringList names;
    for (const std::string& file : files) {
        names << QFileInfo(QString::fromStdString(file)).fileName();
    }
    Mensaje_Info(owner,
                 QStringLiteral("Hay más de un fichero de ese municipio: %1. Deje sólo el bueno en la "
                                "carpeta POSTALES")
                     .arg(names.join(QStringLiteral(", "))),
                 refusedTitle());
}

std::vector<ambrel::ImportedStreet> readStreets(const std::string& text, const std::string& database) {
    ambrel::StreetTypeNames types(database);
    return ambrel::readMunicipalityText(
        text, [&types](const std::string& name) { return types.ExtraeTipoVia(name); });
}

} // namespace

void TFImportarVias::BBBuscarViasPorMunicipioClick() {
    LimpiaDatos(true);
    if (mode() == ambrel::ImportMode::SeveralCodes) {
        findInFile();
    } else {
        findOnWeb();
    }
}

// --- Municipalities with several codes.

void TFImportarVias::findInFile() {
    const QString key = ui_->CBProvincias->currentText();
    if (key.isEmpty()) {
        Mensaje_Error(
            this,
            QStringLiteral("Para importar vías de un municipio es necesario indicarlo en el desplegable"),
            missingTitle());
        return;
    }
    openProgress(QStringLiteral("Importando el listado de vías del municipio..."));
    const auto end = qScopeGuard([this] { closeProgress(); });
    CambiaMensaje(key, Progreso);
    if (!ImportarViasMasUnCodigo()) {
        tellNothingFound(this); // Deliberate: never shown, the reading always succeeds
        return;
    }
    chooseHostPlacesOfFile();
}

/// A file's name is the province's two digits, "-" and the municipality with "_" for "/".
void TFImportarVias::chooseHostPlacesOfFile() {
    const QString key = ui_->CBProvincias->currentText();
    QComboBox& provinces = *ui_->CBProvinciasAmbrel;
    const int code = Cad_Int(ambrel::toNearestWindows1252(key.left(ambrel::provinceDigits)));
    // Deliberate: of two provinces with the code the later one stays chosen.
    for (int index = 0; index < provinces.count(); ++index) {
        if (provinces.itemData(index).toInt() == code) {
            provinces.setCurrentIndex(index);
        }
    }
    if (provinces.currentIndex() < 0) {
        return;
    }
    CBProvinciasAmbrelExit();
    const QString name =
        key.mid(key.indexOf(QLatin1Char('-')) + 1).trimmed().replace(QLatin1Char('_'), QLatin1Char('/'));
    ui_->CBMunicipiosAmbrel->setCurrentIndex(Indice(*ui_->CBMunicipiosAmbrel, name));
}

/// Deliberate: true in every case, also when there is no file.
bool TFImportarVias::ImportarViasMasUnCodigo() {
    const QString folder = QString::fromStdString(ambrel::postalesFolder(databaseName()));
    if (!QDir(folder).exists()) {
        Mensaje_Info(this, QStringLiteral("No existe la carpeta con los ficheros de códigos postales"),
                     refusedTitle());
        return true;
    }
    const auto files =
        ambrel::municipalityFiles(databaseName(), ui_->CBProvincias->currentText().toStdString());
    if (files.size() > 1) {
        tellSeveralFiles(this, files);
        return true;
    }
    const auto text =
        files.empty() ? std::nullopt : ambrel::fileStart(files.front(), ambrel::largestMunicipalityFile + 1);
    if (!text) {
        Mensaje_Info(this,
                     QStringLiteral("Se ha producido un error al leer el fichero de códigos postales del "
                                    "municipio"),
                     refusedTitle());
        return true;
    }
    try {
        if (auto streets = readStreets(*text, databaseName()); !streets.empty()) {
            ui_->SGVias->append(std::move(streets));
        }
    } catch (const ambrel::MunicipalityFileError& failure) {
        Mensaje_Info(this, QString::fromUtf8(failure.what()), refusedTitle());
        return true;
    }
    ui_->LMensaje_->setText(QStringLiteral("Se han encontrado %1 vías").arg(ui_->SGVias->streets().size()));
    return true;
}

// --- The web.

void TFImportarVias::findOnWeb() {
    const QString municipality = ui_->CBMunicipios->currentText();
    if (ui_->CBProvincias->currentText().isEmpty() || municipality.isEmpty()) {
        tellMissingMunicipality(this);
        return;
    }
    openProgress(QStringLiteral("Importando el listado de vías del municipio..."));
    const auto end = qScopeGuard([this] { closeProgress(); });
    CambiaMensaje(municipality, Progreso);
    if (!succeeds([this] { return TraeVias({}, {}); })) {
        tellNothingFound(this);
        return;
    }
    const int province = Indice(*ui_->CBProvinciasAmbrel, ui_->CBProvincias->currentText());
    ui_->CBProvinciasAmbrel->setCurrentIndex(province);
    if (province < 0) {
        return;
    }
    CBProvinciasAmbrelExit();
    ui_->CBMunicipiosAmbrel->setCurrentIndex(Indice(*ui_->CBMunicipiosAmbrel, municipality));
}

bool TFImportarVias::isProvinceGiven(const QString& option) {
    if (mode() != ambrel::ImportMode::WholeProvince) {
        Mensaje_Error(this,
                      QStringLiteral("Para importar las vías de todos los municipios de una \r"
                                     "provincia es necesario marcar la opción ") +
                          option,
                      missingTitle());
        return false;
    }
    if (ui_->CBProvincias->currentText().isEmpty()) {
        Mensaje_Error(this,
                      QStringLiteral("Para importar las vías de todos los \r"
                                     "municipios de una provincia es necesario indicarla"),
                      missingTitle());
        return false;
    }
    return true;
}

void TFImportarVias::BBBuscarViasPorProvinciaClick() {
    if (!isProvinceGiven(QStringLiteral("3ª"))) {
        return;
    }
    CBProvinciasExit();
    const int count = ui_->CBMunicipios->count();
    if (count == 0) {
        return;
    }
    const ambrel::InputPause pause;
    startRun(ambrel::ProvinceDeed::Filing, ui_->CBProvincias->currentText(), count);
    const auto end = qScopeGuard([this] { run_.reset(); });
    for (int index = 0; index < count; ++index) {
        run_->begin();
        ui_->CBMunicipios->setCurrentIndex(index);
        fetchStreetsOfChosen();
    }
}

void TFImportarVias::startRun(ambrel::ProvinceDeed deed, const QString& province, int municipalities) {
    run_ = std::make_unique<ambrel::ProvinceRun>(*ui_->LMensaje_, deed, province, municipalities);
}

void TFImportarVias::fetchStreetsOfChosen() {
    const QString province = ui_->CBProvincias->currentText();
    const QString municipality = ui_->CBMunicipios->currentText();
    if (province.isEmpty() || municipality.isEmpty()) {
        tellMissingMunicipality(this);
        run_->userAnswered();
        return;
    }
    // Deliberate: no blank between the text and the name.
    openProgress(QStringLiteral("Importando el listado de vías del municipio") + municipality);
    const auto end = qScopeGuard([this] { closeProgress(); });
    CambiaMensaje(municipality, Progreso);
    if (succeeds([&] { return TraeVias(province, municipality); })) {
        return;
    }
    run_->told(ambrel::MunicipalityEnd::NoAnswer);
    tellNothingFound(this);
    run_->userAnswered();
}
