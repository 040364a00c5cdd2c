// What each difference between an address and the tables takes from the confidence.
//
// An address without any is certain: 1. Doubts add up, and evidence makes them smaller or larger; what
// remains of 1 is the confidence. The values were chosen with scripts/validation-quality
// (docs/validation.md).
#pragma once

namespace ambrel::doubt {

// The name of a municipality or a street
inline constexpr double writing = 0.03;     // the same words, written in another way
inline constexpr double slipInLong = 0.06;  // one slip in at least `longName` letters,
inline constexpr double slipInShort = 0.10; // in fewer,
inline constexpr double slipInTiny = 0.30;  // in less than `shortName`
inline constexpr double secondSlip = 0.06;  // for each further one
inline constexpr double part = 0.25;        // words missing or too many
inline constexpr double realWord = 0.12;    // the word with slips is one that streets of the province have
inline constexpr double inflection = 0.08;  // only the end of a word differs
inline constexpr unsigned longName = 8, shortName = 5;

// The municipality
inline constexpr double otherLanguage = 0.01; // one of its names
inline constexpr double fromCode = 0.02;      // only the postal code says it
inline constexpr double locality = 0.08;      // a locality that belongs to it was written
inline constexpr double otherProvince = 0.12; // it lies in another than what was written

// The street
inline constexpr double otherType = 0.06;
inline constexpr double numberOutside = 0.10; // none of its stretches has the number

// The postal code
inline constexpr double noCode = 0.01;    // none was given
inline constexpr double otherCode = 0.15; // another's was given

// How the postal code bears on the doubts about names
inline constexpr double ifCodeAgrees = 0.5, ifCodeDiffers = 2.5;

} // namespace ambrel::doubt
