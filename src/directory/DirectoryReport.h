// The report on the load of an edition, or on its trial: one HTML page.
#pragma once

#include <array>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "directory/DirectoryChange.h"
#include "directory/EditionFiles.h"

namespace ambrel::directory {

/// What was loaded, and into what. Texts in UTF-8, unless it says otherwise.
struct DirectoryRun {
    std::string tables;                   // the folder
    std::vector<std::string> files;       // names of the edition's files
    std::string edition;                  // AAAA-MM-DD; empty if it is not known
    std::vector<unsigned> provinces = {}; // those that were wanted; empty: all
    RangeOpening opening = RangeOpening::Ends;
    bool isTrial = false; // nothing was changed
    /// Noticed before the files were read; as warningsOf() has those that were noticed in them.
    std::vector<std::string> warnings = {};
    /// The name of a province of two digits, both in Windows-1252; empty if there is none.
    std::function<std::string(const std::string&)> provinceName = {};
    std::time_t begun = std::time(nullptr);
};

/// A change as the page shows it, in UTF-8.
struct ReportedChange {
    std::string key, municipality, before, after;
};

/// A conflict as the page shows it, in UTF-8.
struct ReportedConflict {
    std::string key, municipality, name, ours, official;
};

/// The lists of a report: rows of POSTAL, of which one that changes is in each that it belongs to, and those
/// of MUNICIPI.
enum class ChangeList { Renamed, OtherCode, OtherRange, Gone, New, Municipalities };

/// Collects changes and conflicts in bounded memory: the first hundred of each kind are kept.
class AMBREL_EXPORT DirectoryReport {
public:
    /// How many of each kind are kept, and how many kinds there are.
    static constexpr std::size_t mostShown = 100;
    static constexpr std::size_t changeLists = 6, conflictKinds = 4;

    /// A report without rows.
    explicit DirectoryReport(DirectoryRun run) : run_(std::move(run)) {}

    /// Whether write() could write there now; worth asking before a long load. Errors: dbase::Error, which
    /// says why not.
    static void requireWritable(const std::string& file);

    /// Takes what an observer gets.
    void add(const DirectoryChange& change);
    void add(const DirectoryConflict& conflict);
    /// What was loaded; some of it is known only once the files are read.
    [[nodiscard]] DirectoryRun& run() { return run_; }
    [[nodiscard]] const DirectoryRun& run() const { return run_; }
    /// Writes the page, or leaves a file that has the name as it was. Errors: dbase::Error.
    void write(const std::string& file, const LoadSummary& summary, const EditionNotes& notes) const;

    /// What is kept, for the page.
    [[nodiscard]] const std::vector<ReportedChange>& first(ChangeList list) const {
        return changes_.at(static_cast<std::size_t>(list));
    }
    [[nodiscard]] const std::vector<ReportedConflict>& first(ConflictKind kind) const {
        return conflicts_.at(static_cast<std::size_t>(kind));
    }
    [[nodiscard]] std::uint64_t count(ConflictKind kind) const {
        return conflictCounts_.at(static_cast<std::size_t>(kind));
    }

private:
    void keep(ChangeList list, const DirectoryChange& change);

    DirectoryRun run_;
    std::array<std::vector<ReportedChange>, changeLists> changes_;
    std::array<std::vector<ReportedConflict>, conflictKinds> conflicts_;
    std::array<std::uint64_t, conflictKinds> conflictCounts_{};
};

} // namespace ambrel::directory
