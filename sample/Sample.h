// The sample tables and the files that belong to them, from data inside the program.
#pragma once

#include <string>

#include "dbase/table/table_definition.h"

namespace ambrel {

/// Creates the five postal tables with the sample data in a folder, which is created if missing, and
/// in it the folder POSTALES with municipality files and saved answers; an existing file of that name
/// stays unless it may be replaced.
/// Errors: std::exception with a Spanish text when one of the tables exists (unless it may be replaced) or
/// cannot be written.
void createSample(const std::string& folder, dbase::IfExists ifExists = dbase::IfExists::Refuse);

/// Adds the rows of the sample to a table: those of PROVIN and TIPO_VIA are the country's. Errors as above.
void addSampleRows(const std::string& name, const std::string& tableFile);

} // namespace ambrel
