// Compares an edition with the tables, and stores the difference.
#include "directory/DirectoryLoading.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/table_exchange.h"
#include "directory/DirectoryRecords.h"
#include "directory/DirectoryStoring.h"
#include "directory/EditionLosses.h"
#include "directory/LeadingZeros.h"
#include "directory/PlaceDifference.h"
#include "directory/StreetDifference.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

using loading::Failure;

/// Municipalities by name; of several, those in the province of a postal code.
class PlacesByName {
public:
    explicit PlacesByName(const std::vector<StoredPlace>& places) {
        for (const StoredPlace& place : places) {
            std::vector<PlaceCode>& its = places_[place.name];
            if (!place.isEntity && (its.empty() || its.back() != place.place)) {
                its.push_back(place.place);
            }
        }
    }
    [[nodiscard]] std::vector<PlaceCode> find(std::string_view name, std::string_view postalCode) const {
        const auto found = places_.find(std::string(name));
        if (found == places_.end()) {
            return {};
        }
        std::vector<PlaceCode> near;
        std::ranges::copy_if(found->second, std::back_inserter(near), [&](PlaceCode place) {
            return digits(place, 5).substr(0, 2) == postalCode.substr(0, 2);
        });
        return near.empty() ? found->second : near;
    }

private:
    std::unordered_map<std::string, std::vector<PlaceCode>> places_;
};

/// Errors: dbase::Error, such as NotFound.
std::unique_ptr<StoredRows> rowsOf(const std::string& folder, const std::string& table) {
    return std::make_unique<StoredRows>(
        dbase::findTableFile(folder, table).value_or(folder + '/' + table + ".DBF"),
        StoredRows::Others::Change);
}

} // namespace

DirectoryLoading::DirectoryLoading(const std::string& database, const std::string& folder) : folder_(folder) {
    dbase::Dataset types(database, "TIPO_VIA");
    types.open();
    dbase::forEachRow(types, [&] {
        types_.push_back(
            {types.field("CODIGO").text(), types.field("NOMBRE").text(), types.field("NOMBRE_CAT").text()});
    });
    const auto municipalities = rowsOf(folder, "MUNICIPI");
    const PlaceRecord record(municipalities->schema());
    municipalities->forEach([&](dbase::RecordNumber, std::span<const char> row) {
        const auto place = record.isEntity(row) ? std::nullopt : record.place(row);
        if (place) {
            known_.try_emplace(*place, record.name(row));
        }
    });
}

void DirectoryLoading::take(std::unique_ptr<Edition> edition) {
    if (known_.empty() && !edition->places().hasMunicipalities()) {
        throw Failure(
            "para llenar MUNICIPI hacen falta los nombres de los municipios: dé --unidades o --municipios");
    }
    edition_ = std::move(edition);
    for (const auto& [place, name] : known_) {
        edition_->places().addMunicipality(place, name);
    }
}

void DirectoryLoading::requireExclusive() const { DirectoryStoring::requirePossible(folder_); }

LoadSummary DirectoryLoading::run(RangeOpening opening, const StoredTables& tables, TableChanges& changes,
                                  const LoadObserver& observer) {
    LoadSummary summary;
    LoadTally tally(summary, observer);
    EarlierEdition earlier;
    if (tables.provenance != nullptr) {
        earlier = readProvenance(*tables.provenance, observer.progress);
    }
    summary.previousEdition = earlier.date;
    summary.isOlder = !edition_->date().empty() && edition_->date() < earlier.date;
    const std::vector<StoredPlace> places = readStoredPlaces(*tables.places, earlier);
    PlaceDifference(*edition_, earlier, places, tables, changes, tally).compare();
    const PlacesByName byName(places);
    StoredStreets stored = readStoredStreets(
        *tables.streets, earlier,
        [&](std::string_view name, std::string_view code) { return byName.find(name, code); },
        observer.progress);
    StreetDifference difference(*edition_, earlier, stored, tables, changes, tally);
    StreetTypeCodes types(types_);
    edition_->forEachStreet(opening, types, [&](const OfficialStreet& street) {
        summary.streetRows += street.rows.size();
        summary.shortenedNames += street.wholeName.empty() ? 0 : street.rows.size();
        for (const JoinedStretch& row : street.rows) {
            summary.openedRows += row.opened != JoinedStretch().opened ? 1 : 0;
        }
        difference.compare(street);
    });
    difference.finish();
    summary.unknownTypes = types.unknown();
    summary.unlikelyLosses = unlikelyLosses(*edition_, earlier, summary);
    return summary;
}

LoadSummary DirectoryLoading::simulate(RangeOpening opening, const LoadObserver& observer) {
    dbase::completeExchange(folder_);
    const auto streets = rowsOf(folder_, "POSTAL"), places = rowsOf(folder_, "MUNICIPI"),
               provenance = dbase::findTableFile(folder_, "PROCEDEN") ? rowsOf(folder_, "PROCEDEN") : nullptr;
    NoTableChanges changes;
    return run(opening, {streets.get(), places.get(), provenance.get()}, changes, observer);
}

LoadSummary DirectoryLoading::store(RangeOpening opening, const std::string& undoFile,
                                    const LoadObserver& observer) {
    if (const auto provenance = dbase::findTableFile(folder_, "PROCEDEN")) {
        renewProvenanceTable(*provenance);
    }
    DirectoryStoring storing(folder_, undoFile, "callejero cargar, " + edition_->date());
    LoadSummary summary = run(opening, storing.present(), storing, observer);
    if (!summary.unlikelyLosses.empty() && !edition_->isTakenAsWhole()) {
        throw Failure(summary.unlikelyLosses +
                      "Parece que un fichero está cortado o es de otra edición. No se ha cargado nada; si es "
                      "lo que quiere, dé --aunque-falten.");
    }
    storing.commit(observer.progress);
    return summary;
}

} // namespace ambrel::directory
