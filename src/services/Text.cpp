// Windows-1252 and QString.
#include "services/Text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "dbase/dbf/codepage.h"

namespace ambrel {
namespace {

const dbase::CodePage& page() { return dbase::CodePage::windows1252(); }

/// Plain forms of letters whose stroke is part of them, so that they do not decompose.
char32_t withoutStroke(char32_t letter) {
    static constexpr std::array<std::pair<char32_t, char32_t>, 5> letters{
        {{U'Ł', U'L'}, {U'ł', U'l'}, {U'Đ', U'D'}, {U'đ', U'd'}, {U'ı', U'i'}}};
    for (const auto& [stroked, plain] : letters) {
        if (stroked == letter) {
            return plain;
        }
    }
    return letter;
}

/// Composing letters and marks takes time quadratic in a run of marks, so a text is composed in pieces. A
/// letter stays together with its marks, unless it has dozens of them.
qsizetype pieceEnd(const QString& text, qsizetype begin) {
    constexpr qsizetype longest = 64;
    if (text.size() - begin <= longest) {
        return text.size();
    }
    qsizetype end = begin + longest;
    while (end > begin + 1 && (text[end].isMark() || text[end].isLowSurrogate())) {
        --end;
    }
    return end > begin + 1 ? end : begin + longest;
}

void appendNearest(std::string& bytes, char32_t character) {
    if (const auto byte = page().encode(withoutStroke(character))) {
        bytes.push_back(static_cast<char>(*byte));
        return;
    }
    const std::size_t before = bytes.size();
    const QString parts = QString::fromUcs4(&character, 1).normalized(QString::NormalizationForm_KD);
    for (const QChar part : parts) {
        if (const auto byte = page().encode(part.unicode()); byte && !part.isMark()) {
            bytes.push_back(static_cast<char>(*byte));
        }
    }
    if (bytes.size() == before) {
        bytes.push_back('?');
    }
}

} // namespace

QString fromWindows1252(std::string_view bytes) {
    const dbase::CodePage& windows = page();
    QString text(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
    std::ranges::transform(bytes, text.data(), [&](char c) {
        return QChar(static_cast<char16_t>(windows.decode(static_cast<unsigned char>(c))));
    });
    return text;
}

std::optional<std::string> toWindows1252(const QString& text) {
    const dbase::CodePage& windows = page();
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.size()));
    for (const QChar character : text) {
        const auto byte = windows.encode(character.unicode());
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(*byte));
    }
    return bytes;
}

std::string toNearestWindows1252(const QString& text) {
    std::string bytes;
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        end = pieceEnd(text, begin);
        const QString piece = text.sliced(begin, end - begin).normalized(QString::NormalizationForm_C);
        for (const char32_t character : piece.toStdU32String()) {
            appendNearest(bytes, character);
        }
    }
    return bytes;
}

bool losesCharacters(const QString& text) {
    return std::ranges::count(toNearestWindows1252(text), '?') > text.count(QLatin1Char('?'));
}

} // namespace ambrel
