// Changes some rows of a table apart from it, all of which then come into it together.
#pragma once

#include <memory>
#include <span>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"
#include "dbase/system/progress.h"

namespace dbase {

class TableReplacement;

/// The rows and tags of the present table with changes that are kept in memory until finish(), which leaves
/// them to an exchange to be made in place. Many changes, and those for a replacement by itself, are made in
/// its new files. Without journal and locks, which nobody needs there; the present files stay as they are.
/// Errors: Error. Without finish(), what was made is removed.
class AMBREL_EXPORT TableRevision {
public:
    /// Errors: Error(NotFound) if there is no table; Error(ReadOnly) for one that only its own program may
    /// write.
    explicit TableRevision(TableReplacement& replacement);
    ~TableRevision();
    TableRevision(const TableRevision&) = delete;
    TableRevision& operator=(const TableRevision&) = delete;

    [[nodiscard]] const Schema& schema() const;
    [[nodiscard]] RecordNumber recordCount() const;
    /// As it is by now, deletion mark included; valid until the next call.
    [[nodiscard]] std::span<const char> row(RecordNumber number) const;

    void change(RecordNumber number, std::span<const char> record);
    RecordNumber add(std::span<const char> record);
    /// Sets the deletion mark.
    void erase(RecordNumber number);

    /// Ends with right tags: changed entry by entry, or rebuilt if that is faster. The replacement's
    /// commit(), which puts the files on the disk, is left to the caller.
    void finish(const Progress& progress = {});

private:
    struct State;
    template<typename Step>
    void alter(std::span<const char> record, const Step& step);

    std::unique_ptr<State> state_;
};

} // namespace dbase
