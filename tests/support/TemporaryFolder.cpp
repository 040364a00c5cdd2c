// A folder of its own for a test.
#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// A test may have removed the write permission, without which nothing inside can be removed.
void makeWritable(const fs::path& folder) {
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::recursive_directory_iterator entry(folder, ignored), end; entry != end;
         entry.increment(ignored)) {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "ambrel-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary folder: " + pattern);
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    makeWritable(path_);
    std::error_code ignored; // left for the system to clear away
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const fs::path file = path_ / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
}
