// ambcp reindexar: rebuilds the tags of a table, or of all tables in a folder, from the records.

#include <algorithm>
#include <cstdio>

#include "data/TableDefinitions.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/check.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

ExitCode rebuild(const std::string& table, const std::vector<dbase::TagDefinition>& knownTags) {
    const std::string name = tableName(table);
    try {
        const std::optional<Shortfall> before = shortfallOf(table);
        {
            ProgressLine line(name);
            dbase::reindexTable(table, knownTags,
                                [&](std::uint64_t done, std::uint64_t total) { line.share(done, total); });
        }
        // Counted only now, because redoing the journal may have restored records.
        const std::uint32_t held = recordsIn(table);
        if (before && before->announced > held) {
            std::printf("%s: índice rehecho con %s; de los que decía la cabecera, %s.\n", name.c_str(),
                        dbase::counted(held, "registro", "registros").c_str(),
                        dbase::counted(before->announced - held, "no estaba", "no estaban").c_str());
        } else {
            std::printf("%s: índice rehecho.\n", name.c_str());
        }
        return ExitCode::done;
    } catch (const dbase::Error& error) {
        complain(error.what()); // the other tables are still rebuilt
        return ExitCode::failed;
    }
}

} // namespace

ExitCode reindexar(const TablesOptions& options) {
    const bool isWholeFolder = options.table.empty();
    ExitCode worst = ExitCode::done;
    for (const std::string& table : tablesNamed(useFolder(options.folder), options.table)) {
        const auto known = ambrel::tableDefinition(tableName(table));
        if (isWholeFolder && !known && !dbase::findIndexFile(table)) {
            std::printf("%s: no tiene índice.\n", tableName(table).c_str());
            continue;
        }
        worst = std::max(worst, rebuild(table, known ? known->tags : std::vector<dbase::TagDefinition>()));
    }
    return worst;
}

} // namespace ambcp
