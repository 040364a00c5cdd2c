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

/// Creates the five postal tables without municipalities and streets: provinces and street types are those of
/// the sample, which are the country's. Errors as above.
void createTablesForStreets(const std::string& folder);

} // namespace ambrel
