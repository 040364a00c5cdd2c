// How a table is to be read and written, and what its users hand to it.
#pragma once

#include <functional>
#include <span>

#include "dbase/dbf/schema.h"

namespace dbase {

/// What keeps a read safe from writers of other processes.
enum class ReadGuard {
    Lock,    // the shared structure lock: safe against every program that locks
    Counter, // the change counter read before and after: safe against our own programs, without a system
             // call. Only for tables on a local disk; a foreign writer in the middle of its work would not be
             // noticed
};

/// What Table::amend() does to one record: changes the bytes of `after`, which are those of `before` at
/// first. Must leave the table itself alone.
using Amendment = std::function<void(const RecordView& before, std::span<char> after)>;

/// Is told of each record, deleted ones aside, that Table::amend() leaves out because somebody holds it.
using LeftOut = std::function<void(const RecordView& held)>;

} // namespace dbase
