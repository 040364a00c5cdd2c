// Writes imported streets into POSTAL through the controller.
#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "import/ImportedStreet.h"

class TClassCodPostales;

namespace ambrel {

/// The host's municipality to save streets into. Texts are Windows-1252, "" if nothing is chosen.
struct HostMunicipality {
    std::string provinceCode = {}; // two digits
    std::string postalCode = {};   // five digits
    std::string name = {};
    bool isFirstOfList = false; // in the list from which it was chosen
};

/// True if MUNICIPI marks the municipality as one with a single postal code. Errors: dbase::Error.
[[nodiscard]] bool hasOnlyOneCode(const std::string& database, const HostMunicipality& municipality);

/// Postal codes of the municipality. Deliberate: none for the first of the list. Errors: dbase::Error.
[[nodiscard]] std::vector<std::string> CodigosPostalesMunicipio(const std::string& database,
                                                                const HostMunicipality& municipality);

/// Saves streets into POSTAL, in groups that are written together; skips those that fail. On return the
/// others are on the disk.
struct StreetSaving {
    TClassCodPostales& controller;
    const std::vector<ImportedStreet>& streets;
    HostMunicipality municipality;
    StreetCodes codes = StreetCodes::OfMunicipality;
    /// Called with the number of each row, from 1, before it is saved: for all rows of a group before the
    /// first of them, while others may use the table. May be empty.
    std::function<void(std::size_t row)> beforeRow = {};

    /// The result.
    struct Outcome {
        int count = 0;        // streets offered
        int stored = 0;       // those of them now in POSTAL
        QString failure = {}; // why the engine refused the last row that it did not store; for the user
    };

    /// Adds the streets that are not yet in POSTAL. Deliberate: counts those offered, stored or not.
    [[nodiscard]] Outcome addNew();
    /// Completes the type of the municipality's streets that have none in POSTAL, and counts them.
    [[nodiscard]] Outcome completeTypes(const std::vector<std::string>& postalCodes);

private:
    template<typename SaveRow>
    Outcome saveAll(SaveRow saveRow);
    /// Saves some rows from `begin` on together, and returns the one after them.
    template<typename SaveRow>
    std::size_t saveTogether(std::size_t begin, std::size_t end, SaveRow saveRow, Outcome& outcome);
    template<typename SaveRow>
    void saveAlone(std::size_t row, SaveRow saveRow, Outcome& outcome);
    [[nodiscard]] std::size_t groupFrom(std::size_t begin) const;
    void show(std::size_t row) const;
    void offer(Outcome& outcome);
    void sync(Outcome& outcome);
};

} // namespace ambrel
