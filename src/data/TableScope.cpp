// Opening and closing, ordering and reordering.
#include "data/TableScope.h"

#include <exception>
#include <utility>

#include "services/Ruttb.h"

namespace ambrel {

TableScope::TableScope(dbase::Dataset& table) : table_(table), opened_(!table.isOpen()) {
    if (opened_)
        table_.open();
}

TableScope::~TableScope() {
    if (opened_)
        table_.close();
}

TagScope::TagScope(dbase::Dataset& table, std::string tag) : table_(table), tag_(std::move(tag)) {
    TBIndexa(table_, tag_);
}

TagScope::~TagScope() {
    if (restored_)
        return;
    try {
        TBIndexa(table_, tag_);
    } catch (const std::exception&) {
        // The failure that ended the work is on its way to the caller and tells more than this one.
    }
}

void TagScope::restore() {
    restored_ = true;
    TBIndexa(table_, tag_);
}

} // namespace ambrel
