// ambcp crear: the five tables, empty or with the sample.

#include <cstdio>

#include "loading/new_tables.h"
#include "sample/Sample.h"
#include "tools/commands.h"

namespace ambcp {

ExitCode crear(const CreateOptions& options) {
    const auto ifExists = options.replaces ? dbase::IfExists::Replace : dbase::IfExists::Refuse;
    try {
        if (options.withSample) {
            ambrel::createSample(options.folder, ifExists);
        } else {
            loading::createPostalTables(options.folder, ifExists);
        }
    } catch (const loading::TablesExist& error) {
        throw loading::Failure(
            error.what() + std::string(" «--forzar» sustituye las tablas que haya, y con ellas sus datos."));
    }
    std::printf("Tablas creadas en «%s».\n", options.folder.c_str());
    return ExitCode::done;
}

} // namespace ambcp
