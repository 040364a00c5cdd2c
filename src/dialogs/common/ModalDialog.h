// A dialog for the time in which it is shown once: created, shown modally, read, freed.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QWidget>
#include <utility>

#include "dialogs/common/FormKeys.h"
#include "services/ModalLoop.h"
#include "services/TagProperty.h"

namespace ambrel {

/// Tag of a dialog that answers by it, once something was accepted.
inline constexpr int acceptedTag = 1;

/// The parent of a dialog: its owner or, where it has none, the application's active window.
[[nodiscard]] inline QWidget* dialogParent(QWidget* owner) {
    return owner ? owner : QApplication::activeWindow();
}

/// Frees the dialog at the end, unless its parent, closed meanwhile, has freed it already.
template<class Dialog>
class ModalDialog {
public:
    /// Arguments: those of the dialog's constructor; the parent becomes dialogParent(owner).
    template<class... Arguments>
    explicit ModalDialog(QWidget* owner, Arguments&&... arguments)
        : dialog_(new Dialog(dialogParent(owner), std::forward<Arguments>(arguments)...)) {}
    ~ModalDialog() { delete dialog_.data(); }
    ModalDialog(const ModalDialog&) = delete;
    ModalDialog& operator=(const ModalDialog&) = delete;

    /// Null when the parent took the dialog along.
    [[nodiscard]] Dialog* get() const { return dialog_; }
    Dialog* operator->() const { return dialog_; }

    /// Shows it; true when it was closed with acceptedResult and is still there.
    [[nodiscard]] bool isAccepted() { return show() == acceptedResult && dialog_; }
    /// The same for a dialog that answers by its Tag.
    [[nodiscard]] bool isAcceptedByTag() {
        show();
        return dialog_ && tagOf(*dialog_) == acceptedTag;
    }
    /// For a dialog whose answer is nobody's business; its result.
    int show() { return execModal(*dialog_); }

private:
    QPointer<Dialog> dialog_;
};

} // namespace ambrel
