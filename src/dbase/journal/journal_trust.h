// Whose journal is obeyed: redoing one writes into the table, with the rights of the user who opens it.
#pragma once

#include <string>

#include "dbase/system/file_status.h"

namespace dbase {

/// Why a journal must be left alone, in Spanish; empty if it comes from root, the table's owner or another
/// user who may write the table, and nobody else may write it. Where a file system keeps no owners and modes,
/// all files have the same ones, and everything is accepted.
[[nodiscard]] std::string objectionTo(const FileStatus& journal, const FileStatus& table);

} // namespace dbase
