// Allocating street keys.
#include "controller/StreetKeyAllocation.h"

#include <optional>

#include "dbase/table/table.h"
#include "dbase/table/write_scope.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"

namespace ambrel {
namespace {

constexpr std::string_view userBlock = "99";
constexpr const char* keyTag = "CODIGO1";

} // namespace

bool isUserKey(std::string_view key) { return key.starts_with(userBlock); }

std::string keyAfter(std::string_view highest) {
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

StreetKeyAllocation::StreetKeyAllocation(const dbase::Dataset& streets) {
    table_.openBeside(streets);
    isRefused_ = !lockFirstRow(table_);
    isEmpty_ = table_.isEmpty();
    TBIndexa(keyTag, table_);
}

std::string StreetKeyAllocation::freeKey(const std::string& wanted) {
    if (isEmpty_ || !TBBusca(table_, {{keyTag, Cad_Int(wanted)}}, exactSearch)) {
        return wanted;
    }
    table_.last();
    return keyAfter(table_.field(keyTag).view());
}

void StreetKeyAllocation::giveKey(dbase::Field& key) {
    const std::string given = freeKey(key.isNull() ? firstUserKey : key.text());
    if (key.text() != given) {
        key.setText(given);
    }
    isEmpty_ = false;
}

bool postUnderFreeKey(dbase::Dataset& streets, dbase::Field& key, dbase::Durability durability) {
    std::optional<dbase::NotificationPause> pause; // no listener works under the locks
    const dbase::WriteScope scope(streets.openTable(), dbase::WriteScope::Writing::AtOnce);
    StreetKeyAllocation keys(streets);
    if (keys.isRefused()) {
        return false;
    }
    pause.emplace(streets);
    keys.giveKey(key);
    streets.post(durability);
    return true;
}

} // namespace ambrel
