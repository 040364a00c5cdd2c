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
    connect(box, &QLineEdit::textChanged, this, [this] {
        if (!box_.hasFocus())
            box_.setCursorPosition(0);
    });
}

bool TextBeginning::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::FocusOut && isLeft(static_cast<const QFocusEvent&>(*event)))
        box_.setCursorPosition(0);
    return false;
}

void selectFromBeginning(QLineEdit& box) {
    const auto length = static_cast<int>(box.text().size());
    box.setSelection(length, -length);
}

} // namespace ambrel
