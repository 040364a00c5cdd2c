// Numbers and dates as Spanish readers write them, in UTF-8.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace report {

/// "1.234.567"; also four figures have their point, so that columns line up.
[[nodiscard]] std::string grouped(std::uint64_t number);

/// "12,3 %", with a blank that does not break. Only nothing is "0 %" and only all is "100 %": what rounding
/// would take for them is "< 0,1 %" and "> 99,9 %". Of nothing at all: "–".
[[nodiscard]] std::string percentage(std::uint64_t part, std::uint64_t whole);

/// "0,87".
[[nodiscard]] std::string twoDecimals(double value);

/// "22 de noviembre de 2026, 9:05", in the local time.
[[nodiscard]] std::string dateAndTime(std::time_t moment);

} // namespace report
