// Keeps what is about to be changed in tables, so that "ambcp deshacer" can put it back.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dbase/system/folders.h"
#include "loading/undo_lines.h"

namespace loading {

/// Writes an undo file. Entries are on the disk after sync(), and only then may the rows be changed. Errors
/// of everything: dbase::Error; what was synced before stays readable.
class UndoWriter {
public:
    /// Creates the file, with the permissions of `model`, a table, as it holds the same data. `order`: what
    /// is going to change the tables, in UTF-8. Errors: dbase::Error(Exists) if anything has that name.
    UndoWriter(const std::string& path, const std::string& model, const std::string& order,
               dbase::Folders& folders = dbase::diskFolders());
    /// Marks the end of the file, so that one that is cut is recognised; removes a file that has no entries.
    ~UndoWriter();
    UndoWriter(const UndoWriter&) = delete;
    UndoWriter& operator=(const UndoWriter&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] bool isEmpty() const { return entries_ == 0; }

    /// Names a table of the entries to come. `key`: the columns whose values together no two rows share;
    /// empty if the table has none. Errors: dbase::Error(NotFound) for a column that it lacks.
    [[nodiscard]] std::size_t addTable(const std::string& tableFile, const dbase::Schema& schema,
                                       const std::vector<std::string>& key);
    /// The same for a table whose rows are put back whole or stay. `companionOf`: of an earlier one like
    /// this, whose rows stay with those that have the values of its key, and whose entries precede theirs.
    [[nodiscard]] std::size_t addTableOfWholeRows(const std::string& tableFile, const dbase::Schema& schema,
                                                  const std::vector<std::string>& key,
                                                  std::optional<std::size_t> companionOf = {});

    // --- Entries. Number 0: not known yet. Only a table with a key can have additions and deletions.
    void change(std::size_t table, dbase::RecordNumber number, std::span<const char> before,
                std::span<const char> after);
    void addition(std::size_t table, dbase::RecordNumber number, std::span<const char> row);
    void deletion(std::size_t table, dbase::RecordNumber number, std::span<const char> row);
    /// Takes back the last entry of a record: it was not carried out.
    void unmade(std::size_t table, dbase::RecordNumber number);

    /// Waits until every entry so far is on the disk.
    void sync();

private:
    [[nodiscard]] UndoTable tableOf(const std::string& tableFile, const dbase::Schema& schema,
                                    const std::vector<std::string>& key) const;
    std::size_t add(UndoTable table);
    void write(const UndoEntry& entry);
    void send();
    void end();

    dbase::Folders& folders_;
    std::string path_;
    std::unique_ptr<dbase::File> file_;
    std::vector<UndoTable> tables_;
    std::string pending_;
    std::uint64_t end_ = 0; // of the file
    std::uint64_t entries_ = 0;
    bool isSynced_ = false, isNameSynced_ = false; // everything sent so far; the name in its folder
};

} // namespace loading
