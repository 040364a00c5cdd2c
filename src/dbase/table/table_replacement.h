// Replaces the files of a table, completely or not at all; see docs/decisions/017-claim-and-replacement.md.
#pragma once

#include <memory>
#include <string>

#include "AmbrelExport.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/table_claim.h"

namespace dbase {

/// The new files of a table, created beside those that they will replace. Until commit() the old table is
/// untouched; without it the new files are deleted. A table of which there is none yet is created.
class AMBREL_EXPORT TableReplacement {
public:
    /// `tableFile`: present or future path of the table. Errors: Error(LockTimeout) if any program has the
    /// table open, or is replacing it; Error(AccessDenied) if this user may not replace it.
    explicit TableReplacement(const std::string& tableFile);
    TableReplacement(const std::string& tableFile, Folders& folders);
    /// With a claim of the caller's, which must outlive it.
    explicit TableReplacement(const TableClaim& claim);
    ~TableReplacement();
    TableReplacement(const TableReplacement&) = delete;
    TableReplacement& operator=(const TableReplacement&) = delete;

    [[nodiscard]] const std::string& newTableFile() const { return newTable_; }
    [[nodiscard]] const std::string& newIndexFile() const { return newIndex_; }
    /// Create the new files, empty, to be used by the same people as the old ones. Errors:
    /// Error(AccessDenied) if this user cannot keep the access of the old ones.
    [[nodiscard]] std::unique_ptr<File> makeTable() { return make(newTable_, table_); }
    [[nodiscard]] std::unique_ptr<File> makeIndex() { return make(newIndex_, index_); }
    /// Puts the new files in place of the old ones; whatever the moment of a power cut, one of the two tables
    /// is left. Everything is on the disk on return.
    void commit();

    /// Runs a step that writes the new files. An error that names one of them names the file that it would
    /// have become instead.
    template<typename Step>
    auto underOwnNames(const Step& step) const {
        try {
            return step();
        } catch (const Error& error) {
            raiseUnderOwnName(error);
        }
    }

private:
    explicit TableReplacement(std::unique_ptr<TableClaim> own);

    [[noreturn]] void raiseUnderOwnName(const Error& error) const;
    void holdOld();
    void recoverOld() const;
    [[nodiscard]] std::unique_ptr<File> make(const std::string& path, const std::string& old);
    void changeNames(bool hasIndex);
    void rename(const std::string& from, const std::string& to);

    std::unique_ptr<TableClaim> own_;
    Folders& folders_;
    std::string table_, index_, newTable_, newIndex_;
    std::unique_ptr<File> old_; // holds the opening and the presence lock
    std::unique_ptr<File> oldIndex_;
    bool isIndexFirst_ = false; // its name was changed, and that of the table was not yet
    bool isCommitted_ = false;
};

} // namespace dbase
