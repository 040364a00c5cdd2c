// Code pages, obtained once from the system's converter, and the weights of collating tables.
#include "dbase/dbf/codepage.h"

#include <iconv.h>

#include "dbase/dbf/collation.h"
#include "dbase/dbf/schema.h"
#include "dbase/system/error.h"

namespace dbase {

namespace {

/// The system's converter from one code page to UTF-32.
class Converter {
public:
    explicit Converter(const char* page) : handle_(iconv_open("UTF-32LE", page)) {
        if (!isOpen()) {
            throw Error(ErrorCode::NotFound, {},
                        std::string("El sistema no tiene la página de códigos ") + page);
        }
    }
    ~Converter() {
        if (isOpen()) {
            iconv_close(handle_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Null for a byte undefined in the page.
    [[nodiscard]] std::optional<char32_t> decode(unsigned char byte) {
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        char in = static_cast<char>(byte);
        std::array<unsigned char, 8> out{};
        char* from = &in;
        char* to = reinterpret_cast<char*>(out.data());
        std::size_t inLeft = 1, outLeft = out.size();
        if (iconv(handle_, &from, &inLeft, &to, &outLeft) != 0 || outLeft != out.size() - 4) {
            return std::nullopt;
        }
        return static_cast<char32_t>(out[0] | out[1] << 8 | out[2] << 16);
    }

private:
    [[nodiscard]] bool isOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

    iconv_t handle_;
};

/// The small letter of a Latin capital; any other character unchanged. Independent of the locale.
char32_t smallLetter(char32_t code) {
    const auto within = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    if (within(U'A', U'Z') || (within(0xC0, 0xDE) && code != 0xD7)) {
        return code + 32;
    }
    if (code == 0x178) { // Ÿ
        return 0xFF;
    }
    // Latin Extended-A has each capital just before its small letter, at an even or an odd number.
    const bool isEvenPair = within(0x100, 0x12F) || within(0x132, 0x137) || within(0x14A, 0x177);
    const bool isOddPair = within(0x139, 0x148) || within(0x179, 0x17E);
    if ((isEvenPair && code % 2 == 0) || (isOddPair && code % 2 == 1)) {
        return code + 1;
    }
    return code;
}

void appendUtf8(std::string& text, char32_t code) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

/// Removes one character from the front of a text that is not empty; null if it is not well-formed UTF-8.
std::optional<char32_t> takeUtf8(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t size = lead < 0x80         ? 1
                             : lead >> 5 == 0x6  ? 2
                             : lead >> 4 == 0xE  ? 3
                             : lead >> 3 == 0x1E ? 4
                                                 : 0;
    if (size == 0 || size > text.size()) {
        return std::nullopt;
    }
    char32_t code = size == 1 ? lead : lead & (0x7Fu >> size);
    for (std::size_t i = 1; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >> 6 != 0x2) {
            return std::nullopt;
        }
        code = code << 6 | (byte & 0x3Fu);
    }
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    if (code < smallest[size] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return std::nullopt;
    }
    text.remove_prefix(size);
    return code;
}

constexpr std::array<std::uint8_t, 255> bytesByWeight{
    0x20, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10,
    0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0xA0, 0x5F,
    0xAF, 0xAD, 0x2D, 0x2C, 0x3B, 0x3A, 0x21, 0xA1, 0x3F, 0xBF, 0x2F, 0x2E, 0xB4, 0x60, 0x5E, 0xA8, 0x7E,
    0xB7, 0xB8, 0x27, 0x22, 0xAB, 0xBB, 0x28, 0x29, 0x5B, 0x5D, 0x7B, 0x7D, 0xA7, 0xB6, 0xA9, 0xAE, 0x40,
    0xA4, 0xA2, 0x24, 0xA3, 0xA5, 0x2A, 0x5C, 0x26, 0x23, 0x25, 0x2B, 0xB1, 0xF7, 0xD7, 0x3C, 0x3D, 0x3E,
    0xAC, 0x7C, 0xA6, 0xB0, 0xB5, 0x7F, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8B, 0x91, 0x92,
    0x93, 0x94, 0x95, 0x96, 0x97, 0x98, 0x99, 0x9B, 0x30, 0xBC, 0xBD, 0xBE, 0x31, 0xB9, 0x32, 0xB2, 0x33,
    0xB3, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x61, 0x41, 0xAA, 0xE1, 0xC1, 0xE0, 0xC0, 0xE2, 0xC2, 0xE5,
    0xC5, 0xE4, 0xC4, 0xE3, 0xC3, 0xE6, 0xC6, 0x62, 0x42, 0x63, 0x43, 0xE7, 0xC7, 0x64, 0x44, 0xF0, 0xD0,
    0x65, 0x45, 0xE9, 0xC9, 0xE8, 0xC8, 0xEA, 0xCA, 0xEB, 0xCB, 0x66, 0x46, 0x67, 0x47, 0x68, 0x48, 0x69,
    0x49, 0xED, 0xCD, 0xEC, 0xCC, 0xEE, 0xCE, 0xEF, 0xCF, 0x6A, 0x4A, 0x6B, 0x4B, 0x6C, 0x4C, 0x6D, 0x4D,
    0x6E, 0x4E, 0xF1, 0xD1, 0x6F, 0x4F, 0xBA, 0xF3, 0xD3, 0xF2, 0xD2, 0xF4, 0xD4, 0xF6, 0xD6, 0xF5, 0xD5,
    0xF8, 0xD8, 0x9C, 0x8C, 0x70, 0x50, 0x71, 0x51, 0x72, 0x52, 0x73, 0x53, 0x9A, 0x8A, 0xDF, 0x74, 0x54,
    0xFE, 0xDE, 0x75, 0x55, 0xFA, 0xDA, 0xF9, 0xD9, 0xFB, 0xDB, 0xFC, 0xDC, 0x76, 0x56, 0x77, 0x57, 0x78,
    0x58, 0x79, 0x59, 0xFD, 0xDD, 0xFF, 0x9F, 0x7A, 0x5A, 0x80, 0x81, 0x8D, 0x8E, 0x8F, 0x90, 0x9D, 0x9E,
};

constexpr std::array<std::uint8_t, 256> weightsByByte() {
    std::array<std::uint8_t, 256> weights{}; // byte 0 is the lightest
    for (std::size_t i = 0; i < bytesByWeight.size(); ++i) {
        weights[bytesByWeight[i]] = static_cast<std::uint8_t>(i + 1);
    }
    return weights;
}

} // namespace

CodePage::CodePage(const char* name) {
    Converter converter(name);
    for (std::size_t byte = 0; byte < codes_.size(); ++byte) {
        const auto value = static_cast<unsigned char>(byte);
        codes_[byte] = converter.decode(value).value_or(value);
        upper_[byte] = lower_[byte] = value;
    }
    for (std::size_t byte = 0; byte < codes_.size(); ++byte) {
        const char32_t letter = smallLetter(codes_[byte]);
        if (letter == codes_[byte]) {
            continue;
        }
        if (const auto other = encode(letter)) {
            lower_[byte] = *other;
            upper_[*other] = static_cast<unsigned char>(byte);
        }
    }
}

const CodePage& CodePage::windows1252() {
    static const CodePage page("CP1252");
    return page;
}

const CodePage& CodePage::ofDriver(std::uint8_t languageDriver) {
    switch (languageDriver) {
    case 0x01:
    case 0x1B:
    case 0x18: {
        static const CodePage page("CP437");
        return page;
    }
    case 0x02:
    case 0x37:
    case 0x14: {
        static const CodePage page("CP850");
        return page;
    }
    case 0xC8: {
        static const CodePage page("CP1250");
        return page;
    }
    default:
        return windows1252();
    }
}

std::string CodePage::toUtf8(std::string_view bytes) const {
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        appendUtf8(text, codes_[static_cast<unsigned char>(c)]);
    }
    return text;
}

std::optional<unsigned char> CodePage::encode(char32_t code) const {
    if (code < codes_.size() && codes_[code] == code) {
        return static_cast<unsigned char>(code);
    }
    for (std::size_t byte = 0x80; byte < codes_.size(); ++byte) {
        if (codes_[byte] == code) {
            return static_cast<unsigned char>(byte);
        }
    }
    return std::nullopt;
}

std::optional<std::string> CodePage::fromUtf8(std::string_view text) const {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const auto code = takeUtf8(text);
        const auto byte = code ? encode(*code) : std::nullopt;
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(*byte));
    }
    return bytes;
}

bool CodePage::isLetter(unsigned char byte) const {
    const char32_t code = codes_[byte];
    const auto within = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    return within(U'A', U'Z') || within(U'a', U'z') || code == 0xAA || code == 0xB5 || code == 0xBA ||
           (within(0xC0, 0x17F) && code != 0xD7 && code != 0xF7) || code == 0x192;
}

const std::array<std::uint8_t, 256>& collationWeights() {
    static constexpr std::array<std::uint8_t, 256> weights = weightsByByte();
    return weights;
}

bool driverCollates(std::uint8_t languageDriver) {
    return languageDriver == static_cast<std::uint8_t>(LanguageDriver::AnsiWestEurope) ||
           languageDriver == static_cast<std::uint8_t>(LanguageDriver::AnsiSpanish);
}

bool driverOrderIsUnknown(std::uint8_t languageDriver) {
    return languageDriver == 0x14 || languageDriver == 0x18;
}

} // namespace dbase
