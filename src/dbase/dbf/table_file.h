// The .DBF: raw records by 1-based number. Knows no order and no filter; the caller holds the locks.
#pragma once

#include <memory>
#include <span>
#include <vector>

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

    /// Records now: the smaller of what the header says and what the file holds.
    [[nodiscard]] RecordNumber recordCount() const;
    /// What the header says, whatever the file holds.
    [[nodiscard]] std::uint32_t announcedCount() const;

    /// The bytes of a record (1 .. recordCount()), valid until the next call or the end of the lock.
    [[nodiscard]] RecordView record(RecordNumber number) const;
    /// Hints that a record is going to be read.
    void prefetch(RecordNumber number) const;

    /// Writes a record over an existing one.
    void overwrite(RecordNumber number, std::span<const char> bytes);
    /// Writes records behind the last one with the end mark; they do not count before setCount().
    void writeBehind(RecordNumber number, std::span<const char> bytes);
    /// Whether the count that the header announces is not that of the complete records: the file ends before,
    /// or goes on with complete ones where its end mark should be.
    [[nodiscard]] bool isMiscounted() const;
    /// Makes the complete records those that count, whatever the header said; what stands behind the end mark
    /// is none. False when they did already.
    bool correctCount();
    /// Header count and today's date.
    void setCount(std::uint32_t count);
    /// Cuts what a writeBehind() that failed may have left.
    void dropBehind(std::uint32_t count);
    /// The same for whatever stands behind the end mark; nothing when nothing does.
    void cutBehind(std::uint32_t count);
    /// Asks for the size of the file again at the next need.
    void forgetSize() { knownSize_ = 0; }
    /// Marks the columns that are by themselves the key of a tag.
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
    mutable std::uint64_t knownSize_ = 0; // the file never shrinks below it while locked, save by strangers
    mutable std::vector<char> buffer_;    // for files without a view
};

} // namespace dbase
