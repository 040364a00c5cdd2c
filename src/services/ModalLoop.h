// Showing a dialog modally, and the keyboard afterwards.
#pragma once

class QDialog;

namespace ambrel {

/// Shows a dialog as QDialog::exec() does and returns its result; the dialog may be gone by then. Afterwards
/// the keyboard is in the window again that had it before, also under window managers that lose it when a
/// message and the dialog that it belongs to close at once.
int execModal(QDialog& dialog);

} // namespace ambrel
