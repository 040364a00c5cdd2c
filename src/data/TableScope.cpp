// Opening and closing, ordering and reordering.
#include "data/TableScope.h"

#include "services/Ruttb.h"

namespace ambrel {

TableScope::TableScope(dbase::Dataset& table) : table_(table), opened_(!table.isOpen()) {
    if (opened_) {
        table_.open();
    }
}

TableScope::~TableScope() {
    try {
        if (opened_) {
            table_.close();
        }
    } catch (...) {
        // The table is closed; a listener's failure to react is not a fault of the work.
    }
}

TagScope::TagScope(dbase::Dataset& table, const std::string& tag) : table_(table), tag_(table.tag()) {
    try {
        TBIndexa(tag, table_);
    } catch (...) {
        giveBack();
        throw;
    }
}

TagScope::~TagScope() {
    if (!restored_) {
        giveBack();
    }
}

void TagScope::restore() {
    restored_ = true;
    TBIndexa(tag_, table_);
}

void TagScope::giveBack() noexcept {
    try {
        TBIndexa(tag_, table_);
    } catch (...) {
        // The failure that ended the work is on its way to the caller and says more than this one.
    }
}

} // namespace ambrel
