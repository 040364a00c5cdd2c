// ambcp listar: the records of any table as CSV.

#include "tools/commands.h"
#include "tools/cut_table.h"
#include "tools/record_output.h"
#include "tools/search_key.h"
#include "tools/table_folder.h"

namespace ambcp {

ExitCode listar(const ListOptions& options) {
    requireWhole(requireTable(useFolder(options.folder), options.table));
    dbase::Dataset table(folderDatabase, options.table);
    table.open();
    if (!options.tag.empty()) {
        useTag(table, options.tag);
    }
    if (!options.filter.empty()) {
        table.setFilter(inTablePage(table, options.filter, "el filtro"));
    }
    table.first();
    bool isOnRecord = !table.isEmpty();
    if (options.from) {
        isOnRecord = table.seek(keyFromText(table, *options.from).key(), dbase::SeekMode::Nearest);
    }

    RecordOutput output(table, options.withRecordNumber ? RecordNumbers::Shown : RecordNumbers::Hidden);
    for (std::uint64_t rows = 0; isOnRecord && rows < options.most.value_or(UINT64_MAX); ++rows) {
        output.writeCurrent();
        isOnRecord = table.next();
    }
    output.flush();
    return ExitCode::done;
}

} // namespace ambcp
