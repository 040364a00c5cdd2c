// ambcp deshacer: puts back what an order changed in tables by the lot.

#include <string>

#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "loading/undo.h"
#include "loading/undo_reader.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/late_csv.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using dbase::counted;

void complainOfDamage(const loading::UndoReader& file) {
    constexpr std::size_t most = 20;
    const std::vector<std::uint64_t>& lines = file.damagedLines();
    for (std::size_t i = 0; i < lines.size() && i < most; ++i) {
        complain(file.path() + ": la línea " + std::to_string(lines[i]) +
                 " está estropeada; lo que decía no se deshace");
    }
    if (lines.size() > most) {
        complain(file.path() + ": y " + counted(lines.size() - most, "línea más", "líneas más"));
    }
    if (file.missingEntries() > 0) {
        complain(file.path() + ": le " +
                 (file.missingEntries() == 1 ? "falta una línea; lo que decía no se deshace"
                                             : "faltan " + std::to_string(file.missingEntries()) +
                                                   " líneas; lo que decían no se deshace"));
    } else if (!file.isEnded()) {
        complain(file.path() + ": no llega a su final: o la orden se interrumpió, o a esta copia le faltan "
                               "líneas; se deshace lo que tiene");
    }
}

std::string describe(const loading::UndoTotals& totals) {
    return counted(totals.putBack, "fila devuelta a como estaba", "filas devueltas a como estaban") + "; " +
           counted(totals.asBefore, "ya estaba así", "ya estaban así") + "; " +
           counted(totals.leftAlone, "no se ha tocado", "no se han tocado");
}

} // namespace

ExitCode deshacer(const UndoOptions& options) {
    const loading::UndoReader file(options.file);
    const std::string folder = options.folder.empty() ? std::string() : useFolder(options.folder);
    LateCsv list({"TABLA", "REGISTRO", "COLUMNA", "ANTES", "AHORA", "MOTIVO"});
    loading::UndoTotals totals;
    try {
        ProgressLine line("deshacer");
        totals = loading::undo(
            file, folder,
            [&](const loading::LeftAlone& left) {
                list.add({left.table, left.number == 0 ? "" : std::to_string(left.number), left.column,
                          left.before, left.now, left.reason});
            },
            [&](std::uint64_t done, std::uint64_t total) {
                line.share(done, total);
                return true;
            });
    } catch (const dbase::Error& error) {
        list.flush();
        complain(std::string(error.what()) +
                 ". Lo que ya se haya devuelto queda así; la orden se puede repetir.");
        return ExitCode::failed;
    }
    list.flush();
    complainOfDamage(file);
    complain(describe(totals));
    const bool isAll = totals.leftAlone == 0 && file.damagedLines().empty() && file.missingEntries() == 0;
    return isAll ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
