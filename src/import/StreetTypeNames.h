// Codes of street types by name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// TIPO_VIA's street types; opens the table once, at the first lookup.
class StreetTypeNames {
public:
    explicit StreetTypeNames(std::string database);

    /// Code of a street type by its name, in upper case and trimmed: of the type with that name, or else the
    /// first whose name contains it, or else from a fixed list; empty if unknown. Errors: dbase::Error.
    [[nodiscard]] std::string ExtraeTipoVia(const std::string& name);

private:
    void open();

    struct Type {
        std::string name, code;
    };
    std::string database_;
    std::unique_ptr<dbase::Dataset> table_; // null until the first lookup
    std::vector<Type> types_;               // those with a code, by name
};

} // namespace ambrel
