// Keys that a dialog handles before its controls do.
#pragma once

#include <QObject>
#include <QPointer>
#include <cstdint>
#include <functional>

#include "AmbrelExport.h"

class QDialog;
class QKeyEvent;
class QPushButton;
class QShortcutEvent;
class QWidget;

namespace ambrel {

/// Results of a modal dialog: for its accept button and double click, and for any other way of closing it.
inline constexpr int acceptedResult = 1;
inline constexpr int cancelledResult = 2;

/// Reports each key pressed in a dialog before its control receives it; lives with the dialog. A handler that
/// returns true has used the key: the control does not receive it. Removes the dialog's default button, and
/// makes Escape click the cancel button, disabled or not, before the handler is called. Enter (13) on a
/// focused button clicks it unless the handler used the key. A button's letter together with Alt clicks it at
/// once. Keys without a code are reported as 0. An open drop-down list keeps its keys to itself.
class AMBREL_EXPORT FormKeys : public QObject {
    Q_OBJECT
public:
    /// Returns true if it used the key.
    using Handler = std::function<bool(std::uint16_t key, Qt::KeyboardModifiers modifiers)>;

    /// Owned by the dialog.
    FormKeys(QDialog& dialog, QPushButton& cancel, Handler handler = {});

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool press(QWidget& control, const QKeyEvent& event);
    bool pressByLetter(QWidget& control, const QShortcutEvent& event);

    QDialog& dialog_;
    QPushButton& cancel_;
    Handler handler_;
    QPointer<QWidget> told_; // control whose key was reported; its parents may still receive the same key
};

/// For a dialog's `FormKeyDown`: Enter moves the focus on, exactly as Tab does. True for Enter.
[[nodiscard]] AMBREL_EXPORT bool enterMovesOn(QWidget& dialog, std::uint16_t key);

} // namespace ambrel
