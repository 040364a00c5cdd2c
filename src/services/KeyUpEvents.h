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

/// Calls a handler for each key released in a control, after the control has processed the key's press. A
/// release is not reported if the key was pressed elsewhere, such as the one that closed a message or the
/// letter of a shortcut, or while the control is hidden or its window is not the active one. Keys pressed
/// before the control received the focus (again) count as pressed elsewhere. Releases invented by auto-repeat
/// are not reported.
///
/// Code and modifiers are those of the key's press, whichever key goes up first: a handler recognises Ctrl+C
/// even if Ctrl was released before C, and a plain letter even if Alt is held by now. AltGr is
/// Qt::GroupSwitchModifier, never Ctrl or Alt. Keys without a code are reported as 0. A letter composed by an
/// input method has no press: its text counts as one, and the next release of an unknown key as its release.
///
/// A handler that sets the code to 0 has consumed the release: nothing else receives it.
class AMBREL_EXPORT KeyUpEvents : public QObject {
public:
    /// Runs inside runGuarded().
    using Handler = std::function<void(std::uint16_t& key, Qt::KeyboardModifiers modifiers)>;

    /// Watches a control for as long as it lives, or until the returned object, owned by the control, is
    /// deleted.
    static KeyUpEvents* watch(QWidget* control, Handler handler);

    /// Reports the letters and digits pressed in the control and still held now; their releases are not
    /// reported again. For code that leaves a control, such as its exit handler: fast typists press Tab
    /// before the last letter is up. The handler may delete the control.
    void releasePending();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Press {
        int key;          // Qt's; a digit's release has another one if its Shift went up first
        quint32 scanCode; // the keyboard's; 0 if unknown
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
    Presses presses_; // keys held, in the order of their presses
};

} // namespace ambrel
