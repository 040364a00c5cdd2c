// The statistics office's street directory into a program's postal tables.
#pragma once

#include <string>

#include "AmbrelExport.h"
#include "directory/DirectoryChange.h"
#include "directory/EditionFiles.h"

namespace ambrel::directory {

/// What is loaded, and into what. Paths in UTF-8.
struct EditionLoad {
    std::string database = "DB"; // under which the folder of the tables is registered
    EditionFiles files;
    RangeOpening opening = RangeOpening::Ends;
    /// A new file from which `ambcp deshacer` takes the edition back; empty for none.
    std::string undoFile = {};
};

/// An edition that was loaded, or would be.
struct LoadedEdition {
    std::string date; // AAAA-MM-DD, to which it refers; empty if it is not known
    LoadSummary summary;
    EditionNotes notes;
};

/// What an edition would change; changes nothing. Errors: std::runtime_error for files that cannot be read or
/// are not what they should be, dbase::Error for the tables; both with a Spanish text in UTF-8. Anything that
/// the observer throws.
[[nodiscard]] AMBREL_EXPORT LoadedEdition simulateEdition(const EditionLoad& load,
                                                          const LoadObserver& observer = {});
/// Changes MUNICIPI, POSTAL and PROCEDEN as the edition says, and leaves alone what users have changed:
/// completely or, after an error, not at all. Errors: as above; dbase::Error(LockTimeout) if a program, this
/// one included, has one of the tables open.
AMBREL_EXPORT LoadedEdition loadEdition(const EditionLoad& load, const LoadObserver& observer = {});

} // namespace ambrel::directory
