// Writes numbers and dates without the system's locales, which a machine may lack.
#include "report/SpanishNumbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace report {

namespace {

constexpr const char* blank = "\u00A0"; // does not break

} // namespace

std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, 1, '.');
    }
    return text;
}

std::string percentage(std::uint64_t part, std::uint64_t whole) {
    if (whole == 0) {
        return "–";
    }
    if (part == 0 || part == whole) {
        return (part == 0 ? "0" : "100") + std::string(blank) + '%';
    }
    const double share = 1000.0 * static_cast<double>(part) / static_cast<double>(whole);
    const auto tenths = static_cast<std::uint64_t>(std::lround(share));
    const std::string sign = tenths == 0      ? std::string("<") + blank
                             : tenths >= 1000 ? std::string(">") + blank
                                              : "";
    const std::uint64_t written = std::clamp<std::uint64_t>(tenths, 1, 999);
    return sign + std::to_string(written / 10) + ',' + std::to_string(written % 10) + blank + '%';
}

std::string twoDecimals(double value) {
    std::array<char, 64> text{};
    const double hundredths = std::isfinite(value) ? std::round(std::clamp(value, -1e9, 1e9) * 100) : 0;
    const auto whole = static_cast<long long>(std::fabs(hundredths));
    std::snprintf(text.data(), text.size(), "%s%lld,%02lld", hundredths < 0 ? "-" : "", whole / 100,
                  whole % 100);
    return text.data();
}

std::string dateAndTime(std::time_t moment) {
    static constexpr std::array months = {"enero",      "febrero", "marzo",     "abril",
                                          "mayo",       "junio",   "julio",     "agosto",
                                          "septiembre", "octubre", "noviembre", "diciembre"};
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr) {
        return "–";
    }
    std::array<char, 16> time{};
    std::snprintf(time.data(), time.size(), "%d:%02d", local.tm_hour % 24, local.tm_min % 60);
    return std::to_string(local.tm_mday) + " de " + months.at(static_cast<std::size_t>(local.tm_mon)) +
           " de " + std::to_string(1900 + local.tm_year) + ", " + time.data();
}

} // namespace report
