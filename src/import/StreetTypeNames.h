// The codes of street types by their names.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// TIPO_VIA's street types, opened with the first name that is looked up, once for many.
class StreetTypeNames {
public:
    explicit StreetTypeNames(std::string database);

    /// Code of a street type by its name, in upper case and trimmed: the type of that name, else the first
    /// whose name contains it, else that of a fixed list; empty when unknown. Errors: dbase::Error.
    [[nodiscard]] std::string ExtraeTipoVia(const std::string& name);

private:
    void open();

    struct Type {
        std::string name, code;
    };
    std::string database_;
    std::unique_ptr<dbase::Dataset> table_; // null until a name is looked up
    std::vector<Type> types_;               // those with a code, by name
};

} // namespace ambrel
