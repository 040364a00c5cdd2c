// Whole official files, with lines that are not understood.
#include "directory/FileReading.h"

#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>

#include "directory/RecordReading.h"
#include "support/TemporaryFolder.h"
#include "tools/edition/OfficialLines.h"

namespace ambrel::directory {
namespace {

const std::string good =
    edition::lineOf({.place = 28079, .street = 5, .postalCode = 28001, .first = 1, .last = 9}) + "\r\n";
const std::string bad =
    edition::lineOf({.place = 28079, .street = 5, .postalCode = 0, .first = 1, .last = 9}) + "\r\n";

Refusal readStretch(const FixedLine& line, std::uint64_t) {
    StretchLine stretch;
    return read(line, stretch);
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

class FileReadingTest : public ::testing::Test {
protected:
    OfficialFile file(const std::string& text, const std::string& name = "TRAM") {
        return officialFiles(folder.write(name, text)).front();
    }
    std::string failureOf(const std::string& text, FileKind wanted) {
        try {
            static_cast<void>(layoutOf(file(text, "datos"), wanted));
        } catch (const loading::Failure& failure) {
            return failure.what();
        }
        return "";
    }
    TemporaryFolder folder;
};

TEST_F(FileReadingTest, BadLinesAreCountedWithNumberAndReason) {
    const OfficialFile tram = file(good + bad + "\r\n" + good + "resto\r\n");
    const ReadCounts counts = readLines(tram, readStretch);
    EXPECT_EQ(counts.lines, 4U);
    EXPECT_EQ(counts.badCount, 2U);
    EXPECT_EQ(badLinesText(tram, counts), tram.name + ": línea 2: no tiene un código postal\n" + tram.name +
                                              ": línea 5: no empieza por una provincia y un municipio");
}

TEST_F(FileReadingTest, ManyBadLinesAreCountedAndTheFirstOnesKept) {
    const OfficialFile tram = file(repeated(bad, 250));
    const ReadCounts counts = readLines(tram, readStretch);
    EXPECT_EQ(counts.badCount, 250U);
    EXPECT_EQ(counts.bad.size(), ReadCounts::mostKept);
    EXPECT_NE(badLinesText(tram, counts).find(tram.name + ": y 150 líneas más que no se entienden"),
              std::string::npos);
}

TEST_F(FileReadingTest, OneBadLineOfAHundredIsNotTooMany) {
    EXPECT_FALSE(readLines(file(repeated(good, 99) + bad), readStretch).hasTooManyBad());
    EXPECT_TRUE(readLines(file(repeated(good, 98) + bad), readStretch).hasTooManyBad());
}

TEST_F(FileReadingTest, ALineThatIsTooLongIsABadLine) {
    const ReadCounts counts = readLines(file(std::string(100000, '1') + "\n" + good), readStretch);
    ASSERT_EQ(counts.bad.size(), 1U);
    EXPECT_EQ(counts.bad[0].reason, "la línea es demasiado larga");
}

TEST_F(FileReadingTest, AThreadOfItsOwnUnderstandsTheSameLines) {
    constexpr std::size_t groups = 400, goodOnes = 100; // more than all blocks hold
    const std::string named = edition::lineOf({.place = 28079,
                                               .street = 5,
                                               .postalCode = 28013,
                                               .first = 1,
                                               .last = 9,
                                               .streetName = "MAYOR"}) +
                              "\r\n";
    const std::string group = repeated(named, goodOnes) + bad + "\r\n" + std::string(17000, '1') + "\n";
    const OfficialFile tram = file(repeated(group, groups));
    const ReadCounts wanted = readLines(tram, readStretch);
    std::uint64_t understood = 0, last = 0;
    const ReadCounts counts = readRecords<StretchLine>(
        tram, [](const FixedLine& line, StretchLine& stretch) { return read(line, stretch); },
        [&](const StretchLine& stretch, std::uint64_t number) -> Refusal {
            EXPECT_EQ(stretch.postalCode, 28013U);
            EXPECT_EQ(stretch.streetName(), "MAYOR");
            EXPECT_GT(number, last);
            last = number;
            return ++understood % goodOnes == 0 ? "otra razón" : nullptr;
        });
    EXPECT_EQ(understood, goodOnes * groups);
    EXPECT_EQ(counts.lines, wanted.lines);
    EXPECT_EQ(counts.badCount, wanted.badCount + groups);
    EXPECT_EQ(counts.bad[0].number, goodOnes);
    EXPECT_EQ(counts.bad[0].reason, "otra razón");
    EXPECT_EQ(counts.bad[1].reason, wanted.bad[0].reason);
    EXPECT_EQ(counts.bad[2].reason, wanted.bad[1].reason);
}

TEST_F(FileReadingTest, WhatEndsItHalfwayEndsItsThreadToo) {
    const OfficialFile tram = file(repeated(good, 100'000));
    std::uint64_t seen = 0;
    EXPECT_THROW(static_cast<void>(readRecords<StretchLine>(
                     tram, [](const FixedLine& line, StretchLine& stretch) { return read(line, stretch); },
                     [&](const StretchLine&, std::uint64_t) -> Refusal {
                         if (++seen == 10) {
                             throw std::runtime_error("enough");
                         }
                         return nullptr;
                     })),
                 std::runtime_error);
    EXPECT_EQ(seen, 10U);
}

TEST_F(FileReadingTest, AFileThatIsCutWhileItIsReadIsNotTakenAsWhole) {
    const OfficialFile tram = file(repeated(good, 100'000));
    bool isCut = false;
    try {
        static_cast<void>(readRecords<StretchLine>(
            tram, [](const FixedLine& line, StretchLine& stretch) { return read(line, stretch); },
            [&](const StretchLine&, std::uint64_t) -> Refusal {
                if (!isCut) {
                    std::filesystem::resize_file(tram.path, 5000);
                    isCut = true;
                }
                return nullptr;
            }));
        ADD_FAILURE() << "taken as whole";
    } catch (const loading::Failure& failure) {
        EXPECT_EQ(std::string(failure.what()), tram.path + ": otro programa lo ha cortado mientras se leía");
    }
}

TEST_F(FileReadingTest, AFileOfAnotherKindIsNamed) {
    EXPECT_NE(failureOf(good, FileKind::Streets)
                  .find("tiene la forma de un fichero de tramos, y hace falta uno de vías"),
              std::string::npos);
    EXPECT_NE(failureOf("uno\ndos\n", FileKind::Streets).find("no tiene la forma de ningún fichero"),
              std::string::npos);
    EXPECT_NE(failureOf("", FileKind::Streets).find("está vacío"), std::string::npos);
    EXPECT_EQ(failureOf(good, FileKind::Stretches), "");
}

} // namespace
} // namespace ambrel::directory
