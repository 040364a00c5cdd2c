// Changes to many rows of a table, each of which "ambcp deshacer" can put back.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "loading/row_posts.h"
#include "loading/undo_writer.h"

namespace loading {

/// The columns that identify the rows of a table, as far as it shows: a postal table's own, or the column of
/// a unique tag. Empty if there is none.
[[nodiscard]] std::vector<std::string> keyColumnsOf(const dbase::Table& table);

/// Collects changes and carries them out batch by batch, while other stations use the table: first their
/// undo entries are put on the disk, then the rows are posted, each under its record's lock. Rows that others
/// hold or have changed meanwhile are left alone. Errors: dbase::Error; nothing is then done of the batch
/// whose entries could not be written, and the batches before it stay.
class BatchChanges {
public:
    /// `key`: as in UndoWriter::addTable(). `observer`: may be empty. Errors: dbase::Error(ReadOnly).
    BatchChanges(std::shared_ptr<dbase::Table> table, UndoWriter& undo, const std::vector<std::string>& key,
                 RowPosts::Observer observer = {});
    /// Changes that were not finished are dropped.
    ~BatchChanges() = default;
    BatchChanges(const BatchChanges&) = delete;
    BatchChanges& operator=(const BatchChanges&) = delete;

    /// A live row as it was seen, and as it shall be. The observer is called once it is decided; it must not
    /// use this object.
    void change(dbase::RecordNumber number, std::span<const char> shown, std::span<const char> record);
    /// Only in a table with a key: a new row, or a live one to be deleted.
    void add(std::span<const char> record);
    void erase(dbase::RecordNumber number, std::span<const char> shown);
    /// Carries out what was collected so far; all of it is on the disk afterwards.
    void finish();

private:
    void collect(dbase::RecordNumber number, std::span<const char> shown, std::span<const char> record);
    void postChanges();
    void postAdded();

    std::shared_ptr<dbase::Table> table_;
    UndoWriter& undo_;
    std::size_t undoTable_;
    RowPosts::Observer observer_;
    RowPosts posts_;
    std::vector<std::vector<char>> added_;
};

} // namespace loading
