// The records of an official file, taken apart by a thread of its own.
#pragma once

#include <string_view>
#include <vector>

#include "directory/BlockRelay.h"
#include "directory/FileReading.h"

namespace ambrel::directory {

/// Records of some lines that follow each other, with a copy of the lines, which their texts are part of.
template<class Record>
class RecordBlock {
public:
    struct Line {
        std::uint64_t number;
        Refusal refusal; // null for a line that is understood
        Record record;
    };

    void clear() {
        lines_.clear();
        text_.clear();
        text_.reserve(size);
    }
    [[nodiscard]] bool hasRoom() const { return text_.size() + LineReader::maxLength <= size; }
    /// Only while it has room: what it holds must stay where it is.
    template<typename Read>
    void add(std::string_view line, std::uint64_t number, const Read& read) {
        const std::size_t at = text_.size();
        text_.insert(text_.end(), line.begin(), line.end());
        Line& added = lines_.emplace_back(Line{number, nullptr, {}});
        added.refusal = read(FixedLine({text_.data() + at, line.size()}), added.record);
    }
    void addUnread(std::uint64_t number, Refusal refusal) { lines_.push_back({number, refusal, {}}); }
    [[nodiscard]] const std::vector<Line>& lines() const { return lines_; }

    std::uint64_t bytesRead = 0; // of the file, up to its end

private:
    static constexpr std::size_t size = std::size_t{1} << 18; // little enough for a processor's cache

    std::vector<char> text_;
    std::vector<Line> lines_;
};

/// As readLines(): `read` takes lines apart, in another thread, and may touch nothing but them and its own
/// record; `use` receives the records that were understood, with their numbers, in this one. Each returns why
/// a line is refused, or null.
template<class Record, typename Read, typename Use>
[[nodiscard]] ReadCounts readRecords(const OfficialFile& file, const Read& read, const Use& use,
                                     const ReadingProgress& progress = {}) {
    using Block = RecordBlock<Record>;
    BlockRelay<Block> relay;
    ReadCounts counts;
    const std::jthread reader = relay.start([&] {
        Block* block = &relay.toFill();
        block->clear();
        forEachLine(file, [&](const LineReader& lines) {
            if (!block->hasRoom()) {
                relay.passOn();
                block = &relay.toFill();
                block->clear();
            }
            if (lines.isTooLong()) {
                block->addUnread(lines.number(), lineIsTooLong);
            } else {
                block->add(lines.line(), lines.number(), read);
            }
            block->bytesRead = lines.bytes();
        });
        relay.passOn();
        relay.end();
    });
    relay.useAll([&](const Block& block) {
        for (const auto& line : block.lines()) {
            const Refusal refusal = line.refusal != nullptr ? line.refusal : use(line.record, line.number);
            if (refusal != nullptr) {
                counts.addBad(line.number, refusal);
            }
            counts.addLine(block.bytesRead, progress);
        }
    });
    return counts;
}

} // namespace ambrel::directory
