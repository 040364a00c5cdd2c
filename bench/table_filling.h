// New tables for benchmarks, filled through the bulk loader column by column.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "dbase/dbf/codec.h"
#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_definition.h"

namespace bench {

/// The columns of a record that is being filled, by name.
class Columns {
public:
    Columns(const dbase::Schema& schema, std::span<char> record) : schema_(schema), record_(record) {}
    void set(const char* name, const std::string& text) const { dbase::encodeText(raw(name), text); }
    [[nodiscard]] std::span<char> raw(const char* name) const {
        const dbase::Column& column = schema_.columns[*schema_.find(name)];
        return record_.subspan(column.offset, column.width);
    }

private:
    const dbase::Schema& schema_;
    std::span<char> record_;
};

/// Creates a table in a folder, which is created if necessary, and passes a loader of it and a record to fill
/// to a function.
template<typename Fill>
void makeTable(const std::string& folder, const dbase::TableDefinition& definition, Fill&& fill) {
    std::filesystem::create_directories(folder);
    dbase::createTable(folder, definition, dbase::IfExists::Replace);
    dbase::BulkLoader loader(*dbase::findTableFile(folder, definition.name), dbase::BulkLoader::Mode::Append);
    std::string record(loader.schema().recordLength, ' ');
    fill(loader, std::span<char>(record));
    loader.finish();
}

} // namespace bench
