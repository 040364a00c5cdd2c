// Record locks of one open table, held for owners in this process.
#pragma once

#include <unordered_map>

#include "dbase/dbf/schema.h"
#include "dbase/system/file.h"

namespace dbase {

/// The locks belong to the open file, which all owners share. The owner of each is recorded here, so that
/// owners exclude each other as they exclude other programs.
class RecordLocks {
public:
    /// The file must outlive it.
    explicit RecordLocks(File& file) : file_(file) {}

    /// True also for a record that the owner already holds. Errors: Error(Io).
    [[nodiscard]] bool tryLock(RecordNumber number, const void* owner);
    /// Does nothing if another owner holds it.
    void unlock(RecordNumber number, const void* owner);
    void unlockAll(const void* owner);
    /// Records that an owner holds the lock, which the caller takes on the file and releases. False if the
    /// record is held.
    [[nodiscard]] bool note(RecordNumber number, const void* owner) {
        return owners_.emplace(number, owner).second;
    }
    /// The opposite: leaves the lock on the file. False if another owner, or none, holds it.
    bool forget(RecordNumber number, const void* owner);
    /// Makes the record, if `from` holds it, another owner's. True if it did.
    bool pass(RecordNumber number, const void* from, const void* to);

    [[nodiscard]] bool isHeld(RecordNumber number) const { return owners_.contains(number); }
    /// Whether any of these records is held.
    [[nodiscard]] bool isAnyHeld(RecordNumber first, RecordNumber last) const;

private:
    File& file_;
    std::unordered_map<RecordNumber, const void*> owners_;
};

} // namespace dbase
