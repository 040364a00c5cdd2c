// The folder of tables that a command works on.
#include "tools/table_folder.h"

#include <algorithm>
#include <filesystem>

#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"
#include "dbase/system/system_reason.h"
#include "loading/failure.h"
#include "tools/cut_table.h"

namespace fs = std::filesystem;

namespace ambcp {

namespace {

bool isTableName(const fs::path& name) { return dbase::sameName(name.extension().string(), ".DBF"); }

} // namespace

std::string useFolder(const std::string& folder) {
    std::error_code problem;
    if (!fs::is_directory(folder, problem)) {
        throw loading::Failure("no existe la carpeta «" + folder + "»");
    }
    dbase::setDatabaseFolder(folderDatabase, folder);
    return dbase::databaseFolder(folderDatabase);
}

std::string usePostalTables(const std::string& folder) {
    std::string used = useFolder(folder);
    for (const char* const table : {"MUNICIPI", "POSTAL"}) {
        if (const auto file = dbase::findTableFile(used, table)) {
            requireWhole(*file);
        }
    }
    return used;
}

std::string requireTable(const std::string& folder, const std::string& table) {
    const auto file = dbase::findTableFile(folder, table);
    if (!file) {
        throw loading::Failure("en la carpeta «" + folder + "» no hay ninguna tabla " +
                               dbase::inQuotes(table));
    }
    return *file;
}

std::vector<std::string> tablesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code problem;
    for (fs::directory_iterator entry(folder, problem), end; !problem && entry != end;
         entry.increment(problem)) {
        std::error_code ignored;
        if (isTableName(entry->path().filename()) && entry->is_regular_file(ignored)) {
            files.push_back(folder + '/' + entry->path().filename().string());
        }
    }
    if (problem) {
        throw loading::Failure("no se puede leer la carpeta «" + folder +
                               "»: " + dbase::systemReason(problem.value()));
    }
    if (files.empty()) {
        throw loading::Failure("en la carpeta «" + folder + "» no hay ninguna tabla");
    }
    std::ranges::sort(files);
    return files;
}

std::vector<std::string> tablesNamed(const std::string& folder, const std::string& table) {
    return table.empty() ? tablesIn(folder) : std::vector{requireTable(folder, table)};
}

std::string tableName(const std::string& tableFile) { return fs::path(tableFile).stem().string(); }

std::string inTablePage(const dbase::Dataset& table, const std::string& text, const std::string& what) {
    const auto bytes = dbase::CodePage::ofDriver(table.schema().languageDriver).fromUtf8(text);
    if (!bytes) {
        throw loading::Failure(what + " " + dbase::inQuotes(text) +
                               " lleva caracteres que la tabla no puede guardar");
    }
    return *bytes;
}

void useTag(dbase::Dataset& table, const std::string& tag) {
    try {
        table.setTag(tag);
    } catch (const dbase::Error& error) {
        if (error.code() != dbase::ErrorCode::NotFound) {
            throw;
        }
        const std::vector<std::string> names = table.tagNames();
        std::string known;
        for (const std::string& name : names) {
            known += (known.empty() ? "" : ", ") + name;
        }
        const std::string reason = table.readOnlyReason(); // names a missing index, too
        const std::string instead = !known.empty()   ? "tiene " + known
                                    : reason.empty() ? "no tiene índice"
                                                     : reason;
        throw loading::Failure("la tabla " + table.tableName() + " no tiene ningún tag " +
                               dbase::inQuotes(tag) + "; " + instead);
    }
}

} // namespace ambcp
