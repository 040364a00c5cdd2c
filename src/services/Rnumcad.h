// Texts and numbers. Texts are Windows-1252: a character is a byte.
#pragma once

#include <string>
#include <string_view>

#include "AmbrelExport.h"

/// Exactly `width` characters: padded with blanks on the right, or cut. A width of 0 or less leaves the text
/// as it is.
[[nodiscard]] AMBREL_EXPORT std::string Espacios(std::string_view text, int width);

/// The first n characters, or the whole text if it is shorter; empty for n of 0 or less.
[[nodiscard]] AMBREL_EXPORT std::string StrLeft(std::string_view text, int n);

/// The last n characters, or the whole text if it is shorter; empty for n of 0 or less.
[[nodiscard]] AMBREL_EXPORT std::string StrRight(std::string_view text, int n);

/// The text in capitals, accented letters included.
[[nodiscard]] AMBREL_EXPORT std::string UpperCase(std::string_view text);

/// Decimal digits of a number, without padding.
[[nodiscard]] AMBREL_EXPORT std::string Int_Cad(int number);

/// Value of a decimal text: sign, leading zeros and blanks around it are allowed. 0 for anything that is not
/// a number or does not fit.
[[nodiscard]] AMBREL_EXPORT int Cad_Int(std::string_view text);

namespace ambrel {

/// The text without the blanks at both ends; a view into the given text.
[[nodiscard]] AMBREL_EXPORT std::string_view withoutBlanks(std::string_view text);

/// True for digits and letters (accented ones, ª and º included); not for ¹ ² ³ ¼ ½ ¾.
[[nodiscard]] AMBREL_EXPORT bool isAlphanumeric(unsigned char character);

} // namespace ambrel
