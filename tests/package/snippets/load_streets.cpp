#include <functional>
#include <string>

#include "directory/DirectoryReport.h"
#include "directory/OfficialDirectory.h"

using namespace ambrel::directory;

// Brings the host's tables up to an edition of the official street directory, and leaves a report on it. No
// table may be open meanwhile. What `goesOn` throws ends the load, and leaves the tables as they were.
LoadedEdition loadStreets(const EditionFiles& files, const std::string& htmlFile,
                          const std::function<void(double share)>& goesOn) {
    DirectoryReport::requireWritable(htmlFile);
    DirectoryReport report({.tables = "DB", .files = {files.stretches}, .edition = ""});
    const EditionLoad load{.database = "DB", .files = files};
    const LoadedEdition edition =
        loadEdition(load, {.change = [&](const DirectoryChange& change) { report.add(change); },
                           .conflict = [&](const DirectoryConflict& conflict) { report.add(conflict); },
                           .progress = [&](const LoadingStep& step) { goesOn(step.share); }});
    report.run().edition = edition.date;
    report.write(htmlFile, edition.summary, edition.notes);
    return edition;
}
