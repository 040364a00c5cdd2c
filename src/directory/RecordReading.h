// The records of an official file, read and taken apart by threads of their own.
#pragma once

#include <string_view>
#include <vector>

#include "directory/BlockRelay.h"
#include "directory/FileReading.h"

namespace ambrel::directory {

/// A copy of some lines that follow each other.
class LineBlock {
public:
    struct Line {
        std::uint64_t number;
        std::string_view text; // of a line that is not too long
        bool isTooLong;
    };

    void clear() {
        lines.clear();
        text_.clear();
        text_.reserve(size);
    }
    [[nodiscard]] bool hasRoom() const { return text_.size() + LineReader::maxLength <= size; }
    /// The present line. Only while it has room: what it holds must stay where it is.
    void add(const LineReader& reader) {
        const std::string_view line = reader.isTooLong() ? std::string_view() : reader.line();
        const std::size_t at = text_.size();
        text_.insert(text_.end(), line.begin(), line.end());
        lines.push_back({reader.number(), {text_.data() + at, line.size()}, reader.isTooLong()});
        bytesRead = reader.bytes();
    }

    std::vector<Line> lines;
    std::uint64_t bytesRead = 0; // of the file, up to its end

private:
    static constexpr std::size_t size = std::size_t{1} << 18; // little enough for a processor's cache

    std::vector<char> text_;
};

/// The same with the records, whose texts are part of the lines.
template<class Record>
struct RecordBlock {
    /// Of a line.
    struct Taken {
        Refusal refusal; // null for a line that is understood
        Record record;
    };

    /// Lets the other one be filled again.
    template<typename Read>
    void takeApart(LineBlock& other, const Read& read) {
        std::swap(block, other);
        records.clear();
        for (const LineBlock::Line& line : block.lines) {
            Taken& taken = records.emplace_back(Taken{lineIsTooLong, {}});
            if (!line.isTooLong) {
                taken.refusal = read(FixedLine(line.text), taken.record);
            }
        }
    }

    LineBlock block;
    std::vector<Taken> records; // in the order of the lines
};

/// Has the lines of a file copied block by block.
inline void relayLines(const OfficialFile& file, BlockRelay<LineBlock>& relay) {
    LineBlock* block = &relay.toFill();
    block->clear();
    forEachLine(file, [&](const LineReader& reader) {
        if (!block->hasRoom()) {
            relay.passOn();
            block = &relay.toFill();
            block->clear();
        }
        block->add(reader);
    });
    relay.passOn();
    relay.end();
}

/// As readLines(), which one thread does by itself in nearly three times as long: another one reads the
/// lines, and a third one has `read` take them apart, which may touch nothing but them and its own record;
/// `use` receives the records that were understood, with their numbers, in this one. Each returns why a line
/// is refused, or null.
template<class Record, typename Read, typename Use>
[[nodiscard]] ReadCounts readRecords(const OfficialFile& file, const Read& read, const Use& use,
                                     const ReadingProgress& progress = {}) {
    using Block = RecordBlock<Record>;
    BlockRelay<LineBlock> lines;
    BlockRelay<Block> records;
    ReadCounts counts;
    const std::jthread reading = lines.start([&] { relayLines(file, lines); });
    const auto takeApart = [&] {
        lines.useAll([&](LineBlock& block) {
            records.toFill().takeApart(block, read);
            records.passOn();
        });
        records.end();
    };
    const std::jthread taking = [&] {
        try {
            return records.start(takeApart);
        } catch (...) {
            lines.fail(std::current_exception()); // nobody empties it
            throw;
        }
    }();
    records.useAll([&](const Block& block) {
        for (std::size_t i = 0; i < block.records.size(); ++i) {
            const auto& [refused, record] = block.records[i];
            const std::uint64_t number = block.block.lines[i].number;
            const Refusal refusal = refused != nullptr ? refused : use(record, number);
            if (refusal != nullptr) {
                counts.addBad(number, refusal);
            }
            counts.addLine(block.block.bytesRead, progress);
        }
    });
    return counts;
}

} // namespace ambrel::directory
