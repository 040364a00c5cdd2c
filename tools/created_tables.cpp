// Creates tables for streets, and removes them if nothing came of it.
#include "tools/created_tables.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"
#include "dbase/system/system_reason.h"
#include "dbase/table/table_creation.h"
#include "loading/failure.h"
#include "sample/Sample.h"
#include "tools/table_folder.h"

namespace fs = std::filesystem;

namespace ambcp {

namespace {

bool isEmpty(const std::string& name) {
    dbase::Dataset table(folderDatabase, name);
    table.open();
    return table.isEmpty();
}

} // namespace

CreatedTables::CreatedTables(std::string folder) : folder_(std::move(folder)) {
    std::error_code problem;
    for (fs::path part = fs::absolute(folder_).lexically_normal(); !fs::exists(part, problem);
         part = part.parent_path()) {
        missingFolders_.push_back(part.string());
    }
    try {
        create();
    } catch (...) {
        remove();
        throw;
    }
}

CreatedTables::~CreatedTables() {
    if (!isKept_) {
        remove();
    }
}

void CreatedTables::create() {
    std::error_code problem;
    fs::create_directories(folder_, problem);
    if (problem) {
        throw loading::Failure("no se puede crear la carpeta «" + folder_ +
                               "»: " + dbase::systemReason(problem.value()));
    }
    useFolder(folder_);
    // POSTAL last: where it is, a stop has left none of the others without its rows.
    for (const char* const name : {"PROVIN", "TIPO_VIA", "MUNICIMJ", "MUNICIPI", "POSTAL"}) {
        createIfMissing(name);
    }
}

void CreatedTables::createIfMissing(const std::string& name) {
    if (!dbase::findTableFile(folder_, name)) {
        const std::vector<dbase::TableDefinition> definitions = ambrel::tableDefinitions();
        dbase::createTable(folder_, *std::ranges::find(definitions, name, &dbase::TableDefinition::name));
        created_.push_back(name);
    }
    if ((name == "PROVIN" || name == "TIPO_VIA") && isEmpty(name)) {
        ambrel::addSampleRows(name, *dbase::findTableFile(folder_, name));
    }
}

void CreatedTables::remove() noexcept {
    try {
        for (const std::string& name : created_) {
            if ((name == "MUNICIPI" || name == "POSTAL") && !isEmpty(name)) {
                return;
            }
        }
        for (const std::string& name : created_) {
            if (const auto file = dbase::findTableFile(folder_, name)) {
                const dbase::TableClaim claim(*file);
                dbase::removeTable(claim);
            }
        }
        std::error_code ignored; // a folder that somebody else uses is not empty
        for (const std::string& path : missingFolders_) {
            fs::remove(path, ignored);
        }
    } catch (const std::exception&) {
        // The error that led here is the one to report; empty tables do no harm.
    }
}

} // namespace ambcp
