// What a user of a form can work with, as the keyboard and a screen reader know it.
#pragma once

#include <QAccessible>
#include <QChar>
#include <QWidget>
#include <string>
#include <vector>

namespace accessibility_tests {

/// The controls of a form that are shown and that keys or the mouse work on; a grid or a combo counts as one.
[[nodiscard]] std::vector<QWidget*> controlsOf(const QWidget& window);

/// Whether the Tab key is to come to a control: an enabled one, of a group of radio buttons the chosen one.
[[nodiscard]] bool isTabStop(const QWidget& control);

/// What a screen reader is told of a control.
[[nodiscard]] std::string spoken(QWidget& control, QAccessible::Text what);

/// A letter that goes to a control together with Alt.
struct Mnemonic {
    QChar letter; // small
    QWidget* bearer;
    QWidget* target; // where the focus goes, or what is pressed; null for a label without buddy
};

/// Of what is shown: labels, buttons, frames and the menus of a menu bar.
[[nodiscard]] std::vector<Mnemonic> mnemonicsOf(const QWidget& window);

} // namespace accessibility_tests
