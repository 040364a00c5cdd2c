// An official file line by line, with what was not understood in it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "directory/LineReader.h"
#include "directory/OfficialFile.h"
#include "directory/Records.h"

namespace ambrel::directory {

/// A line that is not understood.
struct BadLine {
    std::uint64_t number;
    std::string reason; // UTF-8
};

/// Called now and then with the lines and bytes read so far.
using ReadingProgress = std::function<void(std::uint64_t lines, std::uint64_t bytes)>;

/// Counts of a file, and its first bad lines.
struct ReadCounts {
    static constexpr std::size_t mostKept = 100;

    std::uint64_t lines = 0; // bad ones included, empty ones not
    std::uint64_t badCount = 0;
    std::vector<BadLine> bad; // the first of them

    void addBad(std::uint64_t number, std::string reason);
    /// `bytes`: read so far.
    void addLine(std::uint64_t bytes, const ReadingProgress& progress);
    /// Whether more than one line of a hundred is bad, so that the file cannot be trusted.
    [[nodiscard]] bool hasTooManyBad() const { return badCount * 100 > lines; }
};

/// The layout of a file, from its name and first lines; null if none fits. Errors: loading::Failure if it
/// cannot be read.
[[nodiscard]] std::optional<Layout> findLayout(const OfficialFile& file);
/// The same. Errors: also loading::Failure if none fits, or if it is not of the kind that is wanted.
[[nodiscard]] Layout layoutOf(const OfficialFile& file, FileKind wanted);

/// Receives each line of a file that may be understood, with its number; returns why it is not, or null.
using LineUse = std::function<Refusal(const FixedLine& line, std::uint64_t number)>;

/// Reads a file to its end, whatever its lines are. Errors: loading::Failure if it cannot be read; anything
/// the functions throw.
void forEachLine(const OfficialFile& file, const std::function<void(const LineReader&)>& use);
/// The same, with counts. RecordReading.h has a faster one.
[[nodiscard]] ReadCounts readLines(const OfficialFile& file, const LineUse& use,
                                   const ReadingProgress& progress = {});
inline constexpr Refusal lineIsTooLong = "la línea es demasiado larga";

/// All bad lines kept, one a line, with the file's name, and how many more there are. `counts`: with bad
/// lines.
[[nodiscard]] std::string badLinesText(const OfficialFile& file, const ReadCounts& counts);

} // namespace ambrel::directory
