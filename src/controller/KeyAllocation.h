// The keys of streets that users add: which one a new street gets, and the lock under which it is given out.
#pragma once

#include <string>
#include <string_view>

#include "dbase/system/durability.h"

namespace dbase {
class Dataset;
class Field;
} // namespace dbase

namespace ambrel {

/// The key that the first street of the users' block gets.
inline constexpr const char* firstUserKey = "99000000";

/// Whether a key lies in the users' block; only such streets may be changed or deleted.
[[nodiscard]] bool isUserKey(std::string_view key);

/// The key behind the highest one stored, or firstUserKey where counting on would leave the users' block.
[[nodiscard]] std::string keyBehind(std::string_view highest);

/// Locks the first row of a table, on which it stands, or the place of record 1 in an empty one. A first row
/// that went, or came, before the lock was had is noticed. False when somebody else holds the lock.
[[nodiscard]] bool lockFirstRow(dbase::Dataset& table);

/// Posts the pending new row of a street table, under the key that it carries when that is free, else under
/// the next free one. The lock on the table's first row keeps everybody else from giving out keys meanwhile;
/// false when somebody else holds it, and the row then stays pending. `key`: the table's CODIGO1.
/// Errors: dbase::Error for everything that keeps the row from being written; it stays pending then, too.
[[nodiscard]] bool postUnderFreeKey(dbase::Dataset& streets, dbase::Field& key,
                                    dbase::Durability durability = dbase::Durability::Process);

} // namespace ambrel
