// Single-byte code pages of the tables: conversion to UTF-8, letter case and key weights.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"

namespace dbase {

/// One single-byte code page. The five bytes that Windows-1252 leaves open stand for the control characters
/// of the same number, so that every byte survives a round trip.
class AMBREL_EXPORT CodePage {
public:
    /// The code page that a language driver byte names; unknown drivers are read as Windows-1252.
    static const CodePage& ofDriver(std::uint8_t languageDriver);
    static const CodePage& windows1252();

    /// From the page's bytes.
    [[nodiscard]] char32_t decode(unsigned char byte) const { return codes_[byte]; }
    [[nodiscard]] std::string toUtf8(std::string_view bytes) const;
    /// The byte of a character; null when the page has none.
    [[nodiscard]] std::optional<unsigned char> encode(char32_t code) const;
    /// Null when the text is no UTF-8 or has a character that the page lacks.
    [[nodiscard]] std::optional<std::string> fromUtf8(std::string_view text) const;

    /// Letter case by this page's own letters, accented ones included; what has no counterpart stays.
    [[nodiscard]] unsigned char upper(unsigned char byte) const { return upper_[byte]; }
    [[nodiscard]] unsigned char lower(unsigned char byte) const { return lower_[byte]; }
    [[nodiscard]] bool isLetter(unsigned char byte) const;

    explicit CodePage(const char* name); // a name that the system's converter knows

private:
    std::array<char32_t, 256> codes_{};
    std::array<unsigned char, 256> upper_{}, lower_{};
};

/// Weight of each byte in keys of the collating drivers (0x58, 0x59): all 256 differ, so equality stays byte
/// equality.
[[nodiscard]] const std::array<std::uint8_t, 256>& collationWeights();

/// True for the drivers whose character keys are ordered by weight: 0x58, 0x59.
[[nodiscard]] bool driverCollates(std::uint8_t languageDriver);
/// True for the OEM Spanish drivers 0x14 and 0x18, which collate by weights that nobody has published.
[[nodiscard]] bool driverOrderIsUnknown(std::uint8_t languageDriver);

} // namespace dbase
