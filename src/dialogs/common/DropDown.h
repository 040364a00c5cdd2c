// Lists that drop down from combos.
#pragma once

class QWidget;

namespace ambrel {

/// The combos of a dialog, editable or not, drop down a list of as many rows as they say, inside the screen.
/// Some styles make a menu of all items instead, which covers the screen from top to bottom.
void limitDropDowns(QWidget& dialog);

} // namespace ambrel
