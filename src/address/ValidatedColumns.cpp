// Writes a judged address as the values of columns.
#include "address/ValidatedColumns.h"

#include <cstdio>

namespace ambrel {

namespace {

constexpr char open = '\xAB', close = '\xBB'; // « »
constexpr std::string_view between = " | ";

std::string quoted(const std::string& text) {
    std::string result(1, open);
    for (const char c : text) {
        result.append(c == close ? 2 : 1, c);
    }
    return result + close;
}

/// Rounded down: 1.00 means 1.
std::string hundredths(double value) {
    std::array<char, 16> text{};
    const int size =
        std::snprintf(text.data(), text.size(), "%.2f", static_cast<int>(value * 100 + 1e-6) / 100.0);
    return {text.data(), static_cast<std::size_t>(size)};
}

std::string changesText(const JudgedAddress& judged) {
    std::string text;
    for (const AddressChange& change : judged.changes) {
        text += text.empty() ? std::string_view() : between;
        text += partName(change.part);
        text += ": " + quoted(change.from) + " > " + quoted(change.to);
    }
    return text;
}

std::string alternativeText(const AddressAlternative& one) {
    std::string text = hundredths(one.points);
    if (!one.street.empty()) {
        text += (one.type.empty() ? "" : ' ' + one.type) + ' ' + quoted(one.street);
    }
    text += (one.ineCode.empty() ? "" : ' ' + one.ineCode) + ' ' + quoted(one.municipality);
    for (std::size_t i = 0; i < one.postalCodes.size(); ++i) {
        text += (i == 0 ? ' ' : '/') + one.postalCodes[i];
    }
    return text;
}

std::string alternativesText(const JudgedAddress& judged) {
    std::string text;
    for (const AddressAlternative& one : judged.alternatives) {
        text += text.empty() ? std::string_view() : between;
        text += alternativeText(one);
    }
    return text;
}

} // namespace

std::array<std::string, validatedColumnCount> validatedColumns(const JudgedAddress& judged,
                                                               const std::string& provinceName) {
    const bool isBroken = judged.verdict == Verdict::BrokenRow;
    return {std::string(verdictName(judged.verdict)),
            hundredths(judged.confidence),
            judged.ineCode,
            judged.municipality,
            provinceName.empty() ? judged.province : provinceName,
            judged.type,
            judged.street,
            judged.number,
            judged.rest,
            judged.postalCode,
            isBroken ? judged.reason : changesText(judged),
            alternativesText(judged)};
}

} // namespace ambrel
