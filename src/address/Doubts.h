// What each difference between an address and the tables takes from the confidence.
//
// An address without any is certain: 1. Doubts add up, and evidence makes them smaller or larger; what
// remains of 1 is the confidence. The values were chosen with scripts/validation-quality
// (docs/validation.md).
#pragma once

namespace ambrel::doubt {

// The name of a municipality or a street
inline constexpr double writing = 0.03;     // the same words, written in another way
inline constexpr double slips = 0.5;        // times the share of letters that are wrong,
inline constexpr double furtherSlip = 0.04; // and for each slip after the first,
inline constexpr double tinyWord = 0.05;    // and if a word with slips has at most `tiny` letters
inline constexpr double part = 0.25;        // words missing or too many
inline constexpr unsigned tiny = 3;

// A street with slips that may be another, missing from the tables; no postal code makes these smaller
inline constexpr double realWord = 0.12;   // the word with slips is one that streets of the province have
inline constexpr double realName = 0.12;   // some other municipality has a street with the name as written
inline constexpr double inflection = 0.08; // only the end of a word differs

// The municipality
inline constexpr double otherLanguage = 0.01; // one of its names
inline constexpr double fromCode = 0.02;      // only the postal code says it,
inline constexpr double otherIneCode = 0.15;  // and the street's rows name another
inline constexpr double locality = 0.08;      // a locality that belongs to it was written
inline constexpr double otherProvince = 0.12; // it lies in another than what was written
inline constexpr double townInRest = 0.25;    // another name stands where the town's does

// The street
/// A lane may be missing from the tables that hold the street of its name.
inline constexpr double otherType = 0.12;
inline constexpr double unread = 0.05; // something of it was not understood, and something else changed
inline constexpr double numberOutside = 0.10; // none of its stretches has the number

// The postal code
inline constexpr double noCode = 0.01;    // none was given
inline constexpr double otherCode = 0.15; // another's was given

// How the postal code bears on the doubts about names
inline constexpr double ifCodeAgrees = 0.6, ifCodeDiffers = 2.5;

} // namespace ambrel::doubt
