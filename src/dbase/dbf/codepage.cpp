// Code pages, obtained once from the system's converter.
#include "dbase/dbf/codepage.h"

#include <iconv.h>

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

} // namespace dbase
