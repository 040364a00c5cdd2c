// Files in other encodings than UTF-8, read as UTF-8.
#include "loading/text_encoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "loading/failure.h"

namespace loading {
namespace {

using std::string_view_literals::operator""sv;

/// Reads a whole text, which its source delivers in pieces of this size.
std::string read(std::string_view bytes, TextEncoding encoding, std::size_t pieceSize = 1 << 16) {
    const TextSource inPieces = [bytes, pieceSize](std::span<char> room) mutable {
        const std::size_t size = std::min({room.size(), bytes.size(), pieceSize});
        std::copy_n(bytes.begin(), size, room.begin());
        bytes.remove_prefix(size);
        return size;
    };
    const TextSource source = decoded(inPieces, encoding, "t.csv");
    std::string text;
    char room[7];
    while (const std::size_t got = source(room)) {
        text.append(room, got);
    }
    return text;
}

std::string faultOf(std::string_view bytes, TextEncoding encoding) {
    try {
        return "read: " + read(bytes, encoding);
    } catch (const Failure& failure) {
        return failure.what();
    }
}

TEST(TextEncoding, IsKnownByItsUsualNames) {
    EXPECT_EQ(textEncodingNamed("utf-8"), TextEncoding::Utf8);
    EXPECT_EQ(textEncodingNamed("Windows-1252"), TextEncoding::Windows1252);
    EXPECT_EQ(textEncodingNamed("UTF-16"), TextEncoding::Utf16);
    EXPECT_EQ(textEncodingNamed("latin-9"), std::nullopt);
    EXPECT_EQ(textEncodingNamed(""), std::nullopt);
}

TEST(TextEncoding, Windows1252BecomesUtf8) {
    EXPECT_EQ(read("PE\xD1\xCDSCOLA \x80\r\n", TextEncoding::Windows1252), "PEÑÍSCOLA €\r\n");
    EXPECT_EQ(read("", TextEncoding::Windows1252), "");
}

TEST(TextEncoding, Utf16OfEitherOrderBecomesUtf8) {
    EXPECT_EQ(read("\xFF\xFE\xD1\x00\xAC\x20\x3D\xD8\x00\xDE"sv, TextEncoding::Utf16), "Ñ€\U0001F600");
    EXPECT_EQ(read("\xFE\xFF\x00\xD1\x20\xAC\xD8\x3D\xDE\x00"sv, TextEncoding::Utf16), "Ñ€\U0001F600");
    EXPECT_EQ(read("\xFF\xFE"sv, TextEncoding::Utf16), "");
    EXPECT_EQ(read("", TextEncoding::Utf16), "");
}

TEST(TextEncoding, PiecesOfAnySizeGiveTheSameText) {
    const auto utf16 = "\xFF\xFE\xD1\x00\xAC\x20\x3D\xD8\x00\xDE\x41\x00"sv;
    for (std::size_t size = 1; size <= utf16.size(); ++size) {
        EXPECT_EQ(read(utf16, TextEncoding::Utf16, size), "Ñ€\U0001F600A") << size;
        EXPECT_EQ(read("\xEF\xBB\xBF\xC3\x91", TextEncoding::Utf8, size), "\uFEFFÑ") << size;
    }
}

TEST(TextEncoding, Utf8StaysAsItIs) {
    EXPECT_EQ(read("Ñ\xFF", TextEncoding::Utf8), "Ñ\xFF"); // the code that reads the value reports it
}

TEST(TextEncoding, MarkOfAnotherEncodingIsSaid) {
    EXPECT_EQ(faultOf("\xFF\xFE\x41\x00"sv, TextEncoding::Utf8),
              "t.csv: está en UTF-16; use «--codificacion utf-16»");
    EXPECT_EQ(faultOf("\xFE\xFF\x00\x41"sv, TextEncoding::Windows1252),
              "t.csv: está en UTF-16; use «--codificacion utf-16»");
    EXPECT_EQ(faultOf("\xEF\xBB\xBF"
                      "A",
                      TextEncoding::Windows1252),
              "t.csv: está en UTF-8, no en Windows-1252");
}

TEST(TextEncoding, Utf16WithoutItsMarkIsRefused) {
    EXPECT_EQ(faultOf("A\0"sv, TextEncoding::Utf16), "t.csv: no empieza por la marca de UTF-16");
    EXPECT_EQ(faultOf("C", TextEncoding::Utf16), "t.csv: no empieza por la marca de UTF-16");
}

TEST(TextEncoding, WhatIsNoUtf16IsRefusedWithItsPlace) {
    const std::string text = "t.csv: no es UTF-16 a partir del byte ";
    EXPECT_EQ(faultOf("\xFF\xFE\x41\x00\x42"sv, TextEncoding::Utf16), text + "5");
    EXPECT_EQ(faultOf("\xFF\xFE\x3D\xD8"sv, TextEncoding::Utf16), text + "3");
    EXPECT_EQ(faultOf("\xFF\xFE\x3D\xD8\x41\x00"sv, TextEncoding::Utf16), text + "3");
    EXPECT_EQ(faultOf("\xFF\xFE\x00\xDE\x41\x00"sv, TextEncoding::Utf16), text + "3");
}

} // namespace
} // namespace loading
