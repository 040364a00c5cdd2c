// Decodes Windows-1252 and UTF-16 into UTF-8.
#include "loading/text_encoding.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "dbase/dbf/codepage.h"
#include "loading/failure.h"
#include "loading/utf8.h"

namespace loading {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";

bool isSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xE000; }
bool isFirstSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }

/// A source that reads another one; what was read but not yet delivered is kept as UTF-8.
class Decoder {
public:
    Decoder(TextSource source, TextEncoding encoding, std::string name)
        : source_(std::move(source)), encoding_(encoding), name_(std::move(name)) {}

    std::size_t operator()(std::span<char> room) {
        while (given_ == text_.size() && !isExhausted_) {
            text_.clear();
            given_ = 0;
            read();
        }
        const std::size_t size = std::min(room.size(), text_.size() - given_);
        std::copy_n(text_.begin() + static_cast<std::ptrdiff_t>(given_), size, room.begin());
        given_ += size;
        return size;
    }

private:
    /// Decodes the next bytes of the source. The first ones are held until a mark can be recognised.
    void read() {
        constexpr std::size_t pieceSize = std::size_t{1} << 16;
        const std::size_t kept = bytes_.size();
        bytes_.resize(kept + pieceSize);
        const std::size_t got = source_(std::span(bytes_).subspan(kept));
        bytes_.resize(kept + got);
        isExhausted_ = got == 0;
        if (!hasSeenStart_) {
            if (bytes_.size() < utf8Mark.size() && !isExhausted_) {
                return;
            }
            readMark();
            hasSeenStart_ = true;
        }
        decode();
    }

    void readMark() {
        const std::string_view start(bytes_);
        const bool isLittle = start.starts_with(littleEndianMark);
        const bool isUtf16 = isLittle || start.starts_with(bigEndianMark);
        if (encoding_ == TextEncoding::Utf16 && !start.empty()) {
            if (!isUtf16) {
                fail("no empieza por la marca de UTF-16");
            }
            isLittleEndian_ = isLittle;
            drop(bigEndianMark.size());
        } else if (isUtf16) {
            fail("está en UTF-16; use «--codificacion utf-16»");
        } else if (encoding_ == TextEncoding::Windows1252 && start.starts_with(utf8Mark)) {
            fail("está en UTF-8, no en Windows-1252");
        }
    }

    void decode() {
        switch (encoding_) {
        case TextEncoding::Utf8:
            text_ = std::exchange(bytes_, {});
            break;
        case TextEncoding::Windows1252:
            text_ = dbase::CodePage::windows1252().toUtf8(bytes_);
            bytes_.clear();
            break;
        case TextEncoding::Utf16:
            decodeUtf16();
            break;
        }
    }

    /// Decodes whole characters; the bytes of a partial one wait for the rest.
    void decodeUtf16() {
        std::size_t at = 0;
        while (at + 2 <= bytes_.size()) {
            char32_t code = unit(at);
            std::size_t size = 2;
            if (isFirstSurrogate(code) && at + 4 <= bytes_.size()) {
                const char32_t second = unit(at + 2);
                if (isSurrogate(second) && !isFirstSurrogate(second)) {
                    code = 0x10000 + ((code - 0xD800) << 10) + (second - 0xDC00);
                    size = 4;
                }
            } else if (isFirstSurrogate(code) && !isExhausted_) {
                break;
            }
            if (isSurrogate(code)) {
                failAt(at);
            }
            appendUtf8(text_, code);
            at += size;
        }
        if (isExhausted_ && at < bytes_.size()) {
            failAt(at);
        }
        drop(at);
    }

    [[nodiscard]] char32_t unit(std::size_t at) const {
        const auto low = static_cast<unsigned char>(bytes_[at + (isLittleEndian_ ? 0 : 1)]);
        const auto high = static_cast<unsigned char>(bytes_[at + (isLittleEndian_ ? 1 : 0)]);
        return static_cast<char32_t>(high << 8 | low);
    }

    void drop(std::size_t size) {
        bytes_.erase(0, size);
        dropped_ += size;
    }

    [[noreturn]] void fail(const std::string& text) const { throw Failure(name_ + ": " + text); }
    [[noreturn]] void failAt(std::size_t at) const {
        fail("no es UTF-16 a partir del byte " + std::to_string(dropped_ + at + 1));
    }

    TextSource source_;
    TextEncoding encoding_;
    std::string name_;
    std::string bytes_; // read but not yet decoded
    std::uint64_t dropped_ = 0;
    std::string text_;
    std::size_t given_ = 0; // of the text
    bool hasSeenStart_ = false, isExhausted_ = false, isLittleEndian_ = false;
};

} // namespace

std::optional<TextEncoding> textEncodingNamed(std::string_view name) {
    std::string small(name);
    std::ranges::transform(small, small.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (small == "utf-8" || small == "utf8") {
        return TextEncoding::Utf8;
    }
    if (small == "windows-1252" || small == "cp1252") {
        return TextEncoding::Windows1252;
    }
    if (small == "utf-16" || small == "utf16") {
        return TextEncoding::Utf16;
    }
    return std::nullopt;
}

TextSource decoded(TextSource source, TextEncoding encoding, const std::string& name) {
    return Decoder(std::move(source), encoding, name);
}

} // namespace loading
