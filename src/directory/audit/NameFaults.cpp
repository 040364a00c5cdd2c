// Recognises what is wrong with the writing of a name.
#include "directory/audit/NameFaults.h"

#include <algorithm>
#include <array>
#include <utility>

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
constexpr std::array<Misread, 15> misreads = {{
    {'\\', 0xD1}, // seven bits, the Spanish variant: N with tilde
    {'|', 0xD1},
    {0xA5, 0xD1}, // code page 850, and so on below
    {0xA4, 0xD1},
    {0xB5, 0xC1},
    {0x90, 0xC9},
    {0x80, 0xC7},
    {0xA7, 0xBA},
    {0xA6, 0xAA},
    {0x82, 0xC9}, // small letters: programs of that time left them so in capitals
    {0xA1, 0xCD},
    {0xA2, 0xD3},
    {0xA3, 0xDA},
    {0x81, 0xDC},
    {0x87, 0xC7},
}};

const Misread* misreadOf(char c) {
    const auto* const found = std::ranges::find(misreads, byteOf(c), &Misread::seen);
    return found == misreads.end() ? nullptr : found;
}

/// A character of a text in UTF-8, of two or three bytes.
struct Decoded {
    char32_t code;
    std::size_t size;
};

/// Null where no such character begins, nor one of the Latin letters and signs that names have.
std::optional<Decoded> decodedAt(std::string_view text, std::size_t i) {
    const auto trail = [&](std::size_t place) -> std::optional<char32_t> {
        const bool isTrail =
            place < text.size() && byteOf(text[place]) >= 0x80 && byteOf(text[place]) <= 0xBF;
        return isTrail ? std::optional<char32_t>(byteOf(text[place]) & 0x3FU) : std::nullopt;
    };
    const unsigned lead = byteOf(text[i]);
    const auto first = trail(i + 1), second = trail(i + 2);
    if ((lead == 0xC2 || lead == 0xC3 || lead == 0xC5) && first) {
        return Decoded{((lead & 0x1FU) << 6U) | *first, 2};
    }
    if (lead == 0xE2 && first && second) {
        return Decoded{((lead & 0x0FU) << 12U) | (*first << 6U) | *second, 3};
    }
    return std::nullopt;
}

/// The same text with its characters in UTF-8 as single bytes.
std::string decodedOnce(std::string_view name) {
    std::string text;
    for (std::size_t i = 0; i < name.size();) {
        const auto character = decodedAt(name, i);
        const auto byte = character ? CodePage::windows1252().encode(character->code) : std::nullopt;
        text += byte ? static_cast<char>(*byte) : name[i];
        i += byte ? character->size : 1;
    }
    return text;
}

/// Null if nothing in it is in UTF-8. Some texts were encoded twice.
std::optional<std::string> readAsUtf8(std::string_view name) {
    std::string text(name);
    for (std::string before; text.size() != before.size();) {
        before = std::exchange(text, decodedOnce(text));
    }
    return text.size() < name.size() ? std::optional(inCapitals(text)) : std::nullopt;
}

/// Whether a text has the first byte of a letter in UTF-8 whose second one was cut off, or dropped as
/// Windows-1252 has no character for it: "ÃVILA". Portuguese names have that letter before O and E.
bool hasHalfLetter(std::string_view name) {
    for (std::size_t i = name.find('\xC3'); i != std::string_view::npos; i = name.find('\xC3', i + 1)) {
        if (i + 1 == name.size() || std::string_view("OoEe").find(name[i + 1]) == std::string_view::npos) {
            return true;
        }
    }
    return name.ends_with('\xC2') || name.ends_with('\xC5');
}

/// What systems write in place of a letter that they could not read, in UTF-8, and the same in capitals.
bool hasReplacedLetter(std::string_view name) {
    return name.find("\xEF\xBF\xBD") != std::string_view::npos ||
           name.find("\xCF\xBF\xBD") != std::string_view::npos;
}

constexpr std::string_view foreignSigns = "{}~^\x7F\xA0\xAD";

/// Signs that no name has: 0xA0 is a blank that is not one, or a letter of code page 850. "?" stands for a
/// lost letter when a letter is beside it.
bool isForeignSign(std::string_view name, std::size_t i) {
    const unsigned char byte = byteOf(name[i]);
    const bool isBesideLetter =
        (i > 0 && isLetter(name[i - 1])) || (i + 1 < name.size() && isLetter(name[i + 1]));
    return byte < ' ' || foreignSigns.find(name[i]) != std::string_view::npos ||
           (name[i] == '?' && isBesideLetter);
}

/// Whether each byte may be part of broken letters: most names have none, and are many.
const std::array<bool, 256> suspicious = [] {
    std::array<bool, 256> bytes{};
    for (std::size_t control = 0; control < ' '; ++control) {
        bytes.at(control) = true;
    }
    for (const Misread& misread : misreads) {
        bytes.at(misread.seen) = true;
    }
    for (const char c : foreignSigns) {
        bytes.at(byteOf(c)) = true;
    }
    for (const char c : std::string_view("?\xC2\xC3\xC5\xCF\xE2\xEF")) { // those above 0x7F begin UTF-8
        bytes.at(byteOf(c)) = true;
    }
    return bytes;
}();

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
    if (std::ranges::none_of(name, [](char c) { return suspicious[byteOf(c)]; })) {
        return std::nullopt;
    }
    if (hasReplacedLetter(name)) {
        return BrokenLetters{{}, true};
    }
    if (auto text = readAsUtf8(name)) {
        const bool isWhole = !hasHalfLetter(*text) && !readAsUtf8(*text);
        return BrokenLetters{*std::move(text), true, isWhole};
    }
    bool isBroken = hasHalfLetter(name), isGuessed = !isBroken;
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
    std::string open;
    for (const char c : name) {
        if (c == '(' || c == '[') {
            open += c;
        } else if (c == ')' || c == ']') {
            if (open.empty() || open.back() != (c == ')' ? '(' : '[')) {
                return true;
            }
            open.pop_back();
        }
    }
    return !open.empty();
}

} // namespace ambrel::directory
