// Keys that a dialog sees before its controls do, and what the dialogs make of them.
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

/// Results of a modal dialog: of its accept button and double click, and of everything else that closes it.
inline constexpr int acceptedResult = 1;
inline constexpr int cancelledResult = 2;

/// Tells each key pressed in a dialog before its control gets it; lives with the dialog. A handler that
/// returns true has used the key: the control does not get it. Takes the default button away from the
/// dialog, and makes Escape click the cancel button, disabled or not, before the handler is asked.
/// Enter (13) on a button that has the focus clicks it when the handler did not use the key.
/// A button's letter together with Alt clicks it at once. Keys without a code are told as 0. An open
/// drop-down list keeps its keys to itself.
class AMBREL_EXPORT FormKeys : public QObject {
    Q_OBJECT
public:
    /// True for a key that was used.
    using Handler = std::function<bool(std::uint16_t key, Qt::KeyboardModifiers modifiers)>;

    /// The dialog owns it.
    FormKeys(QDialog& dialog, QPushButton& cancel, Handler handler = {});

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool press(QWidget& control, const QKeyEvent& event);
    bool pressByLetter(QWidget& control, const QShortcutEvent& event);

    QDialog& dialog_;
    QPushButton& cancel_;
    Handler handler_;
    QPointer<QWidget> told_; // control whose key was told; its parents may still get the same one
};

/// For a dialog's `FormKeyDown`: Enter moves the focus on, exactly as Tab does. True for Enter.
[[nodiscard]] AMBREL_EXPORT bool enterMovesOn(QWidget& dialog, std::uint16_t key);

} // namespace ambrel
