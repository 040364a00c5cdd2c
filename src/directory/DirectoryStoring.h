// Stores what a load does, with an undo file beside it.
#pragma once

#include <array>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dbase/table/table_exchange.h"
#include "directory/StoredRows.h"
#include "directory/TableChanges.h"
#include "directory/TableWriting.h"
#include "loading/undo_writer.h"

namespace ambrel::directory {

/// Keeps everybody else out of POSTAL, PROCEDEN and MUNICIPI, and exchanges them together. Without commit()
/// the tables stay as they are, and there is no undo file.
class DirectoryStoring final : public TableChanges {
public:
    /// Errors: dbase::Error(LockTimeout) if a program has one of the tables open.
    explicit DirectoryStoring(const std::string& folder);
    ~DirectoryStoring() override;

    /// Whether it could begin now. Errors: dbase::Error(LockTimeout).
    static void requirePossible(const std::string& folder);

    /// As they are before commit().
    [[nodiscard]] StoredTables present() const;

    /// Begins in threads of its own what commit() needs to know of the present tables.
    void beginSums();
    /// Before the first change. `order`: what is being done; `undoFile`: empty for none. Errors:
    /// dbase::Error(Exists) if there is such a file.
    void keepUndo(const std::string& undoFile, const std::string& order);
    void add(DirectoryTable table, std::span<const char> row) override;
    void change(DirectoryTable table, dbase::RecordNumber number, std::span<const char> before,
                std::span<const char> after) override;
    void erase(DirectoryTable table, dbase::RecordNumber number, std::span<const char> row) override;
    /// First the new files and the undo file are on the disk, then the tables change. Errors: dbase::Error,
    /// with the tables as they were unless its text says that the next opening completes the exchange.
    void commit(const LoadingProgress& progress);

private:
    struct Part {
        std::unique_ptr<StoredRows> present; // null if there is none yet
        std::unique_ptr<TableWriting> writing;
        std::size_t undoTable = 0;
    };
    [[nodiscard]] Part& part(DirectoryTable table) { return parts_.at(static_cast<std::size_t>(table)); }

    dbase::TableExchange exchange_;
    std::array<Part, 3> parts_; // in the order of DirectoryTable
    std::optional<loading::UndoWriter> undo_;
    bool isCommitted_ = false;
    std::vector<std::future<void>> summing_;
};

} // namespace ambrel::directory
