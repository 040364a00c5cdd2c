// An edition of the official directory into postal tables that have no rows yet.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "dbase/table/table_definition.h"
#include "directory/DirectoryChange.h"
#include "directory/Edition.h"

namespace ambrel::directory {

/// PROCEDEN, the table beside POSTAL that says where its rows come from.
[[nodiscard]] dbase::TableDefinition provenanceTable();

/// Loads an edition. POSTAL must be empty; MUNICIPI is filled if it is, and else gives the municipalities'
/// names.
class DirectoryLoading {
public:
    /// `database`: of the tables, which exist. Errors: loading::Failure if POSTAL has rows, dbase::Error.
    DirectoryLoading(const std::string& database, const std::string& folder);

    /// Sets what is to be stored. Errors: loading::Failure if MUNICIPI is empty and nothing names
    /// municipalities.
    void take(std::unique_ptr<Edition> edition);
    [[nodiscard]] const Edition& edition() const { return *edition_; }
    /// What would be stored; changes nothing.
    [[nodiscard]] LoadSummary simulate(RangeOpening opening, const LoadObserver& observer = {});
    /// Stores it. MUNICIPI, PROCEDEN and POSTAL are each exchanged whole, POSTAL last: a load that ends
    /// before leaves it empty, and can be repeated. `undoFile`: a new file from which loading::undo() takes
    /// it all back; empty for none. Errors: dbase::Error, if a station has one of them open before anything
    /// is changed.
    LoadSummary store(RangeOpening opening, const std::string& undoFile, const LoadObserver& observer = {});

private:
    [[nodiscard]] LoadSummary visit(RangeOpening opening, const LoadObserver& observer,
                                    const std::function<void(const StreetRow&)>& use);

    std::string database_, folder_;
    std::vector<StreetTypeRow> types_;
    std::map<PlaceCode, std::string> known_; // of MUNICIPI, if it has rows
    std::unique_ptr<Edition> edition_;
};

} // namespace ambrel::directory
