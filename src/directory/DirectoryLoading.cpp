// Compares an edition with the tables, and stores the difference.
#include "directory/DirectoryLoading.h"

#include <atomic>
#include <future>
#include <stdexcept>
#include <utility>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/table_exchange.h"
#include "directory/ChangesApart.h"
#include "directory/DirectoryRecords.h"
#include "directory/DirectoryStoring.h"
#include "directory/EditionDifference.h"
#include "directory/StoredState.h"
#include "loading/failure.h"

namespace ambrel::directory {
namespace {

using loading::Failure;

/// Ends what reports its progress here.
class StopSign {
public:
    void set() { isSet_ = true; }
    void operator()(const LoadingStep&) const {
        if (isSet_) {
            throw std::runtime_error("stopped"); // nobody waits for it any more
        }
    }

private:
    std::atomic<bool> isSet_ = false;
};

/// Errors: dbase::Error, such as NotFound.
std::unique_ptr<StoredRows> rowsOf(const std::string& folder, const std::string& table) {
    return std::make_unique<StoredRows>(
        dbase::findTableFile(folder, table).value_or(folder + '/' + table + ".DBF"),
        StoredRows::Others::Change);
}

} // namespace

/// The tables while everybody else is kept out. A thread of its own reads them: the edition is read
/// meanwhile.
struct DirectoryLoading::Held {
    explicit Held(const std::string& folder)
        : storing(folder), changes(storing),
          state(std::async([this] { return readStoredState(storing.present(), std::ref(isStopping)); })) {}
    ~Held() { isStopping.set(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    DirectoryStoring storing;
    ChangesApart changes;
    StopSign isStopping;
    std::future<StoredState> state; // waits at its end, where the thread has to be stopped
};

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

DirectoryLoading::~DirectoryLoading() = default;

void DirectoryLoading::begin() {
    dbase::completeExchange(folder_); // before names are looked for
    const auto provenance = dbase::findTableFile(folder_, "PROCEDEN");
    if (provenance && lacksColumns(*provenance)) { // it gets them once it is known that the files can be read
        DirectoryStoring::requirePossible(folder_);
    } else {
        held_ = std::make_unique<Held>(folder_);
    }
}

LoadSummary DirectoryLoading::simulate(RangeOpening opening, const LoadObserver& observer) {
    dbase::completeExchange(folder_);
    const auto streets = rowsOf(folder_, "POSTAL"), places = rowsOf(folder_, "MUNICIPI"),
               provenance = dbase::findTableFile(folder_, "PROCEDEN") ? rowsOf(folder_, "PROCEDEN") : nullptr;
    NoTableChanges changes;
    const StoredTables tables{streets.get(), places.get(), provenance.get()};
    StoredState state = readStoredState(tables, observer.progress);
    return compareEdition(*edition_, opening, types_, tables, state, changes, observer);
}

LoadSummary DirectoryLoading::store(RangeOpening opening, const std::string& undoFile,
                                    const LoadObserver& observer) {
    if (!held_) {
        dbase::completeExchange(folder_);
        if (const auto provenance = dbase::findTableFile(folder_, "PROCEDEN")) {
            renewProvenanceTable(*provenance);
        }
        held_ = std::make_unique<Held>(folder_);
    }
    const std::unique_ptr<Held> held = std::move(held_);
    held->storing.keepUndo(undoFile, "callejero cargar, " + edition_->date());
    StoredState state = held->state.get();
    held->storing.beginSums();
    LoadSummary summary =
        compareEdition(*edition_, opening, types_, held->storing.present(), state, held->changes, observer);
    if (!summary.unlikelyLosses.empty() && !edition_->isTakenAsWhole()) {
        throw Failure(summary.unlikelyLosses +
                      "Parece que un fichero está cortado o es de otra edición. No se ha cargado nada; si es "
                      "lo que quiere, dé --aunque-falten.");
    }
    const auto forgotten = std::async([this, &state] { // giving back their memory takes a while
        edition_->forgetStreets();
        state = {};
    });
    held->changes.finish();
    held->storing.commit(observer.progress);
    return summary;
}

} // namespace ambrel::directory
