// The .DBF: raw records by 1-based number. Has no order and no filter; the caller holds the locks.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "dbase/dbf/pending_records.h"
#include "dbase/dbf/schema.h"
#include "dbase/dbf/table_layout.h"
#include "dbase/system/file.h"

namespace dbase {

class TableFile {
public:
    /// Reads the header. Errors: Error(BadTable, TooLarge, Io).
    explicit TableFile(std::unique_ptr<File> file);

    [[nodiscard]] const Schema& schema() const { return schema_; }
    [[nodiscard]] File& file() const { return *file_; }
    [[nodiscard]] const std::string& path() const { return file_->path(); }

    /// Number of records now: the smaller of the header's count and what the file holds, or the last of those
    /// shown.
    [[nodiscard]] RecordNumber recordCount() const;
    /// The header's count, whatever the file holds.
    [[nodiscard]] std::uint32_t announcedCount() const;

    /// The bytes of a record (1 .. recordCount()), valid until the next call or the end of the lock.
    [[nodiscard]] RecordView record(RecordNumber number) const;
    /// Hints that a record will be read.
    void prefetch(RecordNumber number) const;
    /// Shows gathered changes over the records of the file; null: no longer. They must outlive that.
    void show(const PendingRecords* pending) { pending_ = pending; }

    /// Writes a record over an existing one.
    void overwrite(RecordNumber number, std::span<const char> bytes);
    /// Writes records after the last one, with the end mark; they do not count before setCount().
    void writeTail(RecordNumber number, std::span<const char> bytes);
    /// The same for many records in pieces that may begin and end inside one; the end mark is the last byte
    /// of the last piece.
    void writeTailPiece(std::uint64_t offset, std::span<const char> bytes);
    /// Whether the header's count differs from that of the complete records: the file ends before them, or
    /// continues with complete ones where its end mark should be.
    [[nodiscard]] bool isMiscounted() const;
    /// Makes the header count the complete records, up to the end mark. False if it did already.
    bool recount();
    /// Writes the count and today's date to the header.
    void setCount(std::uint32_t count);
    /// Cuts off what a failed writeTail() may have left.
    void cutTail(std::uint32_t count);
    /// The same, but only if there is anything after the end mark.
    void cutTailIfAny(std::uint32_t count);
    /// Makes the file end with the end mark after this many records, if it does not yet.
    void settleEnd(std::uint32_t count);
    /// Makes the next use of the file's size query it again.
    void forgetSize() { knownSize_ = 0; }
    /// Marks the columns that alone are the key of a tag.
    void markColumns(const std::vector<bool>& marked);
    /// Sets the production index flag.
    void setHasIndex(bool has);

    [[nodiscard]] std::uint64_t offsetOf(RecordNumber number) const {
        return schema_.headerLength + std::uint64_t{number - 1} * schema_.recordLength;
    }

private:
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    [[nodiscard]] bool isRecordAt(RecordNumber number) const;
    void confirmReach(std::uint64_t end) const;

    std::unique_ptr<File> file_;
    Schema schema_;
    mutable std::uint64_t knownSize_ = 0; // only other programs shrink the file below it while it is locked
    mutable std::vector<char> buffer_;    // for files without a view
    const PendingRecords* pending_ = nullptr;
};

} // namespace dbase
