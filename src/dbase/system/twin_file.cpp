// Gives a new file exactly the access of an old one, or refuses.
#include "dbase/system/twin_file.h"

#include <array>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/system/posix_file.h"

namespace dbase {

namespace {

// In the second one NFS 4 shows the server's list, which says more than the mode.
constexpr std::array accessLists{accessListName, "system.nfs4_acl"};

[[noreturn]] void refuse(const std::string& model) {
    throw Error(
        ErrorCode::AccessDenied, model,
        "no se puede sustituir, porque este usuario no puede mantener su propietario, su grupo, sus permisos "
        "y su lista de acceso; hágalo como su propietario o como administrador");
}

std::optional<std::string> listOf(int descriptor, const char* name) {
    std::string list(65536, '\0');
    const ssize_t size = fgetxattr(descriptor, name, list.data(), list.size());
    return size < 0 ? std::nullopt : std::optional(list.substr(0, static_cast<std::size_t>(size)));
}

// The new file may have a list that its folder gives to all new files.
bool giveList(int descriptor, const char* name, const std::optional<std::string>& wanted) {
    if (listOf(descriptor, name) == wanted) {
        return true;
    }
    return wanted ? fsetxattr(descriptor, name, wanted->data(), wanted->size(), 0) == 0
                  : fremovexattr(descriptor, name) == 0;
}

bool giveAccess(int descriptor, int model) {
    const std::optional<FileStatus> wanted = statusOf(model), fresh = statusOf(descriptor);
    if (!wanted || !fresh) {
        return false;
    }
    const bool isRoot = geteuid() == 0;
    const std::uint32_t owner = isRoot ? wanted->owner : fresh->owner;
    if ((fresh->owner != owner || fresh->group != wanted->group) &&
        fchown(descriptor, owner, wanted->group) != 0) {
        return false;
    }
    for (const char* const name : accessLists) {
        if (!giveList(descriptor, name, listOf(model, name))) {
            return false;
        }
    }
    if (statusOf(descriptor)->mode != wanted->mode && fchmod(descriptor, wanted->mode) != 0) {
        return false;
    }
    const std::optional<FileStatus> given = statusOf(descriptor); // some file systems only pretend
    return given && given->owner == owner && given->group == wanted->group && given->mode == wanted->mode &&
           given->accessList == wanted->accessList;
}

} // namespace

void requireReplaceableFile(const std::string& path) {
    const std::string folder = folderOf(path);
    struct stat ofFolder = {}, ofFile = {};
    if (stat(folder.c_str(), &ofFolder) != 0 || stat(path.c_str(), &ofFile) != 0) {
        raise(path, "no se puede consultar");
    }
    if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        throw Error(ErrorCode::AccessDenied, path,
                    "no se puede sustituir: no hay permiso para escribir en su carpeta");
    }
    const uid_t user = geteuid();
    if ((ofFolder.st_mode & S_ISVTX) != 0 && user != 0 && user != ofFolder.st_uid && user != ofFile.st_uid) {
        throw Error(ErrorCode::AccessDenied, path,
                    "no se puede sustituir: en su carpeta sólo puede hacerlo su propietario");
    }
}

std::unique_ptr<File> createTwinFile(const std::string& path, const std::string& model) {
    const int source = ::open(model.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (source < 0) {
        raise(model, "no se puede abrir");
    }
    // Nobody opens it meanwhile who may not open the model.
    const int descriptor =
        ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY, 0600);
    if (descriptor < 0) {
        ::close(source);
        raise(path, "no se puede crear");
    }
    std::unique_ptr<File> file = fileOf(descriptor, path, true);
    const bool isTwin = giveAccess(descriptor, source);
    ::close(source);
    if (!isTwin) {
        ::unlink(path.c_str());
        refuse(model);
    }
    return file;
}

} // namespace dbase
