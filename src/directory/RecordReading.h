// The records of an official file, taken apart by two threads.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "directory/FileReading.h"
#include "directory/OrderedBlocks.h"
#include "loading/mapped_text.h"

namespace ambrel::directory {

/// Some lines of a file that follow each other.
class LineBlock {
public:
    struct Line {
        std::uint64_t number;  // from 1, in the block
        std::string_view text; // of a line that is not too long
        bool isTooLong;
    };

    /// Lets it be cut later on. `text`: whole lines, which outlive the block.
    void begin(std::string_view text) {
        lines.clear();
        count = 0;
        whole_ = text;
    }
    /// Copies lines until it is full; false if there was none.
    [[nodiscard]] bool copy(LineReader& reader) {
        begin({});
        const std::uint64_t before = reader.number();
        copies_.clear();
        copies_.reserve(size);
        while (copies_.size() + LineReader::maxLength <= size && reader.next()) {
            const std::string_view line = reader.isTooLong() ? std::string_view() : reader.line();
            const std::size_t at = copies_.size();
            copies_.insert(copies_.end(), line.begin(), line.end());
            lines.push_back(
                {reader.number() - before, {copies_.data() + at, line.size()}, reader.isTooLong()});
        }
        count = reader.number() - before;
        return !lines.empty();
    }
    /// Finds the lines of the text, if they were not copied.
    void cut() {
        LineReader reader(whole_);
        while (reader.next()) {
            lines.push_back({reader.number(), reader.line(), reader.isTooLong()});
        }
        count += reader.number();
    }

    static constexpr std::size_t size = std::size_t{1} << 18; // little enough for a processor's cache

    std::vector<Line> lines;
    std::uint64_t count = 0; // of them, empty ones included

private:
    std::string_view whole_;
    std::vector<char> copies_;
};

/// Deals out the lines of a file block by block. Plain files are not copied for that.
class LineDealer {
public:
    /// The file must outlive it. Errors: loading::Failure if it cannot be opened.
    explicit LineDealer(const OfficialFile& file)
        : text_(file.path.empty() ? nullptr : loading::MappedText::open(file.path)) {
        if (!text_) {
            reader_.emplace(file.open());
        }
    }

    /// False at the end. `bytes`: of the file, up to the end of the block.
    [[nodiscard]] bool next(LineBlock& block, std::uint64_t& bytes) {
        if (reader_) {
            const bool isThere = block.copy(*reader_);
            bytes = reader_->bytes();
            return isThere;
        }
        const std::string_view text = text_->text(), rest = text.substr(at_);
        const std::size_t end = rest.find('\n', std::min(LineBlock::size, rest.size()));
        const std::string_view its = rest.substr(0, end == std::string_view::npos ? end : end + 1);
        at_ += its.size();
        bytes = at_;
        text_->reach(at_);
        block.begin(its);
        return !its.empty();
    }
    /// Errors: loading::Failure if another program has cut the file meanwhile.
    void requireWhole() const {
        if (text_) {
            text_->requireWhole();
        }
    }

private:
    std::unique_ptr<loading::MappedText> text_; // or else:
    std::optional<LineReader> reader_;
    std::size_t at_ = 0;
};

/// A block with the records, whose texts are part of the lines.
template<class Record>
struct RecordBlock {
    /// Of a line.
    struct Taken {
        Refusal refusal; // null for a line that is understood
        Record record;
    };

    template<typename Read>
    void takeApart(const Read& read) {
        block.cut();
        records.clear();
        for (const LineBlock::Line& line : block.lines) {
            Taken& taken = records.emplace_back(Taken{lineIsTooLong, {}});
            if (!line.isTooLong) {
                taken.refusal = read(FixedLine(line.text), taken.record);
            }
        }
    }

    LineBlock block;
    std::uint64_t bytesRead = 0; // of the file, up to its end
    std::vector<Taken> records;  // in the order of the lines
};

/// As readLines(), which one thread does by itself in nearly three times as long: `read` takes lines apart in
/// two threads, and may touch nothing but them and its own record; `use` receives the records that were
/// understood, with their numbers, in this one. Each returns why a line is refused, or null.
template<class Record, typename Read, typename Use>
[[nodiscard]] ReadCounts readRecords(const OfficialFile& file, const Read& read, const Use& use,
                                     const ReadingProgress& progress = {}) {
    using Block = RecordBlock<Record>;
    LineDealer dealer(file);
    ReadCounts counts;
    std::uint64_t linesBefore = 0;
    OrderedBlocks<Block> blocks;
    blocks.run([&](Block& block) { return dealer.next(block.block, block.bytesRead); },
               [&](Block& block) { block.takeApart(read); },
               [&](const Block& block) {
                   for (std::size_t i = 0; i < block.records.size(); ++i) {
                       const auto& [refused, record] = block.records[i];
                       const std::uint64_t number = linesBefore + block.block.lines[i].number;
                       const Refusal refusal = refused != nullptr ? refused : use(record, number);
                       if (refusal != nullptr) {
                           counts.addBad(number, refusal);
                       }
                       counts.addLine(block.bytesRead, progress);
                   }
                   linesBefore += block.block.count;
               });
    dealer.requireWhole();
    return counts;
}

} // namespace ambrel::directory
