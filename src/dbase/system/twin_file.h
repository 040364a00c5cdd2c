// A file that will replace another one, and is used by the same people as that.
#pragma once

#include <memory>
#include <string>

#include "dbase/system/file.h"

namespace dbase {

/// Like the functions of Folders, on the disk.
void requireReplaceableFile(const std::string& path);
[[nodiscard]] std::unique_ptr<File> createTwinFile(const std::string& path, const std::string& model);

} // namespace dbase
