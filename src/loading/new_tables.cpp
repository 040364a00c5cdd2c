// Creates the postal tables, all or none.
#include "loading/new_tables.h"

#include <filesystem>
#include <memory>
#include <vector>

#include "data/TableDefinitions.h"
#include "dbase/lock/locks.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/system_reason.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_replacement.h"

namespace fs = std::filesystem;

namespace loading {

namespace {

/// The folders that were missing; removed at the end unless they are kept or used.
class NewFolders {
public:
    NewFolders() = default;
    ~NewFolders() {
        std::error_code ignored; // the error that led here is the one to report
        for (const std::string& path : paths_) {
            fs::remove(path, ignored);
        }
    }
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;

    /// Folders are removed in reverse order of addition.
    void add(const std::string& path) { paths_.insert(paths_.begin(), path); }
    void keep() { paths_.clear(); }

private:
    std::vector<std::string> paths_;
};

/// A claim on each of the tables, always in the same order, so that of two creations at once one waits for
/// the other.
class Claims {
public:
    Claims(const std::string& folder, const std::vector<dbase::TableDefinition>& definitions) {
        const dbase::LockWaits waits;
        for (const dbase::TableDefinition& definition : definitions) {
            const auto existing = dbase::findTableFile(folder, definition.name);
            claims_.push_back(std::make_unique<dbase::TableClaim>(
                existing.value_or(folder + '/' + definition.name + ".DBF")));
        }
    }
    /// Removes the tables added, unless they are kept or another program uses them already.
    ~Claims() {
        for (const dbase::TableClaim* claim : created_) {
            try {
                dbase::removeTable(*claim);
            } catch (const dbase::Error&) {
                // The error that led here is the one to report.
            }
        }
    }
    Claims(const Claims&) = delete;
    Claims& operator=(const Claims&) = delete;

    [[nodiscard]] const dbase::TableClaim& operator[](std::size_t number) const { return *claims_[number]; }
    void addCreated(std::size_t number) { created_.push_back(claims_[number].get()); }
    void keep() { created_.clear(); }

private:
    std::vector<std::unique_ptr<dbase::TableClaim>> claims_;
    std::vector<const dbase::TableClaim*> created_;
};

void refuseExisting(const std::string& folder, const std::vector<dbase::TableDefinition>& definitions) {
    std::string existing;
    for (const dbase::TableDefinition& definition : definitions) {
        if (const auto file = dbase::findTableFile(folder, definition.name)) {
            existing += (existing.empty() ? "" : ", ") + fs::path(*file).filename().string();
        }
    }
    if (!existing.empty()) {
        throw TablesExist("en la carpeta «" + folder + "» ya hay " + existing + ". No se ha creado nada.");
    }
}

/// Fails if a table is in use, so that the tables are never replaced in part.
void requireUnused(const Claims& claims, std::size_t tables) {
    std::vector<std::unique_ptr<dbase::TableReplacement>> all;
    for (std::size_t i = 0; i < tables; ++i) {
        all.push_back(std::make_unique<dbase::TableReplacement>(claims[i]));
    }
}

void makeFolder(const std::string& folder, NewFolders& newFolders) {
    std::vector<fs::path> missing;
    std::error_code problem;
    for (fs::path part(folder); !part.empty() && !fs::exists(part, problem); part = part.parent_path()) {
        missing.insert(missing.begin(), part);
    }
    problem.clear();
    for (const fs::path& part : missing) {
        if (fs::create_directory(part, problem)) {
            newFolders.add(part.string());
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
    const bool mayReplace = ifExists == dbase::IfExists::Replace;
    NewFolders newFolders;
    makeFolder(folder, newFolders);
    if (!mayReplace) {
        refuseExisting(folder, definitions); // also where claims cannot be created
    }
    Claims claims(folder, definitions);
    if (mayReplace) {
        requireUnused(claims, definitions.size());
    } else {
        refuseExisting(folder, definitions);
    }
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        const std::string& file = claims[i].tableFile();
        const bool isNew = !fs::exists(file);
        dbase::createTable(claims[i], definitions[i], ifExists);
        if (isNew) {
            claims.addCreated(i);
        }
        if (fill) {
            fill(definitions[i].name, file);
        }
    }
    claims.keep();
    newFolders.keep();
}

} // namespace loading
