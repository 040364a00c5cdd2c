// Creating the five postal tables in a folder.
#pragma once

#include <functional>
#include <string>

#include "dbase/table/table_definition.h"
#include "loading/failure.h"

namespace loading {

/// Thrown if tables exist already and may not be replaced.
class TablesExist : public Failure {
public:
    using Failure::Failure;
};

/// Receives the name and the file of a table just created.
using TableFiller = std::function<void(const std::string& name, const std::string& tableFile)>;

/// Creates the five tables, and the folder if missing. Errors: before anything is created, TablesExist naming
/// the tables that exist already (unless they may be replaced) or Failure naming those in use; later,
/// dbase::Error and anything the filler throws, after which no new table remains.
void createPostalTables(const std::string& folder, dbase::IfExists ifExists, const TableFiller& fill = {});

} // namespace loading
