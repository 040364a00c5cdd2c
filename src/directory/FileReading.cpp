// Reading official files, whatever their lines are.
#include "directory/FileReading.h"

#include <algorithm>

#include "dbase/system/counted.h"

namespace ambrel::directory {
namespace {

/// No larger a buffer than the file needs.
std::size_t bufferFor(const OfficialFile& file) {
    return static_cast<std::size_t>(std::min<std::uint64_t>(file.size + 1, LineReader::defaultBufferSize));
}

std::vector<std::string> firstLines(const OfficialFile& file) {
    std::vector<std::string> lines;
    LineReader reader(file.open(), bufferFor(file));
    while (lines.size() < linesToRecognise && reader.next()) {
        lines.emplace_back(reader.isTooLong() ? std::string_view() : reader.line());
    }
    return lines;
}

} // namespace

void ReadCounts::addBad(std::uint64_t number, std::string reason) {
    ++badCount;
    if (bad.size() < mostKept) {
        bad.push_back({number, std::move(reason)});
    }
}

void ReadCounts::addLine(std::uint64_t bytes, const ReadingProgress& progress) {
    constexpr std::uint64_t linesBetweenReports = 16384;
    if (++lines % linesBetweenReports == 0 && progress) {
        progress(lines, bytes);
    }
}

std::optional<Layout> findLayout(const OfficialFile& file) {
    return recognise(file.baseName, firstLines(file));
}

Layout layoutOf(const OfficialFile& file, FileKind wanted) {
    const std::vector<std::string> lines = firstLines(file);
    if (lines.empty()) {
        throw loading::Failure(file.name + ": está vacío");
    }
    const std::optional<Layout> layout = recognise(file.baseName, lines);
    if (!layout) {
        throw loading::Failure(
            file.name + ": no tiene la forma de ningún fichero del callejero (TRAM, VIAS, PSEU, UP, SECC)");
    }
    if (layout->kind != wanted) {
        throw loading::Failure(file.name + ": tiene la forma de un fichero de " + kindName(layout->kind) +
                               ", y hace falta uno de " + kindName(wanted));
    }
    return *layout;
}

void forEachLine(const OfficialFile& file, const std::function<void(const LineReader&)>& use) {
    LineReader reader(file.open(), bufferFor(file));
    while (reader.next()) {
        use(reader);
    }
}

ReadCounts readLines(const OfficialFile& file, const LineUse& use, const ReadingProgress& progress) {
    ReadCounts counts;
    forEachLine(file, [&](const LineReader& reader) {
        const Refusal refusal =
            reader.isTooLong() ? lineIsTooLong : use(FixedLine(reader.line()), reader.number());
        if (refusal != nullptr) {
            counts.addBad(reader.number(), refusal);
        }
        counts.addLine(reader.bytes(), progress);
    });
    return counts;
}

std::string badLinesText(const OfficialFile& file, const ReadCounts& counts) {
    std::string text;
    for (const BadLine& one : counts.bad) {
        text += (text.empty() ? "" : "\n") + file.name + ": línea " + std::to_string(one.number) + ": " +
                one.reason;
    }
    if (counts.badCount > counts.bad.size()) {
        text += '\n' + file.name + ": y " +
                dbase::counted(counts.badCount - counts.bad.size(), "línea más", "líneas más") +
                " que no se entienden";
    }
    return text;
}

} // namespace ambrel::directory
