// Loads many rows at once: records first, tags rebuilt once at the end.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"
#include "dbase/system/progress.h"

namespace dbase {

class Folders;
class TableReplacement;
struct TableDefinition;

/// Adds rows to a table, in which others may read meanwhile. Nothing becomes visible before finish(); without
/// it (an error, a crash) the table is unchanged. On return from finish() all rows are on the disk; a power
/// cut before that leaves all of them or none. Errors: Error.
class AMBREL_EXPORT BulkLoader {
public:
    enum class Mode { Append, Replace };

    BulkLoader(const std::string& tableFile, Mode mode);
    BulkLoader(const std::string& tableFile, Mode mode, Folders& folders);
    /// Fills the new files of a replacement, with the columns and tags of the present table or those of a
    /// definition; finish() leaves its commit() to the caller.
    explicit BulkLoader(TableReplacement& replacement);
    BulkLoader(TableReplacement& replacement, const TableDefinition& definition);
    ~BulkLoader();
    BulkLoader(const BulkLoader&) = delete;
    BulkLoader& operator=(const BulkLoader&) = delete;

    [[nodiscard]] const Schema& schema() const;
    /// Adds one record of recordLength bytes, deletion mark included.
    void add(std::span<const char> record);
    void finish(const Progress& progress = {});

private:
    struct State;
    void begin();

    std::unique_ptr<State> state_;
};

} // namespace dbase
