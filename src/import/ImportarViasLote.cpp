// The import dialog: saving the streets of whole provinces, from the answers filed before.
#include <QComboBox>
#include <QDir>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "import/ImportarVias.h"
#include "import/InputPause.h"
#include "import/MunicipalityMatch.h"
#include "import/ProvinceRun.h"
#include "import/ResponseFolder.h"
#include "lookup/RutCodPostales.h"
#include "services/Mensaje.h"
#include "services/Rficheros.h"
#include "ui_ImportarVias.h"

namespace {

using ambrel::MunicipalityEnd;

constexpr char separator = '\\';

bool isFolder(const std::string& path) {
    return !path.empty() && QDir(QString::fromStdString(path)).exists();
}

/// What POSTALES holds. Deliberate: without the entry found first, which is the folder itself.
std::vector<ambrel::FileSearch::Entry> entriesOf(const std::string& folder) {
    std::vector<ambrel::FileSearch::Entry> entries;
    ambrel::FileSearch search(SlashSep(folder, "*.*", separator), ambrel::file_attribute::folder);
    if (search.findFirst()) {
        while (auto entry = search.findNext()) {
            entries.push_back(std::move(*entry));
        }
    }
    return entries;
}

/// Deliberate: a folder with any other attribute beside is none.
bool isProvince(const ambrel::FileSearch::Entry& entry) {
    return entry.attributes == ambrel::file_attribute::folder && entry.name != "." && entry.name != "..";
}

} // namespace

void TFImportarVias::BBGuardarPorProvinciaClick() {
    // Deliberate: the text names option 2, although it is option 3.
    if (!isProvinceGiven(QStringLiteral("2ª"))) {
        return;
    }
    const std::string folder =
        ambrel::provinceFolder(databaseName(), ui_->CBProvincias->currentText().toStdString());
    const std::vector<std::string> files = filedAnswers(folder);
    if (files.empty()) {
        tellMissingFiles();
        return;
    }
    ui_->CBProvinciasAmbrel->setCurrentIndex(-1);
    {
        const dbase::NotificationPause pause(Controlador.DM->tbPostal);
        startRun(ambrel::ProvinceDeed::Saving, ui_->CBProvincias->currentText(),
                 static_cast<int>(files.size()));
        const auto end = qScopeGuard([this] { run_.reset(); });
        saveAnswers(files);
    }
    tellBatchFailure();
}

void TFImportarVias::MIGuardarPorProvinciaClick() {
    if (!isFolder(ambrel::postalesFolder(databaseName()))) {
        tellMissingFiles();
        return;
    }
    {
        const dbase::NotificationPause pause(Controlador.DM->tbPostal);
        saveProvinceFolders();
    }
    tellBatchFailure();
}

void TFImportarVias::saveProvinceFolders() {
    const std::vector<ambrel::FileSearch::Entry> entries = entriesOf(ambrel::postalesFolder(databaseName()));
    std::vector<std::vector<std::string>> files; // of each entry
    std::size_t count = 0;
    for (const auto& entry : entries) {
        files.push_back(isProvince(entry) ? filedAnswers(ambrel::provinceFolder(databaseName(), entry.name))
                                          : std::vector<std::string>());
        count += files.back().size();
    }
    if (count > 0) {
        startRun(ambrel::ProvinceDeed::Saving, {}, static_cast<int>(count));
    }
    const auto end = qScopeGuard([this] { run_.reset(); });
    for (std::size_t i = 0; i < entries.size(); ++i) {
        ui_->CBProvincias->setCurrentIndex(-1);
        ui_->CBProvinciasAmbrel->setCurrentIndex(-1);
        if (!isProvince(entries[i])) {
            continue;
        }
        const QString province = QString::fromStdString(entries[i].name);
        ui_->CBProvincias->setCurrentIndex(Indice(*ui_->CBProvincias, province));
        if (files[i].empty()) {
            tellMissingFiles();
        } else {
            saveAnswers(files[i]);
        }
    }
}

/// Full paths; none for a folder that is not there.
std::vector<std::string> TFImportarVias::filedAnswers(const std::string& folder) const {
    std::vector<std::string> files;
    if (isFolder(folder)) {
        FindFileNoRecursivo(SlashSep(folder, "*.xml", separator), ambrel::file_attribute::any, files);
    }
    return files;
}

/// Whatever a file holds, the next one follows.
void TFImportarVias::saveAnswers(const std::vector<std::string>& files) {
    const ambrel::InputPause pause;
    for (const std::string& file : files) {
        run_->begin();
        try {
            saveAnswer(file);
        } catch (const std::exception& failure) {
            batchFailure_ = QString::fromUtf8(failure.what());
        }
    }
}

void TFImportarVias::saveAnswer(const std::string& file) {
    Progreso =
        MuestraMensaje(QStringLiteral("Importando las calles de ") + QString::fromStdString(file), this);
    const auto end = qScopeGuard([this] { closeProgress(); });
    QString municipality = QString::fromStdString(ambrel::municipalityOfFile(file));
    if (!chooseHostPlaces(municipality)) {
        askForHostPlaces(municipality);
    }
    if (ui_->CBProvinciasAmbrel->currentIndex() < 0 || ui_->CBMunicipiosAmbrel->currentIndex() < 0) {
        run_->told(MunicipalityEnd::NotChosen);
        return;
    }
    if (!CompruebaMunicipioConUnicoCP()) {
        run_->told(MunicipalityEnd::SeveralCodes);
        return;
    }
    LimpiaDatos(false);
    const QString text = QStringLiteral("Importando las calles de ") + municipality;
    openProgress(text);
    CambiaMensaje(text, Progreso);
    loadAndSave(file);
}

/// By the names of web province and file. The name becomes the one that was looked for last.
bool TFImportarVias::chooseHostPlaces(QString& municipality) {
    QComboBox& provinces = *ui_->CBProvinciasAmbrel;
    if (provinces.currentIndex() < 0) {
        provinces.setCurrentIndex(Indice(provinces, ui_->CBProvincias->currentText()));
        if (provinces.currentIndex() >= 0) {
            CBProvinciasAmbrelExit();
        }
    }
    QComboBox& municipalities = *ui_->CBMunicipiosAmbrel;
    if (provinces.currentIndex() < 0) {
        municipalities.setCurrentIndex(Indice(municipalities, municipality));
        return false;
    }
    const auto match = ambrel::matchMunicipality(
        municipality, [&](const QString& name) { return Indice(municipalities, name); });
    municipalities.setCurrentIndex(match.index);
    municipality = match.name;
    return match.index >= 0;
}

void TFImportarVias::askForHostPlaces(const QString& municipality) {
    const QString webProvince = ui_->CBProvincias->currentText();
    QString codIne, postalCode, name = municipality, province = webProvince, provinceCode, number;
    const QString caption = QStringLiteral("Seleccione el municipio donde importar las vias de %1 (%2)");
    const bool isChosen = IMunicipios(this, codIne, postalCode, name, province, provinceCode, number,
                                      QStringLiteral("NOMBRE"), caption.arg(municipality, webProvince));
    run_->userAnswered();
    if (!isChosen) {
        return;
    }
    ui_->CBProvinciasAmbrel->setCurrentIndex(Indice(*ui_->CBProvinciasAmbrel, province));
    if (ui_->CBProvinciasAmbrel->currentIndex() < 0) {
        return;
    }
    CBProvinciasAmbrelExit();
    ui_->CBMunicipiosAmbrel->setCurrentIndex(Indice(*ui_->CBMunicipiosAmbrel, name));
}

void TFImportarVias::loadAndSave(const std::string& file) {
    const QScopedValueRollback inBatch(EnLote, true);
    run_->told(MunicipalityEnd::Unreadable);
    try {
        XML.clear();
        XML.loadFile(file);
    } catch (const std::exception&) {
        return; // a file that is no answer is passed over without a word
    }
    if (CargaVias()) {
        GuardaVias();
    }
}

void TFImportarVias::tellMissingFiles() {
    Mensaje_Info(this,
                 QStringLiteral("Para importar las calles de los municipios de una provincia\r"
                                "es necesario antes pinchar en buscar vías"),
                 QStringLiteral("Faltan los ficheros XML"));
}

/// Once for the whole run, not once for each file.
void TFImportarVias::tellBatchFailure() {
    if (const QString text = std::exchange(batchFailure_, QString()); !text.isEmpty()) {
        Mensaje_Error(this, text, QStringLiteral("Atención"));
    }
}
