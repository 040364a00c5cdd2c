// Plays a script on a window of a test.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace host_tests {

struct Played {
    int exitCode = -1;
    QStringList lines;      // what the script printed
    QStringList complaints; // why it ended early
};

/// Shows the window, runs the script to its end and returns what came of it.
[[nodiscard]] Played play(QWidget& window, const QString& script);

} // namespace host_tests
