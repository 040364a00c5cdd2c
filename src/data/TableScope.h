// What is done to a table for the time of a block, and undone however the block ends.
#pragma once

#include <string>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// Opens a table that it finds closed, and closes that one again. Errors: those of opening.
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

/// Puts a cursor in another order. Call `restore` when the work is done; the destructor does what it can for
/// work that failed. Errors: those of TBIndexa, after which the order is the one from before.
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
    const std::string tag_; // the one to come back to
    bool restored_ = false;
};

} // namespace ambrel
