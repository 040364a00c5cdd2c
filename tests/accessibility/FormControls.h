// The controls of a form, as the keyboard and a screen reader see them.
#pragma once

#include <QAccessible>
#include <QChar>
#include <QWidget>
#include <string>
#include <vector>

namespace accessibility_tests {

/// The shown controls of a form that keys or the mouse work on; a grid or a combo counts as one.
[[nodiscard]] std::vector<QWidget*> controlsOf(const QWidget& window);

/// Whether the Tab key should reach a control: an enabled one, of a group of radio buttons the chosen one.
[[nodiscard]] bool isTabStop(const QWidget& control);

/// What a screen reader says of a control.
[[nodiscard]] std::string spoken(QWidget& control, QAccessible::Text what);

/// A letter that, together with Alt, goes to a control.
struct Mnemonic {
    QChar letter; // small
    QWidget* bearer;
    QWidget* target; // where the focus goes, or what is pressed; null for a label without buddy
};

/// Those of the shown labels, buttons, frames and menus of a menu bar.
[[nodiscard]] std::vector<Mnemonic> mnemonicsOf(const QWidget& window);

} // namespace accessibility_tests
