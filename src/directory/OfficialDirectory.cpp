// Loads an edition for a program that has its tables.
#include "directory/OfficialDirectory.h"

#include <memory>

#include "dbase/system/databases.h"
#include "directory/DirectoryLoading.h"

namespace ambrel::directory {

namespace {

LoadedEdition finished(const DirectoryLoading& loading, LoadSummary summary) {
    return {loading.edition().date(), std::move(summary), loading.edition().notes()};
}

void read(DirectoryLoading& loading, const EditionLoad& load, const LoadObserver& observer) {
    loading.take(std::make_unique<Edition>(load.files, observer.progress));
}

} // namespace

LoadedEdition simulateEdition(const EditionLoad& load, const LoadObserver& observer) {
    DirectoryLoading loading(load.database, dbase::databaseFolder(load.database));
    read(loading, load, observer);
    LoadSummary summary = loading.simulate(load.opening, observer);
    return finished(loading, std::move(summary));
}

// Tables that cannot be used are found before the files are read.
LoadedEdition loadEdition(const EditionLoad& load, const LoadObserver& observer) {
    DirectoryLoading loading(load.database, dbase::databaseFolder(load.database));
    loading.begin();
    read(loading, load, observer);
    LoadSummary summary = loading.store(load.opening, load.undoFile, observer);
    return finished(loading, std::move(summary));
}

} // namespace ambrel::directory
