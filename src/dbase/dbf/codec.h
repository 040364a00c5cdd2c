// Column values: from the bytes of a record to plain values and back.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "AmbrelExport.h"
#include "dbase/dbf/schema.h"

namespace dbase {

/// Julian day number of a calendar date (2440588 = 1970-01-01).
using JulianDay = std::int32_t;

/// Text without the trailing blanks and without anything from the first 0x00 on.
[[nodiscard]] AMBREL_EXPORT std::string_view decodeText(std::string_view raw);

/// Number with blanks on both sides, a sign, leading zeros, "5." and ".5" accepted; blank, "****" and
/// anything else is null.
[[nodiscard]] AMBREL_EXPORT std::optional<double> decodeNumber(std::string_view raw);

/// The same without going through floating point. Null also where there are decimals other than zero or where
/// it does not fit 64 bits.
[[nodiscard]] AMBREL_EXPORT std::optional<std::int64_t> decodeInteger(std::string_view raw);

/// T t Y y / F f N n; null for "?" and blank.
[[nodiscard]] AMBREL_EXPORT std::optional<bool> decodeLogical(std::string_view raw);

/// YYYYMMDD; null for blank, zeros and dates that do not exist.
[[nodiscard]] AMBREL_EXPORT std::optional<JulianDay> decodeDate(std::string_view raw);

/// Day of a date of the Gregorian calendar, years 1 to 9999; null for one that does not exist.
[[nodiscard]] AMBREL_EXPORT std::optional<JulianDay> julianDay(int year, int month, int day);

/// The eight digits of a day; eight blanks outside the years 1 to 9999.
[[nodiscard]] AMBREL_EXPORT std::string encodeDate(JulianDay day);

/// Left-justified and padded; cut to the width.
AMBREL_EXPORT void encodeText(std::span<char> raw, std::string_view text);

/// Right-justified with exactly `decimals` decimals; false (and nothing written) when it does not fit.
[[nodiscard]] AMBREL_EXPORT bool encodeNumber(std::span<char> raw, double value, int decimals);
[[nodiscard]] AMBREL_EXPORT bool encodeInteger(std::span<char> raw, std::int64_t value, int decimals = 0);

/// T or F in the first byte; blanks, which are null in every type.
AMBREL_EXPORT void encodeLogical(std::span<char> raw, bool value);
AMBREL_EXPORT void encodeBlank(std::span<char> raw);

} // namespace dbase
