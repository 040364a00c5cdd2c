// Showing, resizing and closing of a dialog.
#pragma once

#include <QObject>
#include <functional>

class QDialog;

namespace ambrel {

/// Runs a dialog's `FormShow` and `FormResize`, guarded, each time that the program shows it and that its
/// size changes; lives with the dialog. A window restored to the screen is not shown anew. Every way of
/// closing the dialog other than its buttons, such as the close button of its frame, ends it with
/// cancelledResult.
class FormEvents : public QObject {
    Q_OBJECT
public:
    /// Owned by the dialog.
    FormEvents(QDialog& dialog, std::function<void()> formShow, std::function<void()> formResize);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool close(QEvent& event);

    QDialog& dialog_;
    std::function<void()> formShow_, formResize_;
};

} // namespace ambrel
