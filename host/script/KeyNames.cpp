// Key events by the names of the keys.
#include "host/script/KeyNames.h"

#include <array>
#include <utility>

namespace host::script {
namespace {

struct NamedKey {
    const char* name;
    Qt::Key key;
    const char* text;
};

constexpr std::array namedKeys{
    NamedKey{"Tab", Qt::Key_Tab, "\t"},
    NamedKey{"Return", Qt::Key_Return, "\r"},
    NamedKey{"Enter", Qt::Key_Enter, "\r"},
    NamedKey{"Escape", Qt::Key_Escape, "\x1b"},
    NamedKey{"Up", Qt::Key_Up, ""},
    NamedKey{"Down", Qt::Key_Down, ""},
    NamedKey{"Left", Qt::Key_Left, ""},
    NamedKey{"Right", Qt::Key_Right, ""},
    NamedKey{"PageUp", Qt::Key_PageUp, ""},
    NamedKey{"PageDown", Qt::Key_PageDown, ""},
    NamedKey{"Home", Qt::Key_Home, ""},
    NamedKey{"End", Qt::Key_End, ""},
    NamedKey{"Insert", Qt::Key_Insert, ""},
    NamedKey{"Delete", Qt::Key_Delete, "\x7f"},
    NamedKey{"Backspace", Qt::Key_Backspace, "\b"},
    NamedKey{"Space", Qt::Key_Space, " "},
    NamedKey{"Print", Qt::Key_Print, ""},
};

constexpr std::array modifierNames{
    std::pair{"Shift+", Qt::ShiftModifier},
    std::pair{"Ctrl+", Qt::ControlModifier},
    std::pair{"Alt+", Qt::AltModifier},
};

Qt::KeyboardModifiers takeModifiers(QString& name) {
    Qt::KeyboardModifiers modifiers;
    for (bool found = true; found;) {
        found = false;
        for (const auto& [prefix, modifier] : modifierNames) {
            const QLatin1String text(prefix);
            if (name.size() > text.size() && name.startsWith(text)) {
                modifiers |= modifier;
                name.remove(0, text.size());
                found = true;
            }
        }
    }
    return modifiers;
}

std::optional<KeyStroke> plainStroke(const QString& name) {
    for (const NamedKey& key : namedKeys) {
        if (name == QLatin1String(key.name)) {
            return KeyStroke{key.key, {}, QLatin1String(key.text)};
        }
    }
    if (name.size() == 1) {
        return strokeOf(name.front());
    }
    bool isNumber = false;
    const int number = name.mid(1).toInt(&isNumber);
    if (name.startsWith(QLatin1Char('F')) && isNumber && number >= 1 && number <= 24) {
        return KeyStroke{static_cast<Qt::Key>(Qt::Key_F1 + number - 1), {}, {}};
    }
    return std::nullopt;
}

} // namespace

KeyStroke strokeOf(QChar character) {
    KeyStroke stroke;
    // Qt numbers the key of a letter by its capital.
    stroke.key = static_cast<Qt::Key>(character.toUpper().unicode());
    if (character.isUpper()) {
        stroke.modifiers = Qt::ShiftModifier;
    }
    stroke.text = character;
    return stroke;
}

std::optional<KeyStroke> keyStroke(const QString& name) {
    QString rest = name;
    const Qt::KeyboardModifiers modifiers = takeModifiers(rest);
    auto stroke = plainStroke(rest);
    if (!stroke) {
        return std::nullopt;
    }
    const bool isCharacter = rest.size() == 1;
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier)) {
        stroke->text.clear();
        stroke->modifiers = modifiers;
    } else {
        stroke->modifiers |= modifiers;
        if (isCharacter && (modifiers & Qt::ShiftModifier)) {
            stroke->text = stroke->text.toUpper();
        }
    }
    // A keyboard sends a key of its own for a shifted Tab.
    if (stroke->key == Qt::Key_Tab && (modifiers & Qt::ShiftModifier)) {
        stroke->key = Qt::Key_Backtab;
    }
    return stroke;
}

} // namespace host::script
