// Record locks of one open table, held for owners inside this process.
#pragma once

#include <unordered_map>

#include "dbase/dbf/schema.h"
#include "dbase/system/file.h"

namespace dbase {

/// The locks belong to the open file, which all owners share: who holds which is kept here, so that owners
/// exclude each other as they exclude other programs.
class RecordLocks {
public:
    /// The file must outlive it.
    explicit RecordLocks(File& file) : file_(file) {}

    /// True also for a record that the owner holds already. Errors: Error(Io).
    [[nodiscard]] bool tryLock(RecordNumber number, const void* owner);
    /// Nothing when somebody else holds it.
    void unlock(RecordNumber number, const void* owner);
    void unlockAll(const void* owner);

    [[nodiscard]] bool isHeld(RecordNumber number) const { return owners_.contains(number); }
    /// Whether any of these records is held.
    [[nodiscard]] bool isAnyHeld(RecordNumber first, RecordNumber last) const;

private:
    File& file_;
    std::unordered_map<RecordNumber, const void*> owners_;
};

} // namespace dbase
