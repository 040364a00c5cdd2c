// ambcp revisar --reparar: mends what has one right repair.
#include "tools/review_repair.h"

#include <set>
#include <string>

#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "dbase/system/quoted.h"
#include "directory/audit/TableRepair.h"
#include "loading/failure.h"
#include "tools/complain.h"
#include "tools/late_csv.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using namespace ambrel::directory;
using dbase::counted;

std::string repairableClasses() {
    std::string names;
    for (std::size_t i = 0; i < findingClassCount; ++i) {
        const auto kind = static_cast<FindingClass>(i);
        if (isRepairable(kind)) {
            names += (names.empty() ? "" : ", ") + std::string(className(kind));
        }
    }
    return names;
}

/// Reads "MINUSCULAS,BLANCOS".
std::set<FindingClass> readClasses(const std::string& text) {
    std::set<FindingClass> kinds;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string name = text.substr(begin, end - begin);
        const auto kind = findingClassNamed(name);
        if (!kind) {
            throw loading::Failure("--reparar: " + dbase::inQuotes(name) +
                                   " no es ninguna clase; se reparan " + repairableClasses());
        }
        if (!isRepairable(*kind)) {
            throw loading::Failure("--reparar: " + std::string(className(*kind)) +
                                   " no tiene una reparación única; se reparan " + repairableClasses());
        }
        kinds.insert(*kind);
        begin = end + 1;
    }
    return kinds;
}

const char* reasonOf(RepairOutcome left) {
    return left == RepairOutcome::Locked     ? "otro usuario la está cambiando"
           : left == RepairOutcome::CopyLeft ? "otra fila, que repite su nombre, no se ha podido cambiar"
                                             : "otro usuario la ha cambiado";
}

std::string classNames(const std::set<FindingClass>& kinds) {
    std::string names;
    for (const FindingClass kind : kinds) {
        names += (names.empty() ? "" : " ") + std::string(className(kind));
    }
    return names;
}

} // namespace

ExitCode repairTables(const ReviewOptions& options, std::optional<AuditedTable> only) {
    const RepairOptions repair{
        .database = folderDatabase, .kinds = readClasses(options.repairs), .only = only};
    std::string undoFile;
    LateCsv list(options.writes
                     ? std::vector<std::string>{"TABLA", "REGISTRO", "CLAVE", "CLASE", "PROPUESTA", "MOTIVO"}
                     : std::vector<std::string>{"TABLA", "REGISTRO", "CLAVE", "CLASE", "PROPUESTA"});
    std::uint64_t mended = 0, leftAlone = 0;
    const auto tellTotals = [&] {
        list.flush();
        complain(!options.writes
                     ? counted(mended, "fila cambiaría", "filas cambiarían") + "; con --escribir se cambian"
                     : counted(mended, "fila cambiada", "filas cambiadas") + "; " +
                           counted(leftAlone, "no se ha tocado", "no se han tocado"));
        if (!undoFile.empty()) {
            complain("lo que había está en " + undoFile + "; lo devuelve: ambcp deshacer " + undoFile);
        }
    };
    const auto observe = [&](const RepairedRow& row, RepairOutcome outcome) {
        const bool isLeft = outcome != RepairOutcome::Planned && outcome != RepairOutcome::Done;
        ++(isLeft ? leftAlone : mended);
        std::vector<std::string> values{std::string(ambrel::directory::tableName(row.table)),
                                        std::to_string(row.record), row.key, classNames(row.kinds),
                                        row.change};
        if (isLeft) {
            values.emplace_back(reasonOf(outcome));
        }
        if (isLeft || !options.writes) {
            list.add(values);
        }
    };
    try {
        if (options.writes) {
            ambrel::directory::repairTables(
                repair, {.file = options.undoFile, .order = "ambcp revisar --reparar " + options.repairs},
                observe, undoFile);
        } else {
            planRepairs(repair, observe);
        }
    } catch (const dbase::Error&) {
        tellTotals();
        throw;
    }
    tellTotals();
    return (options.writes ? leftAlone : mended) == 0 ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
