// A time in which the user waits: windows are drawn, and what is typed or clicked meanwhile is lost.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

namespace ambrel {

/// While it lives, no key, click or closing of a window has any effect, now or later; a modal dialog that is
/// opened meanwhile gets its own. A mouse button that was held down before is let go at the end. Nests.
class InputPause : public QObject {
public:
    InputPause();
    ~InputPause() override;

    /// Lets windows be drawn and the desktop see that the program is alive. No timers, no sockets.
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
