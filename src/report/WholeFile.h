// A file that is there whole, or as it was before.
#pragma once

#include <string>
#include <string_view>

#include "dbase/system/folders.h"

namespace report {

/// Whether writeWholeFile() could write there now; asked before long work. Errors: dbase::Error, which says
/// why not.
void requireWritable(const std::string& path, dbase::Folders& folders = dbase::diskFolders());

/// Writes beside the file and renames: until then, a file that has the name stays as it is. It keeps its
/// permissions; a link is followed. Errors: dbase::Error, which names the file; then nothing of it remains.
void writeWholeFile(const std::string& path, std::string_view content,
                    dbase::Folders& folders = dbase::diskFolders());

} // namespace report
