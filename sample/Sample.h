// The sample tables and what goes with them, from data that the program carries inside.
#pragma once

#include <string>

#include "dbase/table/table_definition.h"

namespace ambrel {

/// Creates the five postal tables with the sample data in a folder, which is made where it is not there, and
/// in it the folder POSTALES with municipality files and saved answers; a file of that name that is there
/// already stays unless it may be replaced.
/// Errors: std::exception with a Spanish text when one of the tables exists (unless it may be replaced) or
/// cannot be written.
void createSample(const std::string& folder, dbase::IfExists ifExists = dbase::IfExists::Refuse);

} // namespace ambrel
