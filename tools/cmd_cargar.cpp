// ambcp cargar: the rows of a CSV file into a table.

#include <algorithm>
#include <cstdio>

#include "dbase/system/counted.h"
#include "loading/municipality_order.h"
#include "loading/table_loading.h"
#include "loading/text_encoding.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

loading::TextSource openSource(const LoadOptions& options, const std::string& name) {
    const loading::TextSource bytes =
        options.file == "-" ? loading::standardInput(name) : loading::fileSource(options.file);
    return loading::decoded(bytes, loading::textEncodingNamed(options.encoding).value(), name);
}

/// The first few codes, and how many more there are.
std::string someOf(const std::vector<std::string>& codes) {
    constexpr std::size_t mostNamed = 5;
    std::string text;
    for (std::size_t i = 0; i < std::min(codes.size(), mostNamed); ++i) {
        text += (i == 0 ? "" : ", ") + codes[i];
    }
    return codes.size() > mostNamed ? text + " y " + std::to_string(codes.size() - mostNamed) + " más" : text;
}

/// Warns of entities before their municipality: added rows come after all others of the same code.
void tellEntitiesInFront(const std::string& tableFile) {
    if (!loading::isMunicipalityTable(tableFile)) {
        return;
    }
    dbase::Dataset table(folderDatabase, tableName(tableFile));
    table.open();
    const std::vector<std::string> codes = loading::codesWithEntitiesInFront(table);
    if (!codes.empty()) {
        complain("aviso: en el orden de COD_INE hay entidades delante de su municipio (" + someOf(codes) +
                 "); cargue la tabla entera con --reemplazar, que la ordena.");
    }
}

} // namespace

ExitCode cargar(const LoadOptions& options) {
    using Mode = dbase::BulkLoader::Mode;
    const std::string table = requireTable(useFolder(options.folder), options.table);
    if (!options.replaces) {
        requireWhole(table);
    }
    const std::string name = options.file == "-" ? "entrada estándar" : options.file;
    loading::CsvReader csv(openSource(options, name), name,
                           loading::separatorNamed(options.separator).value());
    std::uint64_t rows = 0;
    {
        ProgressLine line(tableName(table));
        rows = loading::loadCsv(csv, table, options.replaces ? Mode::Replace : Mode::Append,
                                [&](std::uint64_t read, double share) {
                                    if (share < 0) {
                                        line.rows(read);
                                    } else {
                                        line.share(share);
                                    }
                                });
    }
    std::printf("%s: %s.\n", tableName(table).c_str(),
                dbase::counted(rows, "fila cargada", "filas cargadas").c_str());
    tellEntitiesInFront(table);
    return ExitCode::done;
}

} // namespace ambcp
