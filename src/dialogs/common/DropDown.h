// Drop-down lists of combos.
#pragma once

class QWidget;

namespace ambrel {

/// Makes the dialog's combos, editable or not, drop down a list with their own number of rows, within the
/// screen. Some styles instead show a menu of all items, which covers the screen from top to bottom.
void limitDropDowns(QWidget& dialog);

} // namespace ambrel
