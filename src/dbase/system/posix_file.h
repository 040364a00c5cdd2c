// What the parts of this room that call the system share.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "dbase/system/file.h"

namespace dbase {

/// Attribute in which Linux keeps a file's access list.
inline constexpr const char* accessListName = "system.posix_acl_access";

/// Throws the Error for `errno`.
[[noreturn]] void raise(const std::string& path, const char* action);
/// Owns the descriptor.
[[nodiscard]] std::unique_ptr<File> fileOf(int descriptor, const std::string& path, bool isWritable);
/// Of an open file, or of a file or folder at the end of its links. Nothing if there is none; the reason is
/// in `errno`.
[[nodiscard]] std::optional<FileStatus> statusOf(int descriptor);
[[nodiscard]] std::optional<FileStatus> statusAt(const std::string& path);

} // namespace dbase
