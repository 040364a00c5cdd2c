// Lines of any text through a small buffer.
#include "directory/LineReader.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace ambrel::directory {
namespace {

using Lines = std::vector<std::pair<std::uint64_t, std::string>>;

Lines rest(LineReader& reader) {
    Lines lines;
    while (reader.next()) {
        lines.emplace_back(reader.number(), reader.isTooLong() ? "TOO LONG" : std::string(reader.line()));
    }
    return lines;
}

/// All lines with their numbers; neither a source that gives few bytes at a time nor the text as a whole must
/// make a difference.
Lines linesOf(const std::string& text, std::size_t pieceSize = 7) {
    std::string_view left = text;
    LineReader reader(
        [&](std::span<char> room) {
            const std::size_t size = std::min({room.size(), left.size(), pieceSize});
            std::copy_n(left.begin(), size, room.begin());
            left.remove_prefix(size);
            return size;
        },
        1);
    const Lines lines = rest(reader);
    LineReader whole(text);
    EXPECT_EQ(rest(whole), lines);
    return lines;
}

TEST(LineReader, LinesEndInLineFeedWithOrWithoutReturn) {
    EXPECT_EQ(linesOf("uno\r\ndos\ntres\r\n"), (Lines{{1, "uno"}, {2, "dos"}, {3, "tres"}}));
}

TEST(LineReader, TheLastLineNeedsNoEnd) { EXPECT_EQ(linesOf("uno\r\ndos"), (Lines{{1, "uno"}, {2, "dos"}})); }

TEST(LineReader, EmptyLinesAndTheEndSignOfOldFilesAreSkippedButCounted) {
    EXPECT_EQ(linesOf("\r\nuno\r\n\n\r\ndos\r\n\x1A"), (Lines{{2, "uno"}, {5, "dos"}}));
}

TEST(LineReader, AnEmptyTextHasNoLine) { EXPECT_EQ(linesOf(""), Lines()); }

TEST(LineReader, ALineThatIsTooLongIsMarkedAndTheNextOneIsRead) {
    const std::string longest(LineReader::maxLength, 'x');
    EXPECT_EQ(linesOf(longest + "\ndos\n", 1000), (Lines{{1, longest}, {2, "dos"}}));
    for (const std::size_t more : {1U, 2U, 50000U, 1000000U}) {
        const std::string text = "uno\n" + longest + std::string(more, 'y') + "\r\ntres\r\n";
        EXPECT_EQ(linesOf(text, 1000), (Lines{{1, "uno"}, {2, "TOO LONG"}, {3, "tres"}})) << more;
        EXPECT_EQ(linesOf(longest + std::string(more, 'y'), 1000), (Lines{{1, "TOO LONG"}})) << more;
    }
}

TEST(LineReader, BytesReadAreCounted) {
    const std::string_view text = "uno\r\ndos";
    LineReader reader(loading::textSource(text)), whole(text);
    for (LineReader* const each : {&reader, &whole}) {
        EXPECT_EQ(each->bytes(), 0U);
        EXPECT_TRUE(each->next());
        EXPECT_EQ(each->bytes(), 5U);
        EXPECT_TRUE(each->next());
        EXPECT_FALSE(each->next());
        EXPECT_EQ(each->bytes(), 8U);
    }
}

} // namespace
} // namespace ambrel::directory
