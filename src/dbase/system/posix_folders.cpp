// Folders on disk.

#include <cerrno>
#include <cstdio>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/system/system_reason.h"

namespace dbase {

namespace {

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

class PosixFolders final : public Folders {
public:
    bool exists(const std::string& path) const override { return statusOf(path).has_value(); }

    bool isFile(const std::string& path) const override {
        const auto status = statusOf(path);
        return status && S_ISREG(status->st_mode);
    }

    std::vector<std::string> namesIn(const std::string& folder) const override {
        DIR* directory = opendir(folder.c_str());
        if (directory == nullptr) {
            throw Error(errno == EACCES ? ErrorCode::AccessDenied : ErrorCode::NotFound, folder,
                        std::string("no se puede abrir la carpeta: ") + systemReason(errno));
        }
        const std::unique_ptr<DIR, int (*)(DIR*)> guard(directory, closedir);
        std::vector<std::string> names;
        while (const dirent* entry = readdir(directory)) {
            names.emplace_back(entry->d_name);
        }
        return names;
    }

    std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
        return openFile(path, mode);
    }

    void rename(const std::string& from, const std::string& to) override {
        if (std::rename(from.c_str(), to.c_str()) != 0) {
            throw Error(ErrorCode::Io, to,
                        std::string("no se puede sustituir el fichero: ") + systemReason(errno));
        }
    }

    void remove(const std::string& path) override {
        if (std::remove(path.c_str()) != 0 && errno != ENOENT) {
            throw Error(ErrorCode::Io, path,
                        std::string("no se puede borrar el fichero: ") + systemReason(errno));
        }
    }

    void shareAs(const std::string& path, const std::string& model) noexcept override {
        if (const auto status = statusOf(model)) {
            static_cast<void>(chmod(path.c_str(), status->st_mode & 0666));
        }
    }

    void syncFolderOf(const std::string& path) override {
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
        if (const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            descriptor >= 0) {
            static_cast<void>(fsync(descriptor));
            ::close(descriptor);
        }
    }
};

} // namespace

Folders& diskFolders() {
    static PosixFolders folders;
    return folders;
}

} // namespace dbase
