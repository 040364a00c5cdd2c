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

/// Tables that cannot be used are found before the files are read.
DirectoryLoading prepared(const EditionLoad& load, const LoadObserver& observer) {
    DirectoryLoading loading(load.database, dbase::databaseFolder(load.database));
    loading.take(std::make_unique<Edition>(load.files, observer.progress));
    return loading;
}

} // namespace

LoadedEdition simulateEdition(const EditionLoad& load, const LoadObserver& observer) {
    DirectoryLoading loading = prepared(load, observer);
    LoadSummary summary = loading.simulate(load.opening, observer);
    return finished(loading, std::move(summary));
}

LoadedEdition loadEdition(const EditionLoad& load, const LoadObserver& observer) {
    DirectoryLoading loading = prepared(load, observer);
    LoadSummary summary = loading.store(load.opening, load.undoFile, observer);
    return finished(loading, std::move(summary));
}

} // namespace ambrel::directory
