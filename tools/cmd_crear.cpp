// ambcp crear: the five tables, empty or with the sample.

#include <cstdio>

#include "sample/Sample.h"
#include "tools/commands.h"
#include "tools/new_tables.h"

namespace ambcp {

ExitCode crear(const CreateOptions& options) {
    const auto ifExists = options.replaces ? dbase::IfExists::Replace : dbase::IfExists::Refuse;
    if (options.withSample) {
        ambrel::createSample(options.folder, ifExists);
    } else {
        createPostalTables(options.folder, ifExists);
    }
    std::printf("Tablas creadas en «%s».\n", options.folder.c_str());
    return ExitCode::done;
}

} // namespace ambcp
