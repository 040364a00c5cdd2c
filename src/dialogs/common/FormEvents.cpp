// Showing, resizing and closing of a dialog.
#include "dialogs/common/FormEvents.h"

#include <QDialog>
#include <QEvent>
#include <QPointer>
#include <utility>

#include "dialogs/common/FormKeys.h"
#include "services/EventGuard.h"

namespace ambrel {

FormEvents::FormEvents(QDialog& dialog, std::function<void()> formShow, std::function<void()> formResize)
    : QObject(&dialog), dialog_(dialog), formShow_(std::move(formShow)), formResize_(std::move(formResize)) {
    dialog.installEventFilter(this);
    connect(&dialog, &QDialog::rejected, this, [this] { dialog_.setResult(cancelledResult); });
}

bool FormEvents::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
        if (!event->spontaneous()) {
            runGuarded(formShow_);
        }
        return false;
    case QEvent::Resize:
        runGuarded(formResize_);
        return false;
    case QEvent::Close:
        return close(*event);
    default:
        return false;
    }
}

/// As the dialog itself would, except for the result. True if it was done here.
bool FormEvents::close(QEvent& event) {
    if (!dialog_.isVisible()) {
        return false;
    }
    const QPointer<QDialog> dialog = &dialog_;
    dialog_.done(cancelledResult);
    if (dialog && dialog->isVisible()) {
        event.ignore();
    }
    return true;
}

} // namespace ambrel
