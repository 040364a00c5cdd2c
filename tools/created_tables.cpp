// Creates tables for streets, and removes them if nothing came of it.
#include "tools/created_tables.h"

#include <exception>
#include <filesystem>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/databases.h"
#include "dbase/table/table_creation.h"
#include "sample/Sample.h"
#include "tools/table_folder.h"

namespace fs = std::filesystem;

namespace ambcp {

namespace {

bool hasRows(const std::string& folder) {
    useFolder(folder);
    for (const char* const name : {"MUNICIPI", "POSTAL"}) {
        dbase::Dataset table(folderDatabase, name);
        table.open();
        if (!table.isEmpty()) {
            return true;
        }
    }
    return false;
}

void removeTables(const std::string& folder) {
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions()) {
        if (const auto file = dbase::findTableFile(folder, definition.name)) {
            const dbase::TableClaim claim(*file);
            dbase::removeTable(claim);
        }
    }
}

} // namespace

CreatedTables::CreatedTables(std::string folder) : folder_(std::move(folder)) {
    std::error_code problem;
    for (fs::path part = fs::absolute(folder_).lexically_normal(); !fs::exists(part, problem);
         part = part.parent_path()) {
        missingFolders_.push_back(part.string());
    }
    ambrel::createTablesForStreets(folder_);
}

CreatedTables::~CreatedTables() {
    if (isKept_) {
        return;
    }
    try {
        if (!hasRows(folder_)) {
            removeTables(folder_);
            std::error_code ignored; // one that somebody else uses is not empty
            for (const std::string& path : missingFolders_) {
                fs::remove(path, ignored);
            }
        }
    } catch (const std::exception&) {
        // The error that led here is the one to report; empty tables do no harm.
    }
}

} // namespace ambcp
