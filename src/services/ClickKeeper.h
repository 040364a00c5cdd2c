// A click on a control whose press brings up a message: it is neither lost nor left half done.
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

/// Qt moves the focus before the control under the mouse gets the press. When a handler that this sets off
/// shows a modal window, the button goes up while the window of the control is blocked, and the control would
/// stay pressed for ever. It gets its release after the press instead or, when the focus went elsewhere
/// meanwhile, no press.
class ClickKeeper : public QObject {
public:
    /// Sees the mouse events of the whole application.
    explicit ClickKeeper(QObject* parent);

    /// Runs handlers because the focus moves in a window.
    void run(QWidget& window, const std::function<void()>& handlers);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Of a mouse button in a window, not yet given to a control.
    struct Press {
        QPointer<QWindow> window;
        bool isInterrupted = false; // by a modal window
        bool isAway = false;        // the control under the mouse has not kept the focus
    };
    [[nodiscard]] static bool deliver(const Press& press, QWidget& control, const QMouseEvent& event);

    std::optional<Press> press_;
    std::vector<Press> waiting_; // each for the handlers that it has set off, the innermost last
};

} // namespace ambrel
