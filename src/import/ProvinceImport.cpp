// Fetches and saves the streets of whole provinces.
#include "import/ProvinceImport.h"

#include <QComboBox>
#include <QDir>
#include <QScopeGuard>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "import/DirectoryClient.h"
#include "import/FoundStreetsView.h"
#include "import/HostPlaceChoice.h"
#include "import/ImportMessages.h"
#include "import/InputPause.h"
#include "import/MunicipalitySaving.h"
#include "import/ProvinceRun.h"
#include "import/ResponseFolder.h"
#include "services/Rficheros.h"

namespace ambrel {
namespace {

constexpr char separator = '\\';

bool isFolder(const std::string& path) {
    return !path.empty() && QDir(QString::fromStdString(path)).exists();
}

/// The entries of POSTALES. Deliberate: without the one found first, which is the folder itself.
std::vector<FileSearch::Entry> entriesOf(const std::string& folder) {
    std::vector<FileSearch::Entry> entries;
    FileSearch search(SlashSep(folder, "*.*", separator), file_attribute::folder);
    if (search.findFirst()) {
        while (auto entry = search.findNext()) {
            entries.push_back(std::move(*entry));
        }
    }
    return entries;
}

/// Deliberate: an entry with any attribute besides a folder's does not count.
bool isProvince(const FileSearch::Entry& entry) {
    return entry.attributes == file_attribute::folder && entry.name != "." && entry.name != "..";
}

/// Full paths; none if the folder does not exist.
std::vector<std::string> filedAnswers(const std::string& folder) {
    std::vector<std::string> files;
    if (isFolder(folder)) {
        FindFileNoRecursivo(SlashSep(folder, "*.xml", separator), file_attribute::any, files);
    }
    return files;
}

} // namespace

ProvinceImport::ProvinceImport(const Parts& parts) : parts_(parts) {}

ProvinceImport::~ProvinceImport() = default;

const std::string& ProvinceImport::databaseName() const {
    return parts_.controller.DM->tbPostal.databaseName();
}

void ProvinceImport::begin(ProvinceDeed deed, const QString& province, std::size_t municipalities) {
    run_ = std::make_unique<ProvinceRun>(parts_.found.message(), deed, province,
                                         static_cast<int>(municipalities));
}

// --- Fetching.

void ProvinceImport::fetch(StreetSource& source) {
    const int count = parts_.municipalities.count();
    if (count == 0) {
        return;
    }
    const InputPause pause;
    begin(ProvinceDeed::Filing, parts_.provinces.currentText(), static_cast<std::size_t>(count));
    const auto end = qScopeGuard([this] { run_.reset(); });
    for (int index = 0; index < count; ++index) {
        run_->begin();
        parts_.municipalities.setCurrentIndex(index);
        fetchChosen(source);
    }
}

void ProvinceImport::fetchChosen(StreetSource& source) {
    const QString province = parts_.provinces.currentText();
    const QString municipality = parts_.municipalities.currentText();
    if (province.isEmpty() || municipality.isEmpty()) {
        parts_.messages.error(source.description().incomplete, missingDataTitle());
        run_->userAnswered();
        return;
    }
    // Deliberate: no blank between the text and the name.
    const ShownProgress progress(
        parts_.messages, QStringLiteral("Importando el listado de vías del municipio") + municipality);
    parts_.messages.change(municipality);
    const MunicipalityEnd end = source.file(province, municipality);
    run_->setEnd(end);
    if (end == MunicipalityEnd::NoAnswer) {
        reportNothingFound(parts_.messages);
        run_->userAnswered();
    }
}

// --- Saving.

void ProvinceImport::saveChosen(StreetCodes codes) {
    const QString province = parts_.provinces.currentText();
    const std::vector<std::string> files =
        filedAnswers(provinceFolder(databaseName(), province.toStdString()));
    if (files.empty()) {
        reportMissingFiles();
        return;
    }
    codes_ = codes;
    parts_.place.clearProvince();
    {
        const dbase::NotificationPause pause(parts_.controller.DM->tbPostal);
        begin(ProvinceDeed::Saving, province, files.size());
        const auto end = qScopeGuard([this] { run_.reset(); });
        saveAnswers(files);
    }
    reportFailure();
}

void ProvinceImport::saveAll(StreetCodes codes) {
    if (!isFolder(postalesFolder(databaseName()))) {
        reportMissingFiles();
        return;
    }
    codes_ = codes;
    {
        const dbase::NotificationPause pause(parts_.controller.DM->tbPostal);
        saveFolders();
    }
    reportFailure();
}

void ProvinceImport::saveFolders() {
    const std::vector<FileSearch::Entry> entries = entriesOf(postalesFolder(databaseName()));
    std::vector<std::vector<std::string>> files; // of each entry
    std::size_t count = 0;
    for (const auto& entry : entries) {
        files.push_back(isProvince(entry) ? filedAnswers(provinceFolder(databaseName(), entry.name))
                                          : std::vector<std::string>());
        count += files.back().size();
    }
    if (count > 0) {
        begin(ProvinceDeed::Saving, {}, count);
    }
    const auto end = qScopeGuard([this] { run_.reset(); });
    for (std::size_t i = 0; i < entries.size(); ++i) {
        parts_.provinces.setCurrentIndex(-1);
        parts_.place.clearProvince();
        if (!isProvince(entries[i])) {
            continue;
        }
        parts_.provinces.setCurrentIndex(Indice(parts_.provinces, QString::fromStdString(entries[i].name)));
        if (files[i].empty()) {
            reportMissingFiles();
        } else {
            saveAnswers(files[i]);
        }
    }
}

/// Continues with the next file whatever a file contains.
void ProvinceImport::saveAnswers(const std::vector<std::string>& files) {
    const InputPause pause;
    for (const std::string& file : files) {
        run_->begin();
        try {
            saveAnswer(file);
        } catch (const std::exception& failure) {
            failure_ = QString::fromUtf8(failure.what());
        }
    }
}

void ProvinceImport::saveAnswer(const std::string& file) {
    const QString text = QStringLiteral("Importando las calles de ");
    const ShownProgress progress(parts_.messages, text + QString::fromStdString(file));
    QString municipality = QString::fromStdString(municipalityOfFile(file));
    if (!parts_.place.chooseForAnswer(parts_.provinces.currentText(), municipality)) {
        parts_.place.ask(parts_.provinces.currentText(), municipality);
        run_->userAnswered();
    }
    if (!parts_.place.isChosen()) {
        run_->setEnd(MunicipalityEnd::NotChosen);
        return;
    }
    if (!parts_.saving.CompruebaMunicipioConUnicoCP()) {
        run_->setEnd(MunicipalityEnd::SeveralCodes);
        return;
    }
    parts_.found.clear();
    parts_.messages.open(text + municipality);
    parts_.messages.change(text + municipality);
    readAndSave(file);
}

void ProvinceImport::readAndSave(const std::string& file) {
    run_->setEnd(MunicipalityEnd::Unreadable);
    FoundStreets found = parts_.directory.readFiled(file);
    const bool isWhole = found.isWhole;
    parts_.found.show(std::move(found));
    const auto outcome = isWhole ? parts_.saving.GuardaViasEnLote(codes_) : std::nullopt;
    if (!outcome) {
        return;
    }
    if (!outcome->failure.isEmpty()) {
        failure_ = outcome->failure;
    }
    run_->addStreets(outcome->stored);
    run_->setEnd(outcome->failure.isEmpty() ? MunicipalityEnd::Done : MunicipalityEnd::Failed);
}

void ProvinceImport::reportMissingFiles() const {
    parts_.messages.info(QStringLiteral("Para importar las calles de los municipios de una provincia\r"
                                        "es necesario antes pinchar en buscar vías"),
                         QStringLiteral("Faltan los ficheros XML"));
}

/// Called once for the whole run, not for each file.
void ProvinceImport::reportFailure() {
    if (const QString text = std::exchange(failure_, QString()); !text.isEmpty()) {
        parts_.messages.error(text, QStringLiteral("Atención"));
    }
}

} // namespace ambrel
