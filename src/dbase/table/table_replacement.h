// Replaces the files of a table, completely or not at all; see docs/decisions/017-claim-and-replacement.md.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AmbrelExport.h"
#include "dbase/mdx/update_stamp.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/exchange_intention.h"
#include "dbase/table/replaced_files.h"
#include "dbase/table/table_claim.h"
#include "dbase/table/table_patch.h"

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

    [[nodiscard]] Folders& folders() const { return folders_; }
    [[nodiscard]] const std::string& tableFile() const { return files_.table; }
    [[nodiscard]] const std::string& newTableFile() const { return files_.newTable; }
    [[nodiscard]] const std::string& newIndexFile() const { return files_.newIndex; }
    /// Create the new files, empty, to be used by the same people as the old ones. Errors:
    /// Error(AccessDenied) if this user cannot keep the access of the old ones.
    [[nodiscard]] std::unique_ptr<File> makeTable() { return make(files_.newTable, files_.table); }
    [[nodiscard]] std::unique_ptr<File> makeIndex() { return make(files_.newIndex, files_.index); }
    /// Removes the new files.
    void discard() noexcept;

    /// Whether the table may be changed where it is: there is one, with an index, and an exchange has its
    /// changes completed after a stop.
    [[nodiscard]] bool mayChangeInPlace() const { return isExchanged_ && old_ && oldIndex_; }
    /// In place of new files: writes the changes to both files, for commit() to apply.
    void changeInPlace(const OverlayFile& records, const OverlayFile& index);

    // What TableExchange::commit() does itself otherwise, for all tables one after another. With files on a
    // disk, threads may do it side by side. Does nothing where there is no such table.
    /// At any time before settle(): takes the sum by which the present records are recognised.
    void sumOld();
    /// Flushes the new files, which are written to their end by now, and takes the sum of their records.
    void settle();

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
    friend class TableExchange;

    explicit TableReplacement(std::unique_ptr<TableClaim> own);

    [[noreturn]] void raiseUnderOwnName(const Error& error) const;
    void holdOld();
    void recoverOld() const;
    [[nodiscard]] std::unique_ptr<File> make(const std::string& path, const std::string& old);

    // The steps of commit(), and those of an exchange of several tables.
    [[nodiscard]] bool hasNewTable() const { return folders_.exists(files_.newTable); }
    [[nodiscard]] bool isChangedInPlace() const { return patch_.has_value(); }
    void holdNew();
    void flushNew();
    void dropOld();
    [[nodiscard]] IntendedTable intended();
    void markFor(const Intention& intention);
    void unmark() noexcept;
    void takeNames();
    void endMark();
    // In place of takeNames(), for a patch; the second and third side by side.
    void beginChanges();
    void changeRecords() { patch_->applyToRecords(*old_); }
    void changeIndex() { patch_->applyToIndex(*oldIndex_, newSession_); }
    void endChanges() { setMark(*oldIndex_, true); }

    std::unique_ptr<TableClaim> own_;
    Folders& folders_;
    bool isExchanged_ = false; // together with other tables
    ReplacedFiles files_;
    std::unique_ptr<File> old_, new_; // hold the opening and, of the old one, the presence lock
    std::unique_ptr<File> oldIndex_, newIndex_;
    std::optional<TablePatch> patch_; // in the new file
    std::optional<Fingerprint> oldSum_, restSum_, newSum_;
    std::uint64_t newSession_ = 0;
    std::optional<StampBytes> oldStamp_; // before the mark
    bool isIndexFirst_ = false;          // its name may have been changed, and that of the table not yet
    bool isCommitted_ = false;
};

} // namespace dbase
