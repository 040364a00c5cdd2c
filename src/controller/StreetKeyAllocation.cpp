// Allocating street keys.
#include "controller/StreetKeyAllocation.h"

#include <memory>
#include <utility>

#include "dbase/dataset/dataset.h"
#include "dbase/table/table.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr std::string_view userBlock = "99";
constexpr const char* keyTag = "CODIGO1";
constexpr const char* fileOrder = ""; // no tag

/// The wanted key or, if taken, the one after the highest. Leaves `table` ordered by key.
std::string freeKey(dbase::Dataset& table, const std::string& wanted) {
    TBIndexa(keyTag, table);
    if (!TBBusca(table, {{keyTag, Cad_Int(wanted)}}, exactSearch)) {
        return wanted;
    }
    table.last();
    return keyBehind(table.field(keyTag).view());
}

/// The lock on the first row, and the key that may be used while it is held.
struct Allocation {
    std::unique_ptr<dbase::Dataset> lock; // null: refused. Its destruction releases the lock.
    std::string key;
};

/// Uses a handle of its own, so that no range, filter or position of another cursor hides a key. The same
/// handle holds the lock and reads the keys: opening a table costs as much as all the rest.
Allocation allocate(const dbase::Dataset& streets, const std::string& wanted) {
    auto table = CreaTabla(streets.databaseName(), streets.tableName(), fileOrder, false, openNow);
    if (!lockFirstRow(*table)) {
        return {};
    }
    std::string key = table->isEmpty() ? wanted : freeKey(*table, wanted);
    return {.lock = std::move(table), .key = std::move(key)};
}

} // namespace

bool isUserKey(std::string_view key) { return key.starts_with(userBlock); }

std::string keyBehind(std::string_view highest) {
    std::string next = Int_Cad(Cad_Int(highest) + 1);
    // Deliberate: 99999999 is followed by the block's first key again, although that one is taken.
    return isUserKey(next) ? next : firstUserKey;
}

bool lockFirstRow(dbase::Dataset& table) {
    while (BloqueaActual(table)) {
        const dbase::RecordNumber locked = table.recordNumber();
        table.first(); // reads made before the lock prove nothing
        if (table.recordNumber() == locked) {
            return true;
        }
        DesbloqueaAll(table);
    }
    return false;
}

bool postUnderFreeKey(dbase::Dataset& streets, dbase::Field& key, dbase::Durability durability) {
    const std::string wanted = key.isNull() ? firstUserKey : key.text();
    // Reads the table under a single structure lock: a system call costs more than any of the reads.
    const Allocation given = streets.openTable().read([&] { return allocate(streets, wanted); });
    if (!given.lock) {
        return false;
    }
    if (key.text() != given.key) {
        key.setText(given.key);
    }
    streets.post(durability);
    return true;
}

} // namespace ambrel
