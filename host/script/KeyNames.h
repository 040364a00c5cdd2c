// The keys that a script names, as the key events that a keyboard sends for them.
#pragma once

#include <QString>
#include <Qt>
#include <optional>

namespace host::script {

struct KeyStroke {
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers;
    QString text; // what the key types; empty with Ctrl or Alt
};

/// The stroke that types a character.
[[nodiscard]] KeyStroke strokeOf(QChar character);

/// A key by name: Tab, Return, Escape, Up, F1... or a character, after any of "Shift+", "Ctrl+" and "Alt+".
/// Null for an unknown name.
[[nodiscard]] std::optional<KeyStroke> keyStroke(const QString& name);

} // namespace host::script
