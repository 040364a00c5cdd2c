// Showing a dialog modally and returning the keyboard afterwards.
#pragma once

class QDialog;

namespace ambrel {

/// Shows a dialog as QDialog::exec() does and returns its result; the dialog may be gone by then. Afterwards
/// the keyboard is back in the window that had it before, even under window managers that lose it when a
/// message and the dialog it belongs to close at once.
int execModal(QDialog& dialog);

} // namespace ambrel
