// Folding of single letters.
#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

constexpr std::array<char, 256> makeFoldedLetters() {
    std::array<char, 256> table{};
    for (int i = 0; i < 26; ++i) {
        table[static_cast<std::size_t>('A' + i)] = table[static_cast<std::size_t>('a' + i)] =
            static_cast<char>('A' + i);
    }
    for (int i = '0'; i <= '9'; ++i) {
        table[static_cast<std::size_t>(i)] = static_cast<char>(i);
    }
    // From 0xC0 on, capitals; the small letters stand 0x20 after them.
    constexpr std::string_view accented = "AAAAAAACEEEEIIIIDNOOOOO.OUUUUYTS";
    for (std::size_t i = 0; i < accented.size(); ++i) {
        table[0xC0 + i] = table[0xE0 + i] = accented[i];
    }
    table[0xD1] = table[0xF1] = enye;
    table[0xD7] = table[0xF7] = 0; // multiplied, divided
    table[0xDF] = 'S';
    table[0xFF] = table[0x9F] = 'Y';
    table[0x8A] = table[0x9A] = 'S';
    table[0x8E] = table[0x9E] = 'Z';
    table[0x8C] = table[0x9C] = 'O';
    table[0xAA] = 'A'; // feminine and masculine ordinals, as in Mª
    table[0xBA] = 'O';
    table[0xB7] = dropped; // L·L
    return table;
}

/// Whether a letter makes C and G soft.
bool isFront(char letter) { return letter == 'E' || letter == 'I'; }

} // namespace

const std::array<char, 256> foldedLetters = makeFoldedLetters();

std::string foldLetters(std::string_view text) {
    std::string letters;
    for (const char byte : text) {
        if (const char letter = foldedLetter(byte); letter != 0 && letter != dropped) {
            letters += letter;
        }
    }
    return letters;
}

std::string soundOf(std::string_view folded) {
    std::string sound;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        char letter = folded[i];
        const char next = i + 1 < folded.size() ? folded[i + 1] : '\0';
        switch (letter) {
        case 'V':
            letter = 'B';
            break;
        case 'H':
            continue;
        case 'C':
            letter = isFront(next) ? 'S' : 'K';
            break;
        case 'Q':
            letter = 'K';
            i += next == 'U' ? 1 : 0;
            break;
        case 'Z':
            letter = 'S';
            break;
        case 'G':
            letter = isFront(next) ? 'J' : 'G';
            break;
        case 'L':
            if (next == 'L') {
                letter = 'Y';
                ++i;
            }
            break;
        case enye:
            letter = 'N';
            break;
        default:
            break;
        }
        if (sound.empty() || sound.back() != letter || isDigit(letter)) {
            sound += letter;
        }
    }
    return sound;
}

} // namespace ambrel::suggest
