// A desktop of a test's own: an X server without a screen and a window manager that focuses by click.
#pragma once

#include <QProcess>

namespace ambrel::test {

/// Runs as long as the object exists. Needs the programs Xvfb and openbox.
class Desktop {
public:
    /// Starts the desktop and makes it the display of the application that is created next.
    Desktop();
    ~Desktop();

    [[nodiscard]] bool isRunning() const { return isRunning_; }

private:
    [[nodiscard]] bool start();

    QProcess server_, windowManager_;
    bool isRunning_ = false;
};

} // namespace ambrel::test
