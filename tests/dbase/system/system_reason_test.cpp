// The texts that users see for the system's error numbers.
#include "dbase/system/system_reason.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using dbase::systemReason;

TEST(SystemReason, SaysInSpanishWhatTheUserCanActOn) {
    const std::vector<std::pair<int, std::string>> reasons{
        {ENOENT, "no existe"},
        {ENOTDIR, "una parte del camino no es una carpeta"},
        {EISDIR, "es una carpeta"},
        {EEXIST, "ya existe"},
        {EACCES, "no hay permiso"},
        {EPERM, "no hay permiso"},
        {EROFS, "el disco es de sólo lectura"},
        {ENOSPC, "no queda espacio en el disco"},
        {EDQUOT, "no queda espacio en el disco"},
        {EFBIG, "el fichero sería demasiado grande"},
        {EIO, "el disco ha fallado"},
        {EMFILE, "hay demasiados ficheros abiertos"},
        {ENFILE, "hay demasiados ficheros abiertos"},
        {EBUSY, "está en uso"},
        {ETXTBSY, "está en uso"},
        {ENAMETOOLONG, "el nombre es demasiado largo"},
        {ENOLCK, "el sistema no puede bloquear ficheros ahí"},
        {EPIPE, "nadie lee la salida"},
        {ENODEV, "el dispositivo no está"},
        {ENXIO, "el dispositivo no está"},
        {ENOTEMPTY, "la carpeta no está vacía"},
        {ELOOP, "los enlaces dan vueltas"},
        {ENOMEM, "no queda memoria"},
        {EADDRINUSE, "otro programa lo usa"}};
    for (const auto& [number, reason] : reasons) {
        EXPECT_EQ(systemReason(number), reason) << number;
    }
}

TEST(SystemReason, GivesTheNumberAndTheSystemsOwnWordsOfTheRest) {
    EXPECT_EQ(systemReason(ECHILD),
              "error " + std::to_string(ECHILD) + " del sistema (" + std::strerror(ECHILD) + ")");
}

} // namespace
