// Copies a file into another one.
#pragma once

#include "dbase/system/file.h"

namespace dbase {

/// Gives an empty file the contents of another one. File systems that can share the blocks of both do so, and
/// copy nothing. Errors: Error(Io, DiskFull).
void copyContents(const File& from, File& to);

} // namespace dbase
