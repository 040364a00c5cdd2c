// Temporary changes to a table: made for a block and undone however the block ends.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// Opens a table if it is closed, and closes it again in that case. Errors: those of opening.
class TableScope {
public:
    explicit TableScope(dbase::Dataset& table);
    ~TableScope();
    TableScope(const TableScope&) = delete;
    TableScope& operator=(const TableScope&) = delete;

private:
    dbase::Dataset& table_;
    bool opened_;
};

/// Puts a cursor in another order. Call `restore` when the work is done; the destructor restores as far as
/// possible after work that failed. Errors: those of TBIndexa, after which the order is the previous one.
class TagScope {
public:
    TagScope(dbase::Dataset& table, const std::string& tag);
    ~TagScope();
    TagScope(const TagScope&) = delete;
    TagScope& operator=(const TagScope&) = delete;

    void restore();

private:
    void giveBack() noexcept;

    dbase::Dataset& table_;
    const std::string tag_; // the tag to restore
    bool restored_ = false;
};

} // namespace ambrel
