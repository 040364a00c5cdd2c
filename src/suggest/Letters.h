// Letters as names are compared: capitals without accents, digits, Ñ; and what sounds alike.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ambrel::suggest {

/// The one folded letter that is not ASCII.
inline constexpr char enye = '\xD1';

/// The folded letter or digit of each byte of Windows-1252; 0 for what separates words, `dropped` for what
/// stands inside them without meaning.
inline constexpr char dropped = '\1';
extern const std::array<char, 256> foldedLetters;

[[nodiscard]] inline char foldedLetter(char byte) { return foldedLetters[static_cast<unsigned char>(byte)]; }
[[nodiscard]] inline bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// 0 to 36, for tables and bit masks.
[[nodiscard]] inline unsigned letterNumber(char folded) {
    return isDigit(folded)  ? static_cast<unsigned>(folded - '0')
           : folded == enye ? 36U
                            : static_cast<unsigned>(folded - 'A') + 10U;
}

/// The number of bits set; without a call, where the processor's own instruction may not be assumed.
[[nodiscard]] constexpr unsigned bitCount(std::uint64_t bits) {
    bits -= (bits >> 1) & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + ((bits >> 2) & 0x3333333333333333U);
    return static_cast<unsigned>((((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0FU) * 0x0101010101010101U) >> 56);
}

/// The letters of a text in Windows-1252 without anything between them.
[[nodiscard]] std::string foldLetters(std::string_view text);

/// A folded word with one letter for those that are confused: B/V, C/S/Z, G/J, K/QU, LL/Y, N/Ñ; without H and
/// doubled letters.
[[nodiscard]] std::string soundOf(std::string_view folded);

} // namespace ambrel::suggest
