// Goes backwards through an undo file.
#include "loading/undo.h"

#include <filesystem>
#include <memory>

#include "dbase/system/databases.h"
#include "dbase/system/mapped_view.h"
#include "dbase/system/paths.h"
#include "loading/failure.h"
#include "loading/undo_reader.h"

namespace loading {

namespace {

/// A copy of a folder has copies of its undo files, which name the tables of the first one.
void requireNoOtherBeside(const std::string& undoFile, const std::string& path) {
    const auto beside = dbase::findTableFile(dbase::folderOf(undoFile), dbase::baseName(path));
    std::error_code unknown; // as of a table that is gone: not the same
    if (beside && !std::filesystem::equivalent(*beside, path, unknown)) {
        throw Failure(undoFile + ": es de " + path + ", y a su lado hay otra tabla " + dbase::baseName(path) +
                      "; diga en qué carpeta se deshace. No se ha cambiado nada");
    }
}

std::string placeNow(const std::string& path, const std::string& folder, const std::string& undoFile) {
    if (folder.empty()) {
        requireNoOtherBeside(undoFile, path);
        return path;
    }
    const std::string name = dbase::baseName(path);
    const auto found = dbase::findTableFile(folder, name);
    if (!found) {
        throw Failure(folder + ": no tiene la tabla " + name);
    }
    return *found;
}

constexpr std::size_t interval = 1024; // entries between which pages are released

} // namespace

UndoTotals undo(const UndoReader& file, const std::string& folder, const UndoneTable::Observer& observer,
                const UndoProgress& progress) {
    UndoTotals totals;
    std::vector<std::unique_ptr<UndoneTable>> tables;
    for (const UndoTable& table : file.tables()) {
        tables.push_back(std::make_unique<UndoneTable>(table, placeNow(table.path, folder, file.path()),
                                                       totals, observer));
    }
    std::vector<const UndoneTable*> companions(tables.size());
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (const auto companionOf = file.tables()[i].companionOf) {
            companions.at(*companionOf) = tables[i].get();
        }
    }
    for (std::size_t left = file.size(); left > 0; --left) {
        const UndoEntry entry = file.entry(left - 1);
        UndoneTable& table = *tables.at(entry.table);
        const UndoneTable* const companion = companions.at(entry.table);
        if (companion == nullptr || !table.staysWith(*companion, entry)) {
            table.undo(entry);
        }
        if (left % interval == 0) {
            dbase::releaseViewedPages(); // rows all over a table bring all of its files into memory
        }
        if (progress && !progress(file.size() - left + 1, file.size())) {
            break;
        }
    }
    for (const auto& table : tables) {
        table->finish();
    }
    return totals;
}

} // namespace loading
