// An edition of the official directory into the postal tables.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "directory/DirectoryChange.h"
#include "directory/Edition.h"

namespace ambrel::directory {

/// Loads an edition, and the next one over it. Rows that an edition brought, as PROCEDEN says, and that
/// nobody has touched since, follow the office: they change, go and come. All other rows of POSTAL and
/// MUNICIPI stay as they are.
class DirectoryLoading {
public:
    /// `database`: of the tables, which exist; PROCEDEN may be missing. Errors: dbase::Error.
    DirectoryLoading(const std::string& database, const std::string& folder);
    ~DirectoryLoading();
    DirectoryLoading(const DirectoryLoading&) = delete;
    DirectoryLoading& operator=(const DirectoryLoading&) = delete;

    /// Before the files of what is to be stored are read: keeps everybody else out of the tables until it is
    /// stored or this object ends, and copies meanwhile those that will change. Errors:
    /// dbase::Error(LockTimeout) if a program has one of the tables open.
    void begin();
    /// Sets what is to be stored. Errors: loading::Failure if MUNICIPI is empty and nothing names
    /// municipalities.
    void take(std::unique_ptr<Edition> edition);
    [[nodiscard]] const Edition& edition() const { return *edition_; }
    /// What would be stored; changes nothing, and lets others work.
    [[nodiscard]] LoadSummary simulate(RangeOpening opening, const LoadObserver& observer = {});
    /// Stores it, once: whatever the moment of a power cut, POSTAL, PROCEDEN and MUNICIPI are all as before
    /// or all as afterwards. `undoFile`: a new file from which loading::undo() takes it back; empty for none.
    /// Errors: dbase::Error, with nothing changed, such as LockTimeout if a program has one of the tables
    /// open; what the observer throws.
    LoadSummary store(RangeOpening opening, const std::string& undoFile, const LoadObserver& observer = {});

private:
    struct Held;

    std::string folder_;
    std::vector<StreetTypeRow> types_;
    std::map<PlaceCode, std::string> known_; // of MUNICIPI, if it has rows
    std::unique_ptr<Edition> edition_;
    std::unique_ptr<Held> held_; // from begin() on
};

} // namespace ambrel::directory
