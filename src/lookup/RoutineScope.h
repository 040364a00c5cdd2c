// What a lookup routine holds while it works, and gives back however it ends: its data module in the global,
// the tables that it opened, the order of a cursor that is not its own.
#pragma once

#include <string>

#include "dbase/dataset.h"

namespace ambrel {

/// Creates a data module and keeps it in the global of its unit. The global is empty afterwards. Errors:
/// those of the module's constructor; the global then stays as it was.
template<class Module>
class ModuleScope {
public:
    explicit ModuleScope(Module*& global) : global_(global) { global_ = &module_; }
    ~ModuleScope() { global_ = nullptr; }
    ModuleScope(const ModuleScope&) = delete;
    ModuleScope& operator=(const ModuleScope&) = delete;

    [[nodiscard]] Module& module() { return module_; }

private:
    Module module_;
    Module*& global_;
};

/// Opens a table that it finds closed, and closes that one again.
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
/// work that failed.
class TagScope {
public:
    TagScope(dbase::Dataset& table, std::string tag);
    ~TagScope();
    TagScope(const TagScope&) = delete;
    TagScope& operator=(const TagScope&) = delete;

    void restore();

private:
    dbase::Dataset& table_;
    std::string tag_; // the one to come back to
    bool restored_ = false;
};

} // namespace ambrel
