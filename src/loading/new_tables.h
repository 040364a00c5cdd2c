// Creating the five postal tables in a folder.
#pragma once

#include <functional>
#include <string>

#include "dbase/table/table_definition.h"
#include "loading/failure.h"

namespace loading {

/// Tables that are there already and may not be replaced.
class TablesExist : public Failure {
public:
    using Failure::Failure;
};

/// Is given the name and the file of a table that was just created.
using TableFiller = std::function<void(const std::string& name, const std::string& tableFile)>;

/// Creates the five tables, and the folder where it is not there. Errors: TablesExist naming the
/// tables that exist already (unless they may be replaced), Failure naming those in use, before anything is
/// created; dbase::Error and
/// whatever the filler raises, after which no new table remains.
void createPostalTables(const std::string& folder, dbase::IfExists ifExists, const TableFiller& fill = {});

} // namespace loading
