// ambcp compactar: drops the deleted rows of a table, or of all tables in a folder.

#include <algorithm>
#include <cstdio>

#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "dbase/table/compaction.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

ExitCode compact(const std::string& table) {
    const std::string name = tableName(table);
    try {
        requireWhole(table); // its missing rows may still be in a complete copy
        dbase::Compaction result;
        {
            ProgressLine line(name);
            result = dbase::compactTable(
                table, [&](std::uint64_t done, std::uint64_t total) { line.share(done, total); });
        }
        if (result.dropped == 0) {
            std::printf("%s: no tiene filas borradas; no se ha cambiado nada.\n", name.c_str());
        } else {
            std::printf(
                "%s: %s; %s %s.\n", name.c_str(),
                dbase::counted(result.dropped, "fila borrada quitada", "filas borradas quitadas").c_str(),
                result.kept == 1 ? "queda" : "quedan", std::to_string(result.kept).c_str());
        }
        return ExitCode::done;
    } catch (const DamagedTable& error) {
        complain(error.what()); // the other tables are still compacted
        return ExitCode::negative;
    } catch (const dbase::Error& error) {
        complain(std::string(error.what()) + ". No se ha cambiado nada.");
        return ExitCode::failed;
    }
}

} // namespace

ExitCode compactar(const TablesOptions& options) {
    ExitCode worst = ExitCode::done;
    for (const std::string& table : tablesNamed(useFolder(options.folder), options.table)) {
        worst = std::max(worst, compact(table));
    }
    return worst;
}

} // namespace ambcp
