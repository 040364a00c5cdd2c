// Keys of streets added by users: which key a new street gets, and the lock held while it is allocated.
#pragma once

#include <string>
#include <string_view>

#include "dbase/dataset/dataset.h"
#include "dbase/system/durability.h"

namespace ambrel {

/// The key of the first street in the users' block.
inline constexpr const char* firstUserKey = "99000000";

/// Whether a key is in the users' block; only such streets may be changed or deleted.
[[nodiscard]] bool isUserKey(std::string_view key);

/// The key after the highest one stored, or firstUserKey if that would leave the users' block.
[[nodiscard]] std::string keyAfter(std::string_view highest);

/// Locks the first row of a table and goes to it, or the place of record 1 in an empty one. Retries if the
/// first row changed before the lock was obtained. False if another user holds the lock.
[[nodiscard]] bool lockFirstRow(dbase::Dataset& table);

/// The right to allocate keys in a street table: holds the lock on its first row. The caller has a WriteScope
/// on the table meanwhile.
class StreetKeyAllocation {
public:
    /// `streets`: an open cursor on the table. Errors: dbase::Error.
    explicit StreetKeyAllocation(const dbase::Dataset& streets);

    /// Whether another user holds the first row: then nothing may be posted.
    [[nodiscard]] bool isRefused() const { return isRefused_; }
    /// Leaves the pending row's key if it is free, else sets the next free one. `key`: the cursor's CODIGO1.
    void giveKey(dbase::Field& key);

private:
    [[nodiscard]] std::string freeKey(const std::string& wanted);

    dbase::Dataset table_; // a cursor of its own, so that no range, filter or position hides a key
    bool isRefused_, isEmpty_;
};

/// Posts the pending new row of a street table, under the key it carries if that is free, otherwise under the
/// next free one. If another user holds the table's first row, returns false and the row stays pending.
/// `key`: the table's CODIGO1. Errors: dbase::Error for anything that prevents the row from being written; it
/// stays pending then, too.
[[nodiscard]] bool postUnderFreeKey(dbase::Dataset& streets, dbase::Field& key,
                                    dbase::Durability durability = dbase::Durability::Process);

} // namespace ambrel
