// What the users of a table hand to it.
#pragma once

#include <functional>
#include <span>

#include "dbase/dbf/schema.h"

namespace dbase {

/// What Table::amend() does to one record: changes the bytes of `after`, which are those of `before` at
/// first. Must leave the table itself alone.
using Amendment = std::function<void(const RecordView& before, std::span<char> after)>;

/// Is told of each record, deleted ones aside, that Table::amend() leaves out because somebody holds it.
using LeftOut = std::function<void(const RecordView& held)>;

} // namespace dbase
