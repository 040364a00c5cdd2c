// What a load of the official directory writes: totals, what was noticed, and lists.
#pragma once

#include <cstdint>
#include <string>

#include "directory/DirectoryChange.h"
#include "directory/EditionFiles.h"

namespace ambcp {

/// What comes, goes and changes, and what is left alone, municipality by municipality, as CSV to standard
/// output.
void printMunicipalities(const ambrel::directory::LoadSummary& summary);

/// What was stored, to standard output.
void printTotals(const ambrel::directory::LoadSummary& summary);

/// Bad lines and warnings, to standard error.
void tellNotes(const ambrel::directory::EditionNotes& notes, const ambrel::directory::LoadSummary& summary);

/// The rows that stay although the office has others, for a file of their own.
class ConflictList {
public:
    ConflictList();

    void add(const ambrel::directory::DirectoryConflict& conflict);
    /// Writes them as CSV, or leaves a file that has the name as it was. Errors: dbase::Error.
    void write(const std::string& file) const;

private:
    std::string text_;
};

} // namespace ambcp
