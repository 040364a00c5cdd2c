// Enter and exit handlers of controls: they run when the focus moves between controls of one window.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

#include "AmbrelExport.h"

namespace ambrel {

class ClickKeeper;

/// One object for the application. Activating a window, a pop-up or a menu is not a move: while they have the
/// focus, the control that lost it stays the current one of its window. The first control of a window being
/// shown is entered. A handler that moves the focus itself or shows a dialog finishes before the next one
/// runs. Moving to a control without handlers also exits the watched one. A child of a control, such as the
/// edit of a combo, counts as the control.
///
/// A mouse press moves the focus before the control under the mouse receives it. When a handler then shows a
/// modal window, that control acts on the click afterwards, once, or not at all if the focus has gone
/// elsewhere meanwhile; it does not stay pressed.
class AMBREL_EXPORT FocusEvents : public QObject {
public:
    /// Runs inside runGuarded().
    using Handler = std::function<void()>;

    /// Either handler may be empty. Watching a control again replaces its handlers.
    static void watch(QWidget* control, Handler onEnter, Handler onExit);
    /// Stops calling the control's handlers.
    static void unwatch(QWidget* control);

private:
    struct Handlers {
        Handler onEnter, onExit;
    };
    struct Window {
        QPointer<QWidget> control; // the watched control that was entered; null if none
        bool running = false;      // a handler is running
    };

    explicit FocusEvents(QObject* application);
    static FocusEvents& instance();
    void follow(QWidget* focused);
    void handleMove(QWidget* window);
    void runHandlers(QWidget& window, Window& state) const;
    [[nodiscard]] QWidget* controlOf(QWidget* focused) const;
    [[nodiscard]] std::shared_ptr<Window> stateOf(QWidget* window);
    void run(QWidget* control, Handler Handlers::*which) const;

    ClickKeeper* clicks_;
    QHash<QWidget*, Handlers> handlers_;
    QHash<QWidget*, std::shared_ptr<Window>> windows_;
};

} // namespace ambrel
