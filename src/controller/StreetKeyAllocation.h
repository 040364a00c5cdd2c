// Keys of streets added by users: which key a new street gets, and the lock held while it is allocated.
#pragma once

#include <string>
#include <string_view>

#include "dbase/system/durability.h"

namespace dbase {
class Dataset;
class Field;
} // namespace dbase

namespace ambrel {

/// The key of the first street in the users' block.
inline constexpr const char* firstUserKey = "99000000";

/// Whether a key is in the users' block; only such streets may be changed or deleted.
[[nodiscard]] bool isUserKey(std::string_view key);

/// The key after the highest one stored, or firstUserKey if that would leave the users' block.
[[nodiscard]] std::string keyBehind(std::string_view highest);

/// Locks the first row of a table and goes to it, or the place of record 1 in an empty one. Retries if the
/// first row changed before the lock was obtained. False if another user holds the lock.
[[nodiscard]] bool lockFirstRow(dbase::Dataset& table);

/// Posts the pending new row of a street table, under the key it carries if that is free, otherwise under the
/// next free one. The lock on the table's first row keeps others from allocating keys meanwhile; if another
/// user holds it, returns false and the row stays pending. `key`: the table's CODIGO1.
/// Errors: dbase::Error for anything that prevents the row from being written; it stays pending then, too.
[[nodiscard]] bool postUnderFreeKey(dbase::Dataset& streets, dbase::Field& key,
                                    dbase::Durability durability = dbase::Durability::Process);

} // namespace ambrel
