// The new rows of one table of a load.
#pragma once

#include <optional>
#include <string>

#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_definition.h"
#include "dbase/table/table_revision.h"
#include "directory/LoadingProgress.h"

namespace ambrel::directory {

/// Makes the new files of a replacement with the first row that comes or changes; a table that stays as it is
/// costs nothing. One without records is filled by a loader, any other is revised.
class TableWriting {
public:
    /// `present`: how many records it has; `ifMissing`: creates a table of which there is none yet. The
    /// replacement must outlive this object, and its owner commits it.
    TableWriting(dbase::TableReplacement& replacement, dbase::RecordNumber present,
                 std::optional<dbase::TableDefinition> ifMissing = {});

    /// The number of its record.
    dbase::RecordNumber add(std::span<const char> row);
    void change(dbase::RecordNumber number, std::span<const char> row);
    void erase(dbase::RecordNumber number);
    void finish(const LoadingProgress& progress);

private:
    [[nodiscard]] dbase::BulkLoader& loader();
    [[nodiscard]] dbase::TableRevision& revision();
    void noteChange();

    dbase::TableReplacement& replacement_;
    std::optional<dbase::TableDefinition> ifMissing_;
    dbase::RecordNumber present_, added_ = 0, revised_ = 0;
    std::optional<dbase::BulkLoader> loader_;
    std::optional<dbase::TableRevision> revision_;
};

} // namespace ambrel::directory
