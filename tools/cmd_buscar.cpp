// ambcp buscar: one record by its key.

#include <cstdio>

#include "dbase/system/quoted.h"
#include "loading/failure.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/record_output.h"
#include "tools/search_key.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

SearchKey parsePairs(dbase::Dataset& table, const std::vector<std::string>& pairs) {
    SearchKey key;
    for (const std::string& pair : pairs) {
        const std::size_t equals = pair.find('=');
        if (equals == std::string::npos) {
            throw loading::Failure(dbase::inQuotes(pair) + " no tiene la forma CAMPO=VALOR");
        }
        key.add(table, pair.substr(0, equals), pair.substr(equals + 1));
    }
    return key;
}

std::string joined(const std::vector<std::string>& words, const char* between, const char* beforeLast) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == words.size() ? beforeLast : between) + words[i];
    }
    return text;
}

/// A leading field that is left out would be searched for as blank, which finds nothing or something else. A
/// user who means blanks can give them.
void requireLeadingFields(dbase::Dataset& table, const SearchKey& key) {
    const std::vector<std::string> missing = missingBeforeLast(table, key);
    if (missing.empty()) {
        return;
    }
    const bool isOne = missing.size() == 1;
    std::string text = (isOne ? "falta " : "faltan ") + joined(missing, ", ", " y ") +
                       ", que en la clave del tag " + table.tag() + (isOne ? " va" : " van") +
                       " delante de lo que se busca; si " + (isOne ? "está" : "están") +
                       " en blanco, escriba";
    for (const std::string& field : missing) {
        text += ' ' + field + '=';
    }
    throw loading::Failure(text);
}

/// A field that the tag does not hold changes nothing in the key. Beside others it is worth a warning; a key
/// of such fields alone would look for blanks.
void tellUselessFields(dbase::Dataset& table, const SearchKey& key, std::size_t given) {
    const std::vector<std::string> outside = fieldsOutsideTag(table, key);
    for (const std::string& field : outside) {
        const std::string text = "la columna " + field + " no forma parte del tag " + table.tag();
        if (outside.size() == given) {
            throw loading::Failure(text);
        }
        complain("aviso: " + text + " y no cuenta.");
    }
}

} // namespace

ExitCode buscar(const FindOptions& options) {
    requireWhole(requireTable(useFolder(options.folder), options.table));
    dbase::Dataset table(folderDatabase, options.table);
    table.open();
    if (options.tag.empty()) {
        throw loading::Failure("falta el nombre del tag");
    }
    useTag(table, options.tag);
    const SearchKey key = parsePairs(table, options.pairs);
    tellUselessFields(table, key, options.pairs.size());
    requireLeadingFields(table, key);
    const auto mode = options.takesNearest ? dbase::SeekMode::Nearest : dbase::SeekMode::Exact;
    if (!table.seek(key.key(), mode)) {
        std::fputs(options.takesNearest ? "ambcp: no hay ningún registro con esa clave ni detrás de ella.\n"
                                        : "ambcp: no hay ningún registro con esa clave.\n",
                   stderr);
        return ExitCode::negative;
    }
    RecordOutput output(table, RecordNumbers::Hidden);
    output.writeCurrent();
    output.flush();
    return ExitCode::done;
}

} // namespace ambcp
