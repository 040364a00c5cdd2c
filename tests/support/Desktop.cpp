// Starts an X server and a window manager.
#include "support/Desktop.h"

#include <QByteArray>
#include <QStandardPaths>

namespace ambrel::test {
namespace {

constexpr int patience = 20'000; // milliseconds

/// The first line that a newly started program writes; empty when it writes none.
QByteArray firstLine(QProcess& program) {
    while (!program.canReadLine()) {
        if (!program.waitForReadyRead(patience)) {
            return {};
        }
    }
    return program.readLine().trimmed();
}

void stop(QProcess& program) {
    program.terminate();
    if (!program.waitForFinished(patience)) {
        program.kill();
    }
}

} // namespace

Desktop::Desktop() : isRunning_(start()) {
    qputenv("QT_QPA_PLATFORM", isRunning_ ? "xcb" : "offscreen");
    // No other desktop's; where there is none, looking for it loses memory in its library.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

Desktop::~Desktop() {
    stop(windowManager_);
    stop(server_);
}

bool Desktop::start() {
    for (const char* const program : {"Xvfb", "openbox"}) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            return false;
        }
    }
    server_.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1600x1000x24", "-nolisten", "tcp"});
    const QByteArray number = firstLine(server_);
    if (number.isEmpty()) {
        return false;
    }
    qputenv("DISPLAY", ':' + number);
    windowManager_.start("openbox", {"--sm-disable", "--startup", "echo ready"});
    return !firstLine(windowManager_).isEmpty();
}

} // namespace ambrel::test
