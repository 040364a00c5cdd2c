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

/// The text up to the first 0x00, without trailing blanks.
[[nodiscard]] AMBREL_EXPORT std::string_view decodeText(std::string_view raw);

/// The number in a text; accepts surrounding blanks, a sign, leading zeros, "5." and ".5". Null for blank,
/// "****" and anything else.
[[nodiscard]] AMBREL_EXPORT std::optional<double> decodeNumber(std::string_view raw);

/// The same without floating point. Null also if there are decimals other than zero or it does not fit 64
/// bits.
[[nodiscard]] AMBREL_EXPORT std::optional<std::int64_t> decodeInteger(std::string_view raw);

/// T t Y y or F f N n; null for "?" and blank.
[[nodiscard]] AMBREL_EXPORT std::optional<bool> decodeLogical(std::string_view raw);

/// The day of YYYYMMDD; null for blank, zeros and dates that do not exist.
[[nodiscard]] AMBREL_EXPORT std::optional<JulianDay> decodeDate(std::string_view raw);

/// The day of a Gregorian date, years 1 to 9999; null if the date does not exist.
[[nodiscard]] AMBREL_EXPORT std::optional<JulianDay> julianDay(int year, int month, int day);

/// The eight digits of a day; eight blanks outside the years 1 to 9999.
[[nodiscard]] AMBREL_EXPORT std::string encodeDate(JulianDay day);

/// Writes a text left-justified and padded; cut to the width.
AMBREL_EXPORT void encodeText(std::span<char> raw, std::string_view text);

/// Writes a number right-justified with exactly `decimals` decimals; false, with nothing written, if it does
/// not fit.
[[nodiscard]] AMBREL_EXPORT bool encodeNumber(std::span<char> raw, double value, int decimals);
[[nodiscard]] AMBREL_EXPORT bool encodeInteger(std::span<char> raw, std::int64_t value, int decimals = 0);

/// Write T or F in the first byte; and blanks, which are null in every type.
AMBREL_EXPORT void encodeLogical(std::span<char> raw, bool value);
AMBREL_EXPORT void encodeBlank(std::span<char> raw);

} // namespace dbase
