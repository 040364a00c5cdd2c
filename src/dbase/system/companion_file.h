// Files of ours beside a table: its journal, claims, temporary files. The folder may belong to several users,
// one of whom may have planted a link, or a file of his own, under the name; so no link is ever followed, a
// file with a second name is refused, and creating never means opening what is there.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "dbase/system/folders.h"

namespace dbase {

/// Opens or creates a companion as Folders do, has it locked, and begins again if others have removed or
/// exchanged it before the lock was held. Errors: those of Folders; Error(Io) if that never ends.
[[nodiscard]] std::unique_ptr<File> holdCompanion(Folders& folders, const std::string& path,
                                                  const std::string& model,
                                                  const std::function<void(File&)>& lock);

/// Like Folders::openCompanion, createCompanion and isStillThere, on the disk.
[[nodiscard]] std::unique_ptr<File> openCompanionFile(const std::string& path);
[[nodiscard]] std::unique_ptr<File> createCompanionFile(const std::string& path,
                                                        const std::optional<FileStatus>& model);
[[nodiscard]] bool isNameOf(const File& file);

} // namespace dbase
