// Key-up handlers of controls, called with 16-bit key codes.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <vector>

#include "AmbrelExport.h"

class QInputMethodEvent;
class QKeyEvent;
class QWidget;

namespace ambrel {

/// Calls a handler for each key that is released in a control, after the control has had the key's press.
/// A key that was pressed elsewhere, such as the one that closed a message or the letter of a shortcut, is
/// none of the control's: its release is not told, nor is any while the control is hidden or its window is
/// not the active one. What was pressed before the focus came (back) counts as pressed elsewhere. Releases
/// that auto-repeat invents are not told.
///
/// Code and modifiers are those of the key's press, whichever goes up first: a handler knows Ctrl+C by its
/// modifiers although Ctrl was let go before C, and a plain letter although Alt is held by now. AltGr is
/// Qt::GroupSwitchModifier, never Ctrl or Alt. Keys without a code are told as 0. A letter that an input
/// method composes has no press: its text counts as one, and the next release of an unknown key as its.
///
/// A handler that sets the code to 0 has used the release: nobody else sees it.
class AMBREL_EXPORT KeyUpEvents : public QObject {
public:
    /// Runs inside runGuarded().
    using Handler = std::function<void(std::uint16_t& key, Qt::KeyboardModifiers modifiers)>;

    /// Watches a control for as long as it lives, or until the returned object, which the control owns, is
    /// deleted.
    static KeyUpEvents* watch(QWidget* control, Handler handler);

    /// Tells now of the letters and digits that were pressed in the control and are still held; their
    /// releases are not told again. For who leaves a control, as in its exit handler: fast typists press Tab
    /// before the last letter is up. The handler may delete the control.
    void releasePending();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Press {
        int key;          // of Qt; another one at the release of a digit whose Shift went up first
        quint32 scanCode; // of the keyboard; 0 when unknown
        std::uint16_t code;
        Qt::KeyboardModifiers modifiers;
    };
    using Presses = std::vector<Press>;

    KeyUpEvents(QWidget* control, Handler handler);
    void notePress(const QKeyEvent& event);
    void noteText(const QInputMethodEvent& event);
    [[nodiscard]] Presses::iterator pressOf(const QKeyEvent& event);
    bool release(const QKeyEvent& event);
    [[nodiscard]] std::uint16_t tell(const Press& press) const;

    QWidget* control_;
    Handler handler_;
    Presses presses_; // keys that are held, in the order in which they were pressed
};

} // namespace ambrel
