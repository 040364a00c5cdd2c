// The rows of MUNICIPI in COD_INE order: a municipality, then its entities. The tag is the plain column,
// which other programs understand, and within a code it keeps the order of the records.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/schema.h"
#include "dbase/table/bulk_loader.h"

namespace loading {

/// Collects all rows, to store them in order.
class MunicipalityRows {
public:
    /// Null for a table other than MUNICIPI, or without its columns.
    [[nodiscard]] static std::optional<MunicipalityRows> of(const std::string& tableFile,
                                                            const dbase::Schema& schema);

    void add(std::span<const char> record) { rows_.emplace_back(record.begin(), record.end()); }
    /// Orders by code, entities last; otherwise keeps the order of arrival.
    void storeIn(dbase::BulkLoader& loader);

private:
    MunicipalityRows(const dbase::Column& code, const dbase::Column& entity) : code_(code), entity_(entity) {}

    dbase::Column code_, entity_;
    std::vector<std::string> rows_;
};

/// Whether a table file is that of MUNICIPI.
[[nodiscard]] bool isMunicipalityTable(const std::string& tableFile);

/// INE codes, in ascending order, in which an entity precedes a row of its municipality. `table`: open,
/// without an active tag.
[[nodiscard]] std::vector<std::string> codesWithEntitiesInFront(dbase::Dataset& table);

} // namespace loading
