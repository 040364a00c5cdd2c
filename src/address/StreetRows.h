// The rows of POSTAL that have a street's name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "controller/NumberRange.h"
#include "data/Municipality.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/keyed_rows.h"

namespace ambrel {

/// A row of POSTAL. Texts in Windows-1252.
struct StreetStretch {
    dbase::RecordNumber record = 0;
    std::string key; // CODIGO1
    std::string type;
    std::string name;
    std::string postalCode;
    std::string ineCode; // blank if never filled in
    StretchRanges ranges;
};

/// Errors: dbase::Error.
class StreetRows {
public:
    /// Binds the columns that are read. Call before opening POSTAL.
    static void bindColumns(dbase::Dataset& streets);
    /// `streets`: POSTAL, open in the order of NOMBREVIA; it has to stay open, and is not moved.
    explicit StreetRows(const dbase::Dataset& streets);

    /// Announces addOwn(): within a read scope those that are announced are read together.
    void expect(std::string_view province, std::string_view name) { named_.expect({province, name}); }
    /// Adds the municipality's own rows of a street in a province, in the order of the table.
    void addOwn(const Municipality& municipality, std::string_view province, std::string_view name,
                std::vector<StreetStretch>& found);

private:
    [[nodiscard]] std::string_view textOf(const dbase::RecordView& row, const dbase::Column* column) const;
    [[nodiscard]] StreetStretch stretchOf(const dbase::RecordView& row) const;

    dbase::KeyedRows named_; // by province and name
    const dbase::Column *key_, *type_, *name_, *postalCode_;
    const dbase::Column* ineCode_; // null if a foreign table lacks it
    const dbase::Column *oddFirst_, *oddLast_, *evenFirst_, *evenLast_;
};

} // namespace ambrel
