// Reaction of a dialog when the focus or the mouse reaches a control: colour, and a hint in the status bar.
#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <optional>

class QPushButton;
class QStatusBar;
class QWidget;

namespace ambrel {

/// A control's hint is its tool tip. Each object serves one dialog, whose controls and texts must exist when
/// it is created; its handlers can be attached to controls by the watch functions or called by a dialog's own
/// handlers.
class FocusHelp : public QObject {
    Q_OBJECT
public:
    /// Also makes every control's tool tip its accessible description, gives the edits Spanish context menus,
    /// and lets the wheel change a combo only while it has the focus.
    FocusHelp(QWidget& dialog, QStatusBar& bar);

    /// Focus gained by an edit control: focus colour, hint in the status bar. When the dialog opens, the text
    /// is selected, so that typing replaces it.
    void TomaFoco(QWidget* control);
    /// Focus lost: normal colour, and no hint in the status bar.
    void DejaFoco(QWidget* control);
    /// Focus gained by a button, or the mouse over it: hint in the status bar.
    void TomaFocoBoton(QWidget* button);
    void DejaFocoBoton();

    /// Shows the outcome of an operation of the dialog in the status bar from now on, except while there is a
    /// hint. The hint of the control under a resting mouse does not replace it.
    void showOutcome(const QString& text);

    /// Attaches handlers to an edit control; empty ones mean just TomaFoco and DejaFoco. A handler that is
    /// given replaces them and calls them itself.
    void watchEdit(QWidget* edit, std::function<void()> onEnter = {}, std::function<void()> onExit = {});
    /// Attaches TomaFocoBoton and DejaFocoBoton to a button, for focus and mouse.
    void watchButton(QPushButton* button);
    /// Attaches both for the focus to a grid that has a hint.
    void watchGrid(QWidget* grid);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchFocus(QWidget* control);
    void clearHint();
    [[nodiscard]] bool isResting(const QEvent& event) const;

    QStatusBar& bar_;
    QString outcome_;
    std::optional<QPoint> resting_; // mouse position when the outcome was shown
    bool isOpening_ = true;         // until a control has the focus
};

} // namespace ambrel
