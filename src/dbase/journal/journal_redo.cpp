// Rewrites records from the entries of a journal.
#include "dbase/journal/journal_redo.h"

#include <algorithm>
#include <map>
#include <optional>

namespace dbase {

namespace {

/// The states of a record, oldest first.
struct History {
    bool isNew = false; // nothing preceded the first state
    std::vector<std::span<const char>> states;
};

using Histories = std::map<RecordNumber, History>;

Histories gather(const std::vector<JournalEntry>& entries, std::size_t recordLength) {
    Histories histories;
    for (const JournalEntry& entry : entries) {
        for (const RecordRun& run : entry.runs) {
            for (RecordNumber row = 0; row < run.rows; ++row) {
                History& history = histories[run.first + row];
                const std::size_t at = row * recordLength;
                if (run.before.empty()) { // a new row, perhaps in place of one taken back
                    history = {.isNew = true, .states = {}};
                } else if (history.states.empty()) {
                    history.states.push_back(std::span(run.before).subspan(at, recordLength));
                }
                history.states.push_back(std::span(run.after).subspan(at, recordLength));
            }
        }
    }
    return histories;
}

// The stored bytes, zeros beyond the end of the file.
std::vector<char> storedBytes(const TableFile& records, RecordNumber number) {
    std::vector<char> bytes(records.schema().recordLength);
    const std::uint64_t offset = records.offsetOf(number), size = records.file().size();
    if (offset < size) {
        records.file().read(offset, std::span(bytes).first(static_cast<std::size_t>(
                                        std::min<std::uint64_t>(bytes.size(), size - offset))));
    }
    return bytes;
}

// Whether each byte is from one of the states, as after a write cut short anywhere.
bool isMixture(std::span<const char> stored, const History& history) {
    for (std::size_t at = 0; at < stored.size(); ++at) {
        const char byte = stored[at];
        const bool neverArrived = history.isNew && (byte == '\0' || (at == 0 && byte == endMark));
        if (!neverArrived && std::ranges::none_of(history.states, [&](std::span<const char> state) {
                return state[at] == byte;
            })) {
            return false;
        }
    }
    return true;
}

// Whether nothing of the record has arrived, or part of the blank row that an earlier recovery wrote instead.
bool isHole(std::span<const char> bytes) {
    const char mark = bytes.front();
    return mark == '\0' || mark == endMark ||
           (mark == deletedMark && std::ranges::find(bytes, '\0') != bytes.end() &&
            std::ranges::all_of(bytes.subspan(1), [](char c) { return c == ' ' || c == '\0'; }));
}

} // namespace

void redo(TableFile& records, const std::vector<JournalEntry>& entries) {
    const Histories histories = gather(entries, records.schema().recordLength);
    records.forgetSize();
    std::uint32_t count = records.recordCount();
    for (const auto& [number, history] : histories) {
        const std::span<const char> wanted = history.states.back();
        if (number > count) {
            const bool fits = records.offsetOf(number) + wanted.size() + 1 < maxFileSize;
            if (history.isNew && number == count + 1 && fits) { // we never add any other number
                records.overwrite(number, wanted);
                count = number;
            }
            continue;
        }
        const std::vector<char> stored = storedBytes(records, number);
        if (!std::ranges::equal(stored, wanted) && isMixture(stored, history)) {
            records.overwrite(number, wanted);
        }
    }
    if (count != records.announcedCount()) {
        records.setCount(count);
        records.cutTail(count);
    }
    records.forgetSize();
}

void redoUnfinished(TableFile& records, Journal& journal, const UpdateStamp& left, NewRows newRows) {
    std::optional<JournalEntry> last = left.inUpdate ? journal.lastEntry() : std::nullopt;
    if (!last || last->counter != left.counter) {
        return;
    }
    if (newRows == NewRows::Leave) {
        std::erase_if(last->runs, [](const RecordRun& run) { return run.before.empty(); });
    }
    redo(records, {*std::move(last)});
}

void fillHoles(TableFile& records) {
    const std::uint32_t count = records.recordCount();
    std::vector<char> blank(records.schema().recordLength, ' ');
    blank.front() = deletedMark;
    for (RecordNumber number = 1; number <= count; ++number) {
        if (isHole(records.record(number).bytes)) {
            records.overwrite(number, blank);
        }
    }
}

} // namespace dbase
