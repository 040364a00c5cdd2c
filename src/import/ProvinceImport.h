// A province as a whole: its streets fetched into POSTALES, and those that were fetched saved.
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

/// Goes through the municipalities one after the other and shows how far it is. One that fails does not stop
/// the rest.
class ProvinceImport {
public:
    /// What it works with; all of it must outlive it. The combos offer the provinces of the service, and the
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

    /// Fetches the streets of all municipalities listed, and files them.
    void fetch(StreetSource& source);
    /// Saves the streets filed of the chosen province.
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
    std::unique_ptr<ProvinceRun> run_; // while it goes through municipalities
    StreetCodes codes_ = StreetCodes::OfMunicipality;
    QString failure_; // the last one that the user has not seen
};

} // namespace ambrel
