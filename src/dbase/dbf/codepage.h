// Single-byte code pages of the tables: conversion to UTF-8 and letter case.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "AmbrelExport.h"

namespace dbase {

/// One single-byte code page. The five bytes undefined in Windows-1252 stand for the control characters of
/// the same number, so that every byte survives a round trip.
class AMBREL_EXPORT CodePage {
public:
    /// The code page of a language driver byte; unknown drivers are read as Windows-1252.
    static const CodePage& ofDriver(std::uint8_t languageDriver);
    static const CodePage& windows1252();

    /// Decode the page's bytes.
    [[nodiscard]] char32_t decode(unsigned char byte) const { return codes_[byte]; }
    [[nodiscard]] std::string toUtf8(std::string_view bytes) const;
    /// The byte of a character; null if the page has none.
    [[nodiscard]] std::optional<unsigned char> encode(char32_t code) const;
    /// Null if the text is not UTF-8 or has a character that the page lacks.
    [[nodiscard]] std::optional<std::string> fromUtf8(std::string_view text) const;

    /// Letter case within this page, accented letters included; a byte without a counterpart is unchanged.
    [[nodiscard]] unsigned char upper(unsigned char byte) const { return upper_[byte]; }
    [[nodiscard]] unsigned char lower(unsigned char byte) const { return lower_[byte]; }
    [[nodiscard]] bool isLetter(unsigned char byte) const;

    explicit CodePage(const char* name); // as known to the system's converter

private:
    std::array<char32_t, 256> codes_{};
    std::array<unsigned char, 256> upper_{}, lower_{};
};

} // namespace dbase
