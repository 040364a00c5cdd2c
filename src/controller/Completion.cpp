// Completion of a text being typed.
#include "controller/Completion.h"

#include <algorithm>

#include "services/KeyCodes.h"

namespace ambrel {
namespace {

unsigned char lowByte(std::uint16_t key) { return static_cast<unsigned char>(key & 0xFF); }

} // namespace

bool completesMunicipality(std::uint16_t key) {
    // Deliberate: 44 is the code of the comma character but is compared with a key code, where it means Print
    // Screen.
    return isAlphanumeric(lowByte(key)) || lowByte(key) == key_code::printScreen;
}

bool completesStreet(std::uint16_t key) { return isAlphanumeric(lowByte(key)) || key == key_code::comma; }

std::optional<Completion> complete(const EditedText& edited, std::string_view found) {
    if (edited.text.empty() || !found.starts_with(edited.text)) {
        return std::nullopt;
    }
    // If keys are pressed faster than released, the text is complete already with its tail selected: the
    // caret stays where the user was typing.
    const std::size_t wanted = edited.selectionLength > 0 ? edited.selectionStart : edited.caret;
    const std::size_t caret = std::min(wanted, found.size());
    return Completion{.text = std::string(found), .caret = caret, .selectionLength = found.size() - caret};
}

} // namespace ambrel
