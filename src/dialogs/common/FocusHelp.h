// What a dialog does when the focus or the mouse comes to a control: colour, and its hint in the status bar.
#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <optional>

class QPushButton;
class QStatusBar;
class QWidget;

namespace ambrel {

/// A control's hint is its tool tip. One of these serves one dialog, whose controls and texts are there when
/// it is made; its handlers can be attached to controls by the watch functions or called by a dialog's own
/// handlers.
class FocusHelp : public QObject {
    Q_OBJECT
public:
    /// Makes the tool tip of every control of the dialog its accessible description as well, gives its edits
    /// their menus in Spanish, and lets the wheel change a combo only when it has the focus.
    FocusHelp(QWidget& dialog, QStatusBar& bar);

    /// Focus gained by an edit control: focus colour, hint in the status bar. Where the dialog opens, the
    /// text is selected: what is typed replaces it.
    void TomaFoco(QWidget* control);
    /// Focus lost: normal colour, and no hint in the status bar.
    void DejaFoco(QWidget* control);
    /// Focus gained by a button, or the mouse over it: hint in the status bar.
    void TomaFocoBoton(QWidget* button);
    void DejaFocoBoton();

    /// What came of something that the dialog did: stands in the status bar from now on where no hint does.
    /// The hint of what the mouse rests on does not take its place.
    void showOutcome(const QString& text);

    /// Attaches handlers to an edit control; empty ones stand for TomaFoco and DejaFoco alone. A handler that
    /// is given replaces them and calls them itself.
    void watchEdit(QWidget* edit, std::function<void()> onEnter = {}, std::function<void()> onExit = {});
    /// Attaches TomaFocoBoton and DejaFocoBoton to a button, for focus and mouse.
    void watchButton(QPushButton* button);
    /// Attaches both to a grid that has a hint, for the focus.
    void watchGrid(QWidget* grid);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchFocus(QWidget* control);
    void clearHint();
    [[nodiscard]] bool isResting(const QEvent& event) const;

    QStatusBar& bar_;
    QString outcome_;
    std::optional<QPoint> resting_; // where the mouse was when that was said
    bool isOpening_ = true;         // until a control has the focus
};

} // namespace ambrel
