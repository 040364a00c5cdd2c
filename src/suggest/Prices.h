// What each difference between a text and a name costs, in hundredths of a slip.
//
// A slip is one letter wrong, missing, added or exchanged with its neighbour. What is typed is a name with
// slips, without some of its words, or its beginning. The prices were tuned with scripts/suggestion-quality.
#pragma once

#include <cstdint>

namespace ambrel::suggest {

using Price = std::uint16_t;

namespace price {
inline constexpr Price impossible = 0xFFFF;
inline constexpr Price slip = 100;
inline constexpr Price likeness = 22;         // a letter in place of one that sounds the same
inline constexpr Price numeral = 8;           // "2" for "Dos"
inline constexpr Price beginning = 30;        // the last word is not finished,
inline constexpr Price missingLetter = 2;     // for each letter that it lacks,
inline constexpr Price slipInBeginning = 55;  // and if there are slips in it
inline constexpr Price missingWord = 12;      // for each word not yet typed, besides its letters
inline constexpr Price initial = 45;          // "F." for "Federico"
inline constexpr Price cutOff = 70;           // one of the two is the beginning of the other
inline constexpr Price contracted = 110;      // "Mtnz" for "Martinez"
inline constexpr Price order = 12;            // words in another order
inline constexpr Price joining = 10;          // words written together, or apart
inline constexpr Price number = 10;           // the text ends with a house number
inline constexpr Price smallWord = 60;        // an article that the name does not have
inline constexpr Price lastSmallWord = 40;    // the same as the last word
inline constexpr Price appended = 60;         // words in brackets that the name does not have
inline constexpr Price unsharedPairs = 20;    // no two neighbouring letters in common
inline constexpr Price firstLetter = 10;      // another first letter
inline constexpr Price unmatchedTitle = 90;   // a title that the name does not have
inline constexpr Price mostExtra = 60;        // for taking a word for another rather than for none
inline constexpr Price omittedTitle = 70;     // a title or type of street not typed
inline constexpr Price omittedAppended = 25;  // the same of words in brackets
inline constexpr Price omittedWord = 60;      // the same of any other word,
inline constexpr Price omittedRarity = 90;    // plus this times its rarity,
inline constexpr double omittedFurther = 0.6; // times this after the first one
} // namespace price

} // namespace ambrel::suggest
