// Imports whole provinces: fetches their streets into POSTALES, and saves the fetched ones.
#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "import/ImportedStreet.h"

class QComboBox;
class TClassCodPostales;

namespace ambrel {

class DirectoryClient;
class FoundStreetsView;
class HostPlaceChoice;
class ImportMessages;
class MunicipalitySaving;
class ProvinceRun;
class StreetSource;
enum class ProvinceDeed;

/// Goes through the municipalities one by one and shows its progress. A failed one does not stop the rest.
class ProvinceImport {
public:
    /// What it works with; all of this must outlive it. The combos offer the service's provinces, and the
    /// municipalities of the chosen one.
    struct Parts {
        TClassCodPostales& controller;
        ImportMessages& messages;
        DirectoryClient& directory;
        HostPlaceChoice& place;
        FoundStreetsView& found;
        MunicipalitySaving& saving;
        QComboBox& provinces;
        QComboBox& municipalities;
    };
    explicit ProvinceImport(const Parts& parts);
    ~ProvinceImport();
    ProvinceImport(const ProvinceImport&) = delete;
    ProvinceImport& operator=(const ProvinceImport&) = delete;

    /// Fetches and files the streets of all listed municipalities.
    void fetch(StreetSource& source);
    /// Saves the filed streets of the chosen province.
    void saveChosen(StreetCodes codes);
    /// Saves those of all provinces that have a folder.
    void saveAll(StreetCodes codes);

private:
    void begin(ProvinceDeed deed, const QString& province, std::size_t municipalities);
    void fetchChosen(StreetSource& source);
    void saveFolders();
    void saveAnswers(const std::vector<std::string>& files);
    void saveAnswer(const std::string& file);
    void readAndSave(const std::string& file);
    [[nodiscard]] const std::string& databaseName() const;
    void reportMissingFiles() const;
    void reportFailure();

    Parts parts_;
    std::unique_ptr<ProvinceRun> run_; // null unless going through municipalities
    StreetCodes codes_ = StreetCodes::OfMunicipality;
    QString failure_; // the last one not yet shown to the user
};

} // namespace ambrel
