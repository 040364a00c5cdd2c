// The command line of the program.
#pragma once

#include <QString>

class QCoreApplication;

namespace host {

struct Options {
    QString folder;     // of the tables; empty for the user's own
    QString scriptFile; // to be played; empty for none
    QString iniFile;    // configuration; empty for none
};

/// Exit code when the program cannot do what it was started for.
inline constexpr int exitCannot = 2;

/// Reads the command line. For the help, the version or an error prints it and ends the program.
[[nodiscard]] Options readOptions(const QCoreApplication& application);

/// Whether the command line asks for something that needs no screen, such as playing a script or the help.
/// Called before there is an application object.
[[nodiscard]] bool needsNoScreen(int argumentCount, char** arguments);

} // namespace host
