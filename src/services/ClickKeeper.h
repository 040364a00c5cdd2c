// Clicks whose press brings up a message: they are neither lost nor left half done.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <optional>
#include <vector>

class QMouseEvent;

namespace ambrel {

/// Qt moves the focus before the control under the mouse receives the press. When a handler triggered by that
/// shows a modal window, the button goes up while the control's window is blocked, and the control would stay
/// pressed forever. Instead it receives its release right after the press or, if the focus has gone elsewhere
/// meanwhile, no press at all.
class ClickKeeper : public QObject {
public:
    /// Watches the mouse events of the whole application.
    explicit ClickKeeper(QObject* parent);

    /// Runs the handlers triggered by a focus move in a window.
    void run(QWidget& window, const std::function<void()>& handlers);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// A mouse press in a window, not yet received by a control.
    struct Press {
        QPointer<QWindow> window;
        bool isInterrupted = false; // by a modal window
        bool isAway = false;        // the control under the mouse did not keep the focus
    };
    [[nodiscard]] static bool deliver(const Press& press, QWidget& control, const QMouseEvent& event);

    std::optional<Press> press_;
    std::vector<Press> waiting_; // one for each set of handlers still running, innermost last
};

} // namespace ambrel
