// Plays a script on a window of a test.
#include "host/ScriptPlay.h"

#include <QApplication>

#include "host/script/ScriptRunner.h"
#include "support/ShownWindow.h"

namespace host_tests {

Played play(QWidget& window, const QString& script) {
    Played played;
    host::script::ScriptRunner runner([&](const QString& line) { played.lines.append(line); },
                                      [&](const QString& line) { played.complaints.append(line); });
    ambrel::test::showActive(window);
    QObject::connect(&runner, &host::script::ScriptRunner::finished, &window,
                     [](int code) { QApplication::exit(code); });
    runner.start(&window, host::script::parseScript(script), QStringLiteral("guion"));
    played.exitCode = runner.exitCode() ? *runner.exitCode() : QApplication::exec();
    return played;
}

} // namespace host_tests
