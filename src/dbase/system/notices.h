// What users should know although nothing failed: a journal that was set aside, rows that it may still hold.
#pragma once

#include <functional>
#include <string>

#include "AmbrelExport.h"

namespace dbase {

/// Receives notices: Spanish, UTF-8, each naming its file. It is called while tables are locked, so it must
/// not use any, nor wait for the user.
using NoticeHandler = std::function<void(const std::string& text)>;

/// Sends notices to a function of the host; an empty one restores the standard error stream. Returns the
/// previous function.
AMBREL_EXPORT NoticeHandler setNoticeHandler(NoticeHandler handler);

} // namespace dbase
