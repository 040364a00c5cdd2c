// Table access operations.
#include "services/Ruttb.h"

#include "services/Confamb.h"

void TBIndexa(const std::string& tag, dbase::Dataset& table) { table.setTag(tag); }

void TBIndexa(dbase::Dataset& table, std::string& tag) {
    std::string previous = table.tag();
    table.setTag(tag);
    tag = std::move(previous);
}

bool TBBusca(dbase::Dataset& table, const dbase::Key& key, bool exact) {
    return table.seek(key, exact ? dbase::SeekMode::Exact : dbase::SeekMode::Nearest);
}

void TBRango(dbase::Dataset& table, const dbase::Key& low, const dbase::Key& high) {
    table.setRange(low, high);
}

void TBFiltra(dbase::Dataset& table, const std::string& condition) { table.setFilter(condition); }

void TBPost(dbase::Dataset& table) { table.post(Config.durability()); }

void TBDelete(dbase::Dataset& table) { table.erase(Config.durability()); }

bool BloqueaActual(dbase::Dataset& table) { return table.lockCurrent(); }

void DesbloqueaAll(dbase::Dataset& table) { table.unlockAll(); }

std::unique_ptr<dbase::Dataset> CreaTabla(const std::string& database, const std::string& tableFile,
                                          const std::string& tag, [[maybe_unused]] bool reserved, bool open) {
    auto table = std::make_unique<dbase::Dataset>(database, tableFile, tag);
    if (open) {
        table->open();
    }
    return table;
}
