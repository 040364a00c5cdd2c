// Chooses the part of a long text that an edit box shows.
#include "dialogs/common/TextBeginning.h"

#include <QFocusEvent>
#include <QLineEdit>

namespace ambrel {
namespace {

/// Pop-ups and other windows take the focus only for a while; the box is still in use.
bool isLeft(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
           event.reason() != Qt::MenuBarFocusReason;
}

} // namespace

TextBeginning::TextBeginning(QLineEdit* box) : QObject(box), box_(*box) {
    box->setCursorPosition(0);
    // A combo passes focus events on to its box without going through the box's event filters.
    (box->focusProxy() ? box->focusProxy() : box)->installEventFilter(this);
    connect(box, &QLineEdit::textChanged, this, [box] {
        if (!box->hasFocus()) {
            box->setCursorPosition(0);
        }
    });
}

bool TextBeginning::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::FocusOut && isLeft(static_cast<const QFocusEvent&>(*event))) {
        // A box being destroyed also loses the focus, and is no longer an edit box.
        if (auto* box = qobject_cast<QLineEdit*>(&box_)) {
            box->setCursorPosition(0);
        }
    }
    return false;
}

void selectFromBeginning(QLineEdit& box) {
    const auto length = static_cast<int>(box.text().size());
    box.setSelection(length, -length);
}

} // namespace ambrel
