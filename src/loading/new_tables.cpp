// Creates the postal tables, all or none.
#include "loading/new_tables.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "data/TableDefinitions.h"
#include "dbase/system/databases.h"
#include "dbase/system/system_reason.h"
#include "dbase/table/table_replacement.h"

namespace fs = std::filesystem;

namespace loading {

namespace {

/// Removes what was created, unless it is kept.
class Creation {
public:
    Creation() = default;
    ~Creation() {
        std::error_code ignored; // the error that led here is the one to report
        for (const std::string& path : paths_) {
            fs::remove(path, ignored);
        }
    }
    Creation(const Creation&) = delete;
    Creation& operator=(const Creation&) = delete;

    /// Files are removed in reverse order of addition.
    void add(const std::string& path) { paths_.insert(paths_.begin(), path); }
    void keep() { paths_.clear(); }

private:
    std::vector<std::string> paths_;
};

/// The file of a table, or the index left over from one.
std::optional<std::string> leftOf(const std::string& folder, const std::string& table) {
    if (auto file = dbase::findTableFile(folder, table)) {
        return file;
    }
    return dbase::findIndexFile(folder + '/' + table + ".DBF");
}

void refuseExisting(const std::string& folder, const std::vector<dbase::TableDefinition>& definitions) {
    std::string existing;
    for (const dbase::TableDefinition& definition : definitions) {
        if (const auto file = leftOf(folder, definition.name)) {
            existing += (existing.empty() ? "" : ", ") + fs::path(*file).filename().string();
        }
    }
    if (!existing.empty()) {
        throw TablesExist("en la carpeta «" + folder + "» ya hay " + existing + ". No se ha creado nada.");
    }
}

/// Fails if a table is in use, so that the tables are never replaced in part.
void requireUnused(const std::string& folder, const std::vector<dbase::TableDefinition>& definitions) {
    std::vector<std::unique_ptr<dbase::TableReplacement>> all;
    for (const dbase::TableDefinition& definition : definitions) {
        if (const auto file = dbase::findTableFile(folder, definition.name)) {
            all.push_back(std::make_unique<dbase::TableReplacement>(*file));
        }
    }
}

void makeFolder(const std::string& folder, Creation& creation) {
    std::vector<fs::path> missing;
    std::error_code problem;
    for (fs::path part(folder); !part.empty() && !fs::exists(part, problem); part = part.parent_path()) {
        missing.insert(missing.begin(), part);
    }
    problem.clear();
    for (const fs::path& part : missing) {
        if (fs::create_directory(part, problem)) {
            creation.add(part.string());
        }
        if (problem) {
            throw Failure("no se puede crear la carpeta «" + part.string() +
                          "»: " + dbase::systemReason(problem.value()));
        }
    }
    if (!fs::is_directory(folder, problem)) {
        throw Failure("«" + folder + "» no es una carpeta");
    }
}

} // namespace

void createPostalTables(const std::string& folder, dbase::IfExists ifExists, const TableFiller& fill) {
    const std::vector<dbase::TableDefinition> definitions = ambrel::tableDefinitions();
    Creation creation;
    makeFolder(folder, creation);
    if (ifExists == dbase::IfExists::Refuse) {
        refuseExisting(folder, definitions);
    } else {
        requireUnused(folder, definitions);
    }
    for (const dbase::TableDefinition& definition : definitions) {
        const bool isNew = !leftOf(folder, definition.name);
        if (isNew) {
            creation.add(folder + '/' + definition.name + ".DBF");
            creation.add(folder + '/' + definition.name + ".MDX");
        }
        dbase::createTable(folder, definition, ifExists);
        if (fill) {
            fill(definition.name, dbase::findTableFile(folder, definition.name).value());
        }
    }
    creation.keep();
}

} // namespace loading
