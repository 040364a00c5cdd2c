// ambcp cargar: the rows of a CSV file into a table.

#include <cstdio>

#include "tools/commands.h"
#include "tools/counted.h"
#include "tools/cut_table.h"
#include "tools/progress.h"
#include "tools/table_folder.h"
#include "tools/table_loading.h"
#include "tools/text_encoding.h"

namespace ambcp {

namespace {

CsvSource openSource(const LoadOptions& options, const std::string& name) {
    const CsvSource bytes = options.file == "-" ? standardInput(name) : fileSource(options.file);
    return decoded(bytes, textEncodingNamed(options.encoding).value(), name);
}

} // namespace

ExitCode cargar(const LoadOptions& options) {
    using Mode = dbase::BulkLoader::Mode;
    const std::string table = requireTable(useFolder(options.folder), options.table);
    if (!options.replaces) {
        requireWhole(table);
    }
    const std::string name = options.file == "-" ? "entrada estándar" : options.file;
    CsvReader csv(openSource(options, name), name, separatorNamed(options.separator).value());
    std::uint64_t rows = 0;
    {
        ProgressLine line(tableName(table));
        rows = loadCsv(csv, table, options.replaces ? Mode::Replace : Mode::Append,
                       [&](std::uint64_t read, double share) {
                           if (share < 0) {
                               line.rows(read);
                           } else {
                               line.share(share);
                           }
                       });
    }
    std::printf("%s: %s.\n", tableName(table).c_str(),
                counted(rows, "fila cargada", "filas cargadas").c_str());
    return ExitCode::done;
}

} // namespace ambcp
