// A time of waiting: windows are drawn, but keys and clicks are discarded.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

namespace ambrel {

/// During its lifetime no key, click or closing of a window has any effect, now or later; a modal dialog
/// opened meanwhile receives its own input. A mouse button pressed before the pause is released at its end.
/// Nests.
class InputPause : public QObject {
public:
    InputPause();
    ~InputPause() override;

    /// Draws windows and shows the desktop that the program is alive. Runs no timers and no sockets.
    void letDraw() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keepRelease(QObject& window, const QEvent& event);

    QPointer<QWidget> modal_;
    bool isHeld_;
    QPointer<QObject> releasedIn_;
    std::unique_ptr<QEvent> release_;
};

} // namespace ambrel
