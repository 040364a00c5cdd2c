// The import's client of the street-directory service.
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "import/Document.h"
#include "import/StreetSource.h"

namespace ambrel {

class ImportMessages;
enum class Reading;

/// Requests lists and streets and reads the answers; holds the last answer. The caller opens the progress
/// window, whose text follows the steps; after a failure, already reported to the user, it may be closed.
class DirectoryClient {
public:
    explicit DirectoryClient(ImportMessages& messages);

    [[nodiscard]] PlaceList TraeProvincias();
    [[nodiscard]] PlaceList TraeMunicipios(const QString& province);
    [[nodiscard]] FoundStreets TraeVias(const QString& province, const QString& municipality);
    /// Files the answer in POSTALES of a database instead of reading it. Errors: FilingError.
    [[nodiscard]] MunicipalityEnd fileStreets(const std::string& database, const QString& province,
                                              const QString& municipality);

    /// The streets of a filed answer; not whole, without a message, for a file that is not an answer.
    [[nodiscard]] FoundStreets readFiled(const std::string& path);

private:
    void request(const QString& progress, const std::string& operation, const std::string& text);
    void requestStreets(const QString& province, const QString& municipality);
    void keepCopy() const;
    [[nodiscard]] bool isRead(Reading reading);
    [[nodiscard]] PlaceList CargaProvincias();
    [[nodiscard]] PlaceList CargaMunicipios();
    [[nodiscard]] FoundStreets CargaVias();
    [[nodiscard]] std::function<void()> showing(const QString& text);

    ImportMessages& messages_;
    DirectoryDocument XML;
};

} // namespace ambrel
