// One table whose changes are being put back.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "loading/row_index.h"
#include "loading/row_posts.h"
#include "loading/undo_lines.h"

namespace loading {

/// A value that was not put back, or a row, if `column` is empty. Texts are UTF-8.
struct LeftAlone {
    std::string table; // path
    dbase::RecordNumber number = 0;
    std::string column, before, now;
    std::string reason;
};

/// Numbers of rows.
struct UndoTotals {
    std::uint64_t putBack = 0;
    std::uint64_t asBefore = 0; // put back earlier, or never changed after all
    std::uint64_t leftAlone = 0;
};

/// Puts rows back, the last entry first. A row is found by its number if it holds there what was left there;
/// otherwise by the table's key, if it has one, or a changed row by all its values, if no other has the same.
class UndoneTable {
public:
    using Observer = std::function<void(const LeftAlone&)>;

    /// `path`: where the table is now. Errors: Failure if its columns are not those of the entries;
    /// dbase::Error(ReadOnly) and those of opening.
    UndoneTable(const UndoTable& then, const std::string& path, UndoTotals& totals, Observer observer);

    /// Errors: dbase::Error; what was put back so far stays.
    void undo(const UndoEntry& entry);
    /// Leaves the row of an entry alone, and returns true, if the companion (UndoTable) has left its row
    /// alone.
    [[nodiscard]] bool staysWith(const UndoneTable& companion, const UndoEntry& entry);
    /// Posts what is pending; everything put back is on the disk afterwards.
    void finish();

private:
    using Row = std::vector<char>; // empty: there is none
    struct Found {
        dbase::RecordNumber number = 0;
        Row row;
    };
    /// What the post of a record puts back.
    struct Pending {
        UndoEntry entry;
        Row after; // of the post
    };

    void undoChange(const UndoEntry& entry);
    void undoMovedChange(const UndoEntry& entry);
    void undoMovedRow(const UndoEntry& entry);
    void undoAddition(const UndoEntry& entry);
    void undoDeletion(const UndoEntry& entry);

    [[nodiscard]] Row rowAt(dbase::RecordNumber number) const;
    [[nodiscard]] Row liveRowAt(dbase::RecordNumber number) const;
    [[nodiscard]] std::vector<Found> alike(std::span<const char> row);
    [[nodiscard]] bool hasSameKey(std::span<const char> one, std::span<const char> other) const;
    [[nodiscard]] bool agreesWhereChanged(const UndoEntry& entry, std::span<const char> row,
                                          std::span<const char> wanted) const;
    [[nodiscard]] Row putBackInto(const UndoEntry& entry, const Row& row) const;

    void noteAsBefore(dbase::RecordNumber number);
    /// Remembers a row that is as it was before.
    void keep(dbase::RecordNumber number);
    [[nodiscard]] bool isAsBefore(dbase::RecordNumber number) const {
        return number < isAsBefore_.size() && isAsBefore_[number];
    }

    void post(const UndoEntry& entry, const Found& found, Row after);
    void recall(const UndoEntry& entry, const Row& stored);
    void addAgain(const UndoEntry& entry);
    void leave(const UndoEntry& entry, const Row& now, dbase::RecordNumber number, const std::string& reason);
    void leaveUnfound(const UndoEntry& entry);
    [[nodiscard]] std::string text(const dbase::Column& column, std::span<const char> row) const;

    std::shared_ptr<dbase::Table> table_;
    std::vector<std::size_t> key_, tie_;
    bool isOfWholeRows_;
    UndoTotals& totals_;
    Observer observer_;
    RowPosts posts_;
    std::map<dbase::RecordNumber, Pending> pending_;
    std::vector<bool> isAsBefore_;  // by number: rows put back or never changed after all
    std::set<std::string> left_;    // the ties of rows left alone, if it has any
    std::optional<RowIndex> index_; // from the first row on that is not found by its number
};

} // namespace loading
