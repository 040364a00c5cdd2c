// Companions on the disk. They are opened without O_CREAT first, because in a sticky folder the system
// refuses O_CREAT for a file that exists and is somebody else's (fs.protected_regular).
#include "dbase/system/companion_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "dbase/system/access_list.h"
#include "dbase/system/error.h"
#include "dbase/system/posix_file.h"

namespace dbase {

namespace {

constexpr int safely = O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK; // a pipe must not block

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
    throw Error(ErrorCode::AccessDenied, path, reason + "; compruebe quién lo ha puesto ahí y bórrelo");
}

// The file begins as its creator's alone, so that nobody opens it meanwhile who may not open the model. Only
// root may give it another owner, and only members their group.
void giveAccess(int descriptor, const FileStatus& model) {
    if (fchown(descriptor, model.owner, model.group) != 0) {
        static_cast<void>(fchown(descriptor, static_cast<uid_t>(-1), model.group));
    }
    const std::optional<FileStatus> now = statusOf(descriptor);
    if (!now) {
        return;
    }
    const Access access = accessOfCompanion(model, now->owner, now->group);
    if (!access.accessList.empty() &&
        fsetxattr(descriptor, accessListName, access.accessList.data(), access.accessList.size(), 0) == 0) {
        return; // it sets the mode, too
    }
    // What the folder gives to all its new files may be more than the table gives.
    if (!now->accessList.empty() && fremovexattr(descriptor, accessListName) != 0) {
        return;
    }
    static_cast<void>(fchmod(descriptor, access.mode));
}

} // namespace

std::unique_ptr<File> openCompanionFile(const std::string& path) {
    bool isWritable = true;
    int descriptor = ::open(path.c_str(), O_RDWR | safely);
    if (descriptor < 0 && (errno == EACCES || errno == EPERM || errno == EROFS)) {
        isWritable = false;
        descriptor = ::open(path.c_str(), O_RDONLY | safely);
    }
    if (descriptor < 0) {
        if (errno == ENOENT) {
            return nullptr;
        }
        if (errno == ELOOP) {
            refuse(path, "es un enlace, y no se sigue");
        }
        if (errno == EISDIR || errno == ENXIO) {
            refuse(path, "no es un fichero de datos, y no se usa");
        }
        raise(path, "no se puede abrir");
    }
    std::unique_ptr<File> file = fileOf(descriptor, path, isWritable);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        refuse(path, "no es un fichero de datos, y no se usa");
    }
    if (status.st_nlink == 0) { // removed since
        return nullptr;
    }
    if (status.st_nlink > 1) {
        throw Error(
            ErrorCode::AccessDenied, path,
            "tiene un segundo nombre en el disco, y no se usa; quite el otro o, si no sabe de dónde viene, "
            "borre éste");
    }
    return file;
}

std::unique_ptr<File> createCompanionFile(const std::string& path, const std::optional<FileStatus>& model) {
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | safely, model ? 0600 : 0666);
    if (descriptor < 0) {
        if (errno == EEXIST) {
            return nullptr;
        }
        raise(path, "no se puede crear");
    }
    std::unique_ptr<File> file = fileOf(descriptor, path, true);
    if (model) {
        giveAccess(descriptor, *model);
    }
    return file;
}

bool isNameOf(const File& file) {
    struct stat status = {};
    if (lstat(file.path().c_str(), &status) != 0) {
        return false;
    }
    const FileStatus open = file.status();
    return open.names == 1 && open.device == status.st_dev && open.inode == status.st_ino;
}

std::unique_ptr<File> holdCompanion(Folders& folders, const std::string& path, const std::string& model,
                                    const std::function<void(File&)>& lock) {
    constexpr int mostTries = 1000;
    for (int tries = 0; tries < mostTries; ++tries) {
        std::unique_ptr<File> file = folders.openCompanion(path);
        if (!file) {
            file = folders.createCompanion(path, model);
        }
        if (file) {
            lock(*file);
            if (folders.isStillThere(*file)) {
                return file;
            }
        }
    }
    throw Error(ErrorCode::Io, path, "otros programas lo crean y lo borran sin parar; inténtelo más tarde");
}

} // namespace dbase
