// Parts of a file of addresses, validated one by one, give together what the whole file gives.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "AddressFileTest.h"
#include "loading/ansi_text.h"
#include "loading/failure.h"

namespace {

using namespace ambrel;
using AddressFile = postal_tests::AddressFileTest;
using Outcome = postal_tests::FileOutcome;

std::string manyRows() {
    std::string text = "\xEF\xBB\xBF"
                       "ID,CALLE,CP,NOTA\r\n";
    for (int i = 0; i < 500; ++i) {
        const std::array<const char*, 5> rows{"Mayor 3,28013,", "\"Gran\r\nVía\",28013,\"dos\r\n\r\nlíneas\"",
                                              "Mayor,28013", "\"Mayor,28013,x", ",,"};
        text += std::to_string(i) + ',' + rows.at(static_cast<std::size_t>(i * i * i % 11 % 5)) + "\r\n";
        text += i % 97 == 0 ? "\r\n" : "";
    }
    return text;
}

TEST_F(AddressFile, PartsTogetherAreTheWhole) {
    const std::string text = manyRows();
    const Outcome whole = validate(text);
    for (const unsigned of : {1U, 2U, 3U, 12U}) {
        std::string together;
        std::vector<std::string> places;
        for (unsigned number = 1; number <= of; ++number) {
            const Outcome part = validate(text, {.part = {number, of}});
            together += part.result;
            std::ranges::copy(part.places, std::back_inserter(places));
        }
        EXPECT_TRUE(together == whole.result) << of;
        EXPECT_EQ(places, whole.places) << "numbers and lines are those of the file";
    }
}

TEST_F(AddressFile, PartsOfUtf16TogetherAreTheWhole) {
    const std::string text = "\xFE\xFF" + loading::utf16FromUtf8(manyRows().substr(3), true);
    std::string together;
    for (unsigned number = 1; number <= 3; ++number) {
        together += validate(text, {.part = {number, 3}}).result;
    }
    EXPECT_TRUE(together == validate(text).result);
}

TEST_F(AddressFile, PartOfSomethingWithoutSizeIsRefused) {
    const std::string text = "CALLE,CP\nMayor,28013\n";
    const AddressFileInput pipe{loading::textSource(text), "entrada", std::nullopt};
    EXPECT_THROW(validate(pipe, {.part = {2, 2}}), loading::Failure);
}

/// What pieces of a file, each with its heading in front, give one after the other.
TEST_F(AddressFile, LinesInPiecesGiveTheSameAsTheWhole) {
    const std::string heading = "ID,CALLE,CP,NOTA\n";
    std::vector<std::string> lines;
    for (int i = 0; i < 40; ++i) {
        const std::array<const char*, 5> rows{"Mayor 3,28013,", "\"Gran \"\"Vía\"\"\",28013,x", "Mayor,28013",
                                              "\"Mayor,28013,x", "Ma\"yor,1,"};
        lines.push_back(std::to_string(i) + ',' + rows.at(static_cast<std::size_t>(i * i * i % 11 % 5)) +
                        '\n');
    }
    std::string text = heading;
    for (const std::string& line : lines) {
        text += line;
    }
    const std::string whole = validate(text, {.writesHeading = false}).result;
    for (const std::size_t size : {3U, 7U, 20U}) {
        std::string together;
        for (std::size_t i = 0; i < lines.size(); i += size) {
            std::string piece = heading;
            for (std::size_t j = i; j < std::min(i + size, lines.size()); ++j) {
                piece += lines[j];
            }
            together += validate(piece, {.writesHeading = false}).result;
        }
        EXPECT_EQ(together, whole) << "pieces of " << size;
    }
}

} // namespace
