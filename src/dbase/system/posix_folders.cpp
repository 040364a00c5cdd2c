// Folders on disk.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "dbase/system/companion_file.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/system/paths.h"
#include "dbase/system/posix_file.h"
#include "dbase/system/system_reason.h"
#include "dbase/system/twin_file.h"

namespace dbase {

namespace {

std::optional<struct stat> look(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// What a file is known by.
struct Inode {
    dev_t device;
    ino_t number;
};

// Asks for no times. A system with fine time stamps (Linux since 6.13) gives a file whose times were asked
// for a new one at its next write, and by that moves the time of all others: with every change of a table the
// journal would get a new time as well, which a sync puts on the disk by a write of its own.
std::optional<Inode> inodeAt(int folder, const char* path, int flags) {
    struct statx status = {};
    return statx(folder, path, flags, STATX_INO, &status) == 0
               ? std::optional(Inode{makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino})
               : std::nullopt;
}

// A server's names may be remembered here for up to a minute; opening one asks for it.
std::optional<Inode> inodeAtServer(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return std::nullopt;
    }
    const std::optional<Inode> found = inodeAt(descriptor, "", AT_EMPTY_PATH);
    const int problem = errno;
    ::close(descriptor);
    errno = problem;
    return found;
}

// Empty if the name does not exist.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> found(::realpath(path.c_str(), nullptr), std::free);
    return found ? std::string(found.get()) : std::string();
}

class PosixFolders final : public Folders {
public:
    bool exists(const std::string& path) const override { return look(path).has_value(); }

    bool isFile(const std::string& path) const override {
        const auto status = look(path);
        return status && S_ISREG(status->st_mode);
    }

    std::optional<FileStatus> statusOf(const std::string& path) const override { return statusAt(path); }

    std::string realPath(const std::string& path) const override {
        if (std::string found = resolved(path); !found.empty()) {
            return found;
        }
        const std::string name = path.substr(path.rfind('/') + 1), folder = resolved(folderOf(path));
        return folder.empty() ? path : folder == "/" ? folder + name : folder + '/' + name;
    }

    bool leadsTo(const std::string& path, const FileStatus& file, bool isRemote) const override {
        const std::optional<Inode> named =
            isRemote ? inodeAtServer(path) : inodeAt(AT_FDCWD, path.c_str(), 0);
        if (!named && errno != ENOENT && errno != ENOTDIR && errno != ESTALE) {
            raise(path, "no se puede consultar");
        }
        return named && named->device == file.device && named->number == file.inode;
    }

    // A folder's times may be asked for: unlike a table it is not written to all the time.
    std::optional<NamesState> namesState(const std::string& folder) const override {
        struct statx status = {};
        constexpr unsigned int wanted = STATX_INO | STATX_CTIME;
        if (statx(AT_FDCWD, folder.c_str(), 0, wanted, &status) != 0 ||
            (status.stx_mask & wanted) != wanted) {
            return std::nullopt;
        }
        constexpr std::int64_t second = 1'000'000'000, tick = second / 10;
        const std::int64_t changed = status.stx_ctime.tv_sec * second + status.stx_ctime.tv_nsec;
        timespec now = {};
        clock_gettime(CLOCK_REALTIME_COARSE, &now);
        // Without a fraction it may be of a file system that keeps whole seconds, or every other one.
        const std::int64_t step = status.stx_ctime.tv_nsec == 0 ? 3 * second : tick;
        if (now.tv_sec * second + now.tv_nsec - changed < step) {
            return std::nullopt;
        }
        return NamesState{makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino, changed};
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

    std::string objectionToNamesAt(const std::string& path) const override {
        const std::string folder = folderOf(path);
        if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) {
            return {};
        }
        return "no se puede escribir en la carpeta " + folder + " (" + systemReason(errno) + ")";
    }

    void syncFolderOf(const std::string& path) override {
        if (const int descriptor = ::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            descriptor >= 0) {
            const int problem = fsync(descriptor) == 0 ? 0 : errno;
            ::close(descriptor);
            if (problem == EIO || problem == ENOSPC || problem == EDQUOT) { // others: it cannot be done there
                errno = problem;
                raise(folderOf(path), "no se puede asegurar en el disco");
            }
        }
    }

    void requireReplaceable(const std::string& path) const override { requireReplaceableFile(path); }

    std::unique_ptr<File> createTwin(const std::string& path, const std::string& model) override {
        return createTwinFile(path, model);
    }

    std::unique_ptr<File> openCompanion(const std::string& path) override { return openCompanionFile(path); }

    std::unique_ptr<File> createCompanion(const std::string& path, const std::string& model) override {
        return createCompanionFile(path, model.empty() ? std::nullopt : statusAt(model));
    }

    bool isStillThere(const File& file) const override { return isNameOf(file); }
};

} // namespace

Folders& diskFolders() {
    static PosixFolders folders;
    return folders;
}

} // namespace dbase
