// The rows of MUNICIPI in the order of COD_INE: behind a municipality its entities. The tag is the plain
// column, as other programs understand it, and rows of one code stand in it in the order of the records.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/schema.h"
#include "dbase/table/bulk_loader.h"

namespace loading {

/// Rows that wait for all the others, to be stored in order.
class MunicipalityRows {
public:
    /// Null for a table that is not MUNICIPI, or not with its columns.
    [[nodiscard]] static std::optional<MunicipalityRows> of(const std::string& tableFile,
                                                            const dbase::Schema& schema);

    void add(std::span<const char> record) { rows_.emplace_back(record.begin(), record.end()); }
    /// By code, entities last; otherwise in the order in which they came.
    void storeIn(dbase::BulkLoader& loader);

private:
    MunicipalityRows(const dbase::Column& code, const dbase::Column& entity) : code_(code), entity_(entity) {}

    dbase::Column code_, entity_;
    std::vector<std::string> rows_;
};

/// Whether a table is MUNICIPI, by its file.
[[nodiscard]] bool isMunicipalityTable(const std::string& tableFile);

/// INE codes, in ascending order, with an entity before a row of its municipality. `table`: open, without
/// active tag.
[[nodiscard]] std::vector<std::string> codesWithEntitiesInFront(dbase::Dataset& table);

} // namespace loading
