// Qt's keys and the 16-bit key codes.
#include "services/KeyMap.h"

#include <QKeyEvent>
#include <optional>

#include "dbase/dbf/codepage.h"
#include "services/KeyCodes.h"

namespace ambrel {
namespace {

/// Codes of keys other than letters and digits; 0 for a key without a code.
std::uint16_t namedKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return key_code::enter;
    case Qt::Key_Escape:
        return key_code::escape;
    case Qt::Key_Space:
        return key_code::space;
    case Qt::Key_PageUp:
        return key_code::pageUp;
    case Qt::Key_PageDown:
        return key_code::pageDown;
    case Qt::Key_Up:
        return key_code::up;
    case Qt::Key_Down:
        return key_code::down;
    case Qt::Key_Print:
        return key_code::printScreen;
    case Qt::Key_Insert:
        return key_code::insert;
    case Qt::Key_Delete:
        return key_code::remove;
    case Qt::Key_Comma:
        return key_code::comma;
    default:
        return key_code::none;
    }
}

/// Byte of a letter's capital in Windows-1252; null if the character is not a letter there.
std::optional<std::uint16_t> capitalLetter(char32_t character) {
    const dbase::CodePage& page = dbase::CodePage::windows1252();
    const auto byte = page.encode(character);
    if (!byte || !page.isLetter(*byte)) {
        return std::nullopt;
    }
    return page.upper(*byte);
}

} // namespace

std::uint16_t keyCode(const QKeyEvent& event) {
    const int key = event.key();
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) {
        return static_cast<std::uint16_t>(key);
    }
    if (const std::uint16_t code = namedKey(key)) {
        return code;
    }
    // The text is what was typed, except with Ctrl; then the key itself is the character.
    if (event.text().size() == 1) {
        if (const auto letter = capitalLetter(event.text().front().unicode())) {
            return *letter;
        }
    }
    return capitalLetter(static_cast<char32_t>(key)).value_or(key_code::none);
}

} // namespace ambrel
