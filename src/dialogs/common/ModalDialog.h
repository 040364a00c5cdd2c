// A dialog shown modally once: created, shown, read, freed.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QWidget>
#include <utility>

#include "dialogs/common/FormKeys.h"
#include "services/ModalLoop.h"
#include "services/TagProperty.h"

namespace ambrel {

/// Tag of a dialog that answers by it, after something was accepted.
inline constexpr int acceptedTag = 1;

/// The parent of a dialog: its owner or, without one, the application's active window.
[[nodiscard]] inline QWidget* dialogParent(QWidget* owner) {
    return owner ? owner : QApplication::activeWindow();
}

/// Frees the dialog at the end, unless it has already been freed by its parent.
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

    /// Null if the dialog was destroyed with its parent.
    [[nodiscard]] Dialog* get() const { return dialog_; }
    Dialog* operator->() const { return dialog_; }

    /// Shows it; true if it was closed with acceptedResult and still exists.
    [[nodiscard]] bool isAccepted() { return show() == acceptedResult && dialog_; }
    /// The same for a dialog that answers by its Tag.
    [[nodiscard]] bool isAcceptedByTag() {
        show();
        return dialog_ && tagOf(*dialog_) == acceptedTag;
    }
    /// Shows a dialog whose answer does not matter; returns its result.
    int show() { return execModal(*dialog_); }

private:
    QPointer<Dialog> dialog_;
};

} // namespace ambrel
