// Changes of records gathered in memory before they are written.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {

/// Records changed or added on top of those of a file. The caller checks numbers and lengths.
class PendingRecords {
public:
    struct Change {
        std::vector<char> before, after;
    };

    explicit PendingRecords(std::uint16_t recordLength) : length_(recordLength) {}

    [[nodiscard]] bool empty() const { return changed_.empty() && addedRows() == 0; }
    /// Bytes gathered, before and after together.
    [[nodiscard]] std::size_t size() const { return added_.size() + changed_.size() * 2 * length_; }

    /// The gathered bytes of a record; empty if it is as in the file. Valid until the next change.
    [[nodiscard]] std::span<const char> find(RecordNumber number) const;
    /// `before`: the bytes that the record shows now.
    void change(RecordNumber number, std::span<const char> before, std::span<const char> after);
    /// Adds a record; `number` is the one after the last.
    void add(RecordNumber number, std::span<const char> record);

    /// The records of the file that were changed.
    [[nodiscard]] const std::map<RecordNumber, Change>& changed() const { return changed_; }
    /// The first record added, 0 if there is none.
    [[nodiscard]] RecordNumber firstAdded() const { return firstAdded_; }
    [[nodiscard]] RecordNumber lastAdded() const {
        return firstAdded_ == 0 ? 0 : firstAdded_ + addedRows() - 1;
    }
    /// All of those, one after another.
    [[nodiscard]] std::span<const char> added() const { return added_; }

private:
    [[nodiscard]] RecordNumber addedRows() const {
        return static_cast<RecordNumber>(added_.size() / length_);
    }
    [[nodiscard]] bool isAdded(RecordNumber number) const {
        return firstAdded_ != 0 && number >= firstAdded_;
    }

    std::uint16_t length_;
    std::map<RecordNumber, Change> changed_;
    RecordNumber firstAdded_ = 0;
    std::vector<char> added_;
};

} // namespace dbase
