// Recognises what is wrong with the writing of a name.
#include "directory/audit/NameFaults.h"

#include <algorithm>
#include <array>

#include "dbase/dbf/codepage.h"
#include "dbase/system/trim.h"

namespace ambrel::directory {

namespace {

using dbase::CodePage;

unsigned char byteOf(char c) { return static_cast<unsigned char>(c); }

bool isLetter(char c) { return CodePage::windows1252().isLetter(byteOf(c)); }

/// A letter of Spanish names in another code page, read as Windows-1252.
struct Misread {
    unsigned char seen, meant;
};
constexpr std::array<Misread, 9> misreads = {{
    {'\\', 0xD1}, // seven bits, the Spanish variant: N with tilde
    {'|', 0xD1},
    {0xA5, 0xD1}, // code page 850, and so on below
    {0xA4, 0xD1},
    {0xB5, 0xC1},
    {0x90, 0xC9},
    {0x80, 0xC7},
    {0xA7, 0xBA},
    {0xA6, 0xAA},
}};

const Misread* misreadOf(char c) {
    const auto* const found = std::ranges::find(misreads, byteOf(c), &Misread::seen);
    return found == misreads.end() ? nullptr : found;
}

/// The character of two bytes of UTF-8 of the Latin letters; null for other bytes.
std::optional<unsigned char> latinOfUtf8(char first, char second) {
    const unsigned char lead = byteOf(first);
    const unsigned char trail = byteOf(second);
    if ((lead != 0xC2 && lead != 0xC3) || trail < 0x80 || trail > 0xBF) {
        return std::nullopt;
    }
    return CodePage::windows1252().encode(static_cast<char32_t>(((lead & 0x1F) << 6) | (trail & 0x3F)));
}

/// Null if no two bytes of it are one letter in UTF-8.
std::optional<std::string> readAsUtf8(std::string_view name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto letter =
            i + 1 < name.size() ? latinOfUtf8(name[i], name[i + 1]) : std::optional<unsigned char>();
        i += letter ? 1 : 0;
        text += letter ? static_cast<char>(*letter) : name[i];
    }
    return text.size() < name.size() ? std::optional(inCapitals(text)) : std::nullopt;
}

/// Signs that no name has; "?" stands for a lost letter when a letter is beside it.
bool isForeignSign(std::string_view name, std::size_t i) {
    const unsigned char byte = byteOf(name[i]);
    const bool isBesideLetter =
        (i > 0 && isLetter(name[i - 1])) || (i + 1 < name.size() && isLetter(name[i + 1]));
    return byte < ' ' || byte == 0x7F || std::string_view("{}~^").find(name[i]) != std::string_view::npos ||
           (name[i] == '?' && isBesideLetter);
}

} // namespace

bool hasSmallLetters(std::string_view name) {
    const CodePage& page = CodePage::windows1252();
    return std::ranges::any_of(name, [&](char c) { return page.upper(byteOf(c)) != byteOf(c); });
}

std::string inCapitals(std::string_view name) {
    std::string text(name);
    std::ranges::transform(text, text.begin(), [](char c) {
        return static_cast<char>(CodePage::windows1252().upper(byteOf(c)));
    });
    return text;
}

bool hasNeedlessBlanks(std::string_view name) {
    return name.starts_with(' ') || name.find("  ") != std::string_view::npos;
}

std::string withoutNeedlessBlanks(std::string_view name) {
    std::string text(dbase::withoutLeadingBlanks(name));
    text.erase(std::ranges::unique(text, [](char a, char b) { return a == ' ' && b == ' '; }).begin(),
               text.end());
    return text;
}

std::optional<BrokenLetters> findBrokenLetters(std::string_view name) {
    if (auto text = readAsUtf8(name)) {
        return BrokenLetters{*std::move(text), true};
    }
    bool isBroken = false, isGuessed = true;
    std::string likely(name);
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (const Misread* const misread = misreadOf(name[i])) {
            isBroken = true;
            likely[i] = static_cast<char>(misread->meant);
        } else if (isForeignSign(name, i)) {
            isBroken = true;
            isGuessed = false;
        }
    }
    if (!isBroken) {
        return std::nullopt;
    }
    return BrokenLetters{isGuessed ? likely : std::string(), false};
}

bool hasOpenBracket(std::string_view name) {
    return std::ranges::count(name, '(') != std::ranges::count(name, ')') ||
           std::ranges::count(name, '[') != std::ranges::count(name, ']');
}

} // namespace ambrel::directory
