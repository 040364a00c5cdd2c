// Incremental completion of a text box: the keys that trigger it, and what the box shows afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ambrel {

/// A text box as the user left it. Text in Windows-1252; positions count characters.
struct EditedText {
    std::string text;
    std::size_t caret = 0;
    std::size_t selectionStart = 0;
    std::size_t selectionLength = 0; // 0: no selection
};

/// A completed text box: the tail after the caret is selected, so that the next key overwrites it.
struct Completion {
    std::string text;
    std::size_t caret = 0;
    std::size_t selectionLength = 0;
};

/// A completed text box with the code of what it names, for the box's Tag.
struct NamedCompletion {
    Completion box;
    int code = 0;
};

/// True for the key codes that complete a municipality: letters, digits and 44.
[[nodiscard]] bool completesMunicipality(std::uint16_t key);

/// True for the key codes that complete a street: letters, digits and 188, the comma key.
[[nodiscard]] bool completesStreet(std::uint16_t key);

/// Completes a text to one that begins with it; null if `found` does not, or if the text is empty.
[[nodiscard]] std::optional<Completion> complete(const EditedText& edited, std::string_view found);

} // namespace ambrel
