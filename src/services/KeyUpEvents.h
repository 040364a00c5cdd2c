// Key-up handlers of controls, called with 16-bit key codes.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>

#include "AmbrelExport.h"

class QWidget;

namespace ambrel {

/// Calls a handler for each key that is released in a control, after the control has had the key's press.
/// Keys without a code are told as 0, releases that auto-repeat invents are not told. A handler that sets the
/// code to 0 has used the release: nobody else sees it.
class AMBREL_EXPORT KeyUpEvents : public QObject {
public:
    /// Runs inside runGuarded().
    using Handler = std::function<void(std::uint16_t& key, Qt::KeyboardModifiers modifiers)>;

    /// Watches a control for as long as it lives, or until the returned object, which the control owns, is
    /// deleted.
    static KeyUpEvents* watch(QWidget* control, Handler handler);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    KeyUpEvents(QWidget* control, Handler handler);

    Handler handler_;
};

} // namespace ambrel
