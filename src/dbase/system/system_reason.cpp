// Spanish texts for the system's error numbers.
#include "dbase/system/system_reason.h"

#include <cerrno>
#include <cstring>

namespace dbase {

std::string systemReason(int number) {
    switch (number) {
    case ENOENT:
        return "no existe";
    case ENOTDIR:
        return "una parte del camino no es una carpeta";
    case EISDIR:
        return "es una carpeta";
    case EEXIST:
        return "ya existe";
    case EACCES:
    case EPERM:
        return "no hay permiso";
    case EROFS:
        return "el disco es de sólo lectura";
    case ENOSPC:
    case EDQUOT:
        return "no queda espacio en el disco";
    case EFBIG:
        return "el fichero sería demasiado grande";
    case EIO:
        return "el disco ha fallado";
    case EMFILE:
    case ENFILE:
        return "hay demasiados ficheros abiertos";
    case EBUSY:
    case ETXTBSY:
        return "está en uso";
    case ENAMETOOLONG:
        return "el nombre es demasiado largo";
    case ENOLCK:
        return "el sistema no puede bloquear ficheros ahí";
    case EPIPE:
        return "nadie lee la salida";
    case ENODEV:
    case ENXIO:
        return "el dispositivo no está";
    case ENOTEMPTY:
        return "la carpeta no está vacía";
    case EXDEV:
        return "está en otro disco";
    case ELOOP:
        return "los enlaces dan vueltas";
    case ENOMEM:
        return "no queda memoria";
    case EINVAL:
        return "el sistema no lo admite ahí";
    case ENOTSUP:
    case ENOSYS:
        return "el sistema no lo sabe hacer";
    case EAGAIN:
        return "no está disponible ahora";
    case ESTALE:
        return "el fichero ha cambiado en el servidor";
    case ETIMEDOUT:
        return "no contesta";
    case EADDRINUSE:
        return "otro programa lo usa";
    case EADDRNOTAVAIL:
        return "la dirección no es de este puesto";
    case ECONNREFUSED:
        return "nadie atiende ahí";
    case ECONNRESET:
        return "se ha cortado la conexión";
    default:
        return "error " + std::to_string(number) + " del sistema (" + std::strerror(number) + ")";
    }
}

} // namespace dbase
