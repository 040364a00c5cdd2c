// Finds columns by name.
#include "dbase/dbf/schema.h"

#include "dbase/system/names.h"

namespace dbase {

std::optional<std::size_t> Schema::find(std::string_view name) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name == name) { // nearly every caller writes it in capitals
            return i;
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (sameName(columns[i].name, name)) {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace dbase
