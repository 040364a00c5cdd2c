// Accepts or refuses a journal by its owner, mode and access list.
#include "dbase/journal/journal_trust.h"

#include "dbase/system/access_list.h"
#include "dbase/system/user_groups.h"

namespace dbase {

std::string objectionTo(const FileStatus& journal, const FileStatus& table) {
    const std::uint32_t owner = journal.owner;
    if (owner != 0 && owner != table.owner && !mayWrite(table, owner, groupsOf(owner))) {
        return "el diario es del usuario " + nameOfUser(owner) +
               ", que no puede escribir en la tabla, y no se usa";
    }
    if (!isNoWiderThan(journal, table)) {
        return "en el diario pueden escribir más usuarios que en la tabla, y no se usa";
    }
    return {};
}

} // namespace dbase
