// Replaces several tables together; see docs/decisions/024-exchange.md.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/system/folders.h"
#include "dbase/table/table_replacement.h"

namespace dbase {

/// Tables that are replaced together, completely or not at all, whatever the moment of a power cut or kill.
/// Which files take which names is written to a file beside them first; the next program to open one of the
/// tables goes on from there.
class AMBREL_EXPORT TableExchange {
public:
    /// Holds all tables, present or future, of one folder. Concludes first what a stopped program has left
    /// there. Errors: Error(LockTimeout) if any program has one of them open, or is replacing it;
    /// Error(AccessDenied) if this user may not replace one; Error(BadState) if they or their indexes lie in
    /// several folders.
    explicit TableExchange(const std::vector<std::string>& tableFiles);
    TableExchange(const std::vector<std::string>& tableFiles, Folders& folders);
    ~TableExchange();
    TableExchange(const TableExchange&) = delete;
    TableExchange& operator=(const TableExchange&) = delete;

    /// For the new files of a table, numbered from 0 in the order given; do not call its commit().
    [[nodiscard]] TableReplacement& table(std::size_t index) { return *tables_.at(index); }

    using Steps = std::vector<std::function<void()>>;
    /// Runs steps that do not wait for each other; throws what one of them has thrown once all have ended.
    using StepRunner = std::function<void(const Steps&)>;
    static void runInTurn(const Steps& steps);

    /// Exchanges the tables whose new files were made; the others stay as they are. On return everything is
    /// on the disk, and no table is held any more. `runner`: with files on a disk, may run steps in threads.
    /// Errors: Error, with all tables as they were unless isDecided().
    void commit(const StepRunner& runner = runInTurn);
    /// Whether commit() got so far that the next program to open one of the tables may complete it.
    [[nodiscard]] bool isDecided() const { return isDecided_; }

private:
    void hold(const std::vector<std::string>& tableFiles);
    void requireOneFolder() const;
    [[nodiscard]] std::unique_ptr<File> decide(const std::vector<TableReplacement*>& made);
    static void carryOut(const std::vector<TableReplacement*>& made, const StepRunner& runner);
    void release();
    [[nodiscard]] std::unique_ptr<File> writeIntention(const Intention& intention);

    Folders& folders_;
    std::string folder_;
    std::vector<std::unique_ptr<TableClaim>> claims_;
    std::vector<std::unique_ptr<TableReplacement>> tables_;
    bool isDecided_ = false;
};

/// Completes the exchange that a stopped program has left in a folder, or removes what remains of it; opening
/// one of its tables does so, too. Does nothing if there is none. Errors: Error(LockTimeout, AccessDenied).
AMBREL_EXPORT void completeExchange(const std::string& folder);
AMBREL_EXPORT void completeExchange(const std::string& folder, Folders& folders);

} // namespace dbase
