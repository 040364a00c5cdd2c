// What the program is told on its command line.
#pragma once

#include <QString>

class QCoreApplication;

namespace host {

struct Options {
    QString folder;     // of the tables; empty for the user's own
    QString scriptFile; // to be played; empty for none
    QString iniFile;    // configuration; empty for none
};

/// Exit code for a program that cannot do what it was started for.
inline constexpr int exitCannot = 2;

/// Reads the command line. Prints help, version or what is wrong and ends the program where that is all there
/// is to do.
[[nodiscard]] Options readOptions(const QCoreApplication& application);

/// Whether the command line asks for something that needs no screen, such as playing a script or the help.
/// Asked before there is an application object.
[[nodiscard]] bool needsNoScreen(int argumentCount, char** arguments);

} // namespace host
