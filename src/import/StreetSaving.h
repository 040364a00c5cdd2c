// Writing imported streets into POSTAL through the controller.
#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "import/ImportedStreet.h"

class TClassCodPostales;

namespace ambrel {

/// The host's municipality into which streets go. Texts are Windows-1252, "" where nothing is chosen.
struct HostMunicipality {
    std::string provinceCode = {}; // two digits
    std::string postalCode = {};   // five digits
    std::string name = {};
    bool isFirstOfList = false; // of the list that it was chosen from
};

/// True when MUNICIPI marks the municipality as one with a single postal code. Errors: dbase::Error.
[[nodiscard]] bool hasOnlyOneCode(const std::string& database, const HostMunicipality& municipality);

/// Postal codes of the municipality. Deliberate: none for the first of the list. Errors: dbase::Error.
[[nodiscard]] std::vector<std::string> CodigosPostalesMunicipio(const std::string& database,
                                                                const HostMunicipality& municipality);

/// Streets on their way into POSTAL, row by row; one that fails is left out and the next one follows. When it
/// is over they are on the disk.
struct StreetSaving {
    TClassCodPostales& controller;
    const std::vector<ImportedStreet>& streets;
    HostMunicipality municipality;
    StreetCodes codes = StreetCodes::OfMunicipality;
    /// Called before each row with its number, from 1; may be empty.
    std::function<void(std::size_t row)> beforeRow = {};

    /// What came of it.
    struct Outcome {
        int count = 0;        // of streets offered
        int stored = 0;       // of those, the ones that POSTAL holds now
        QString failure = {}; // why the engine kept the last row that it did from being stored; for the user
    };

    /// Adds the streets that POSTAL does not hold yet. Deliberate: counts those offered, stored or not.
    [[nodiscard]] Outcome addNew();
    /// Completes the type of streets of the municipality that POSTAL holds without one, and counts them.
    [[nodiscard]] Outcome completeTypes(const std::vector<std::string>& postalCodes);

private:
    template<typename SaveRow>
    Outcome saveEach(SaveRow saveRow);
    void offer(Outcome& outcome);
    void sync(Outcome& outcome);
};

} // namespace ambrel
