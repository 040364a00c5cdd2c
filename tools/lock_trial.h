// Whether file locks in a folder do what the tables need: on some network drives they do not, and two
// workstations then destroy each other's changes silently.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dbase/system/file.h"

namespace ambcp {

/// One property that was tried. Texts are Spanish, UTF-8.
struct LockProbe {
    std::string question;
    bool works = false;
};

using FileOpener = std::function<std::unique_ptr<dbase::File>(const std::string& path, dbase::OpenMode mode)>;

/// Tries locks on a file of its own in the folder, between this process and children of it, and removes the
/// file. Only for programs with one thread. Errors: dbase::Error for a folder in which no file can be
/// created; Failure when no child can be started.
[[nodiscard]] std::vector<LockProbe> tryLocks(const std::string& folder,
                                              const FileOpener& open = dbase::openFile);

} // namespace ambcp
