// Which part of a long text an edit box shows.
#include "dialogs/common/TextBeginning.h"

#include <QFocusEvent>
#include <QLineEdit>

namespace ambrel {
namespace {

/// Pop-ups and other windows borrow the focus; the box is being used all the same.
bool isLeft(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
           event.reason() != Qt::MenuBarFocusReason;
}

} // namespace

TextBeginning::TextBeginning(QLineEdit* box) : QObject(box), box_(*box) {
    box->setCursorPosition(0);
    // A combo hands the focus events of its box over without telling a filter.
    (box->focusProxy() ? box->focusProxy() : box)->installEventFilter(this);
    connect(box, &QLineEdit::textChanged, this, [box] {
        if (!box->hasFocus()) {
            box->setCursorPosition(0);
        }
    });
}

bool TextBeginning::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::FocusOut && isLeft(static_cast<const QFocusEvent&>(*event))) {
        // A box that is being destroyed loses the focus, too, and is no edit box any more.
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
