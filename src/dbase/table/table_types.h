// The functions that users of a table pass to it.
#pragma once

#include <functional>
#include <span>

#include "dbase/dbf/schema.h"

namespace dbase {

/// Applied by Table::amend() to one record: changes the bytes of `after`, which start as those of `before`.
/// Must not touch the table itself.
using Amendment = std::function<void(const RecordView& before, std::span<char> after)>;

/// Called for each record, except deleted ones, that Table::amend() skips because another owner holds it.
using LeftOut = std::function<void(const RecordView& held)>;

} // namespace dbase
