// ambcp candados: whether file locks work in a folder.

#include <algorithm>
#include <cstdio>

#include "tools/commands.h"
#include "tools/lock_trial.h"
#include "tools/table_folder.h"

namespace ambcp {

ExitCode candados(const FolderOptions& options) {
    const std::vector<LockProbe> probes = tryLocks(useFolder(options.folder));
    for (const LockProbe& probe : probes) {
        std::printf("%s  %s\n", probe.works ? "sí" : "NO", probe.question.c_str());
    }
    if (std::all_of(probes.begin(), probes.end(), [](const LockProbe& probe) { return probe.works; })) {
        std::printf("Los bloqueos funcionan entre los procesos de este puesto.\n");
        return ExitCode::done;
    }
    std::printf("Los bloqueos no funcionan en esta carpeta: no ponga en ella tablas compartidas.\n");
    return ExitCode::negative;
}

} // namespace ambcp
