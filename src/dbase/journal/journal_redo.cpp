// Rewrites records from the entries of a journal.
#include "dbase/journal/journal_redo.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace dbase {

namespace {

/// A gap of lost rows that is filled with blank ones at most: far more than other programs add between two
/// waits of the system for its disk, and little enough for a forged journal to do no harm.
constexpr std::uint64_t largestGap = std::uint64_t{64} << 20;

/// The states of a record, oldest first.
struct History {
    bool mayBeMissing = false; // the disk may have none of them
    std::vector<std::span<const char>> states;
};

using Histories = std::map<RecordNumber, History>;

Histories gather(const std::vector<JournalEntry>& entries, std::size_t recordLength, RecordNumber known) {
    Histories histories;
    for (const JournalEntry& entry : entries) {
        for (const RecordRun& run : entry.runs) {
            for (RecordNumber row = 0; row < run.rows; ++row) {
                History& history = histories[run.first + row];
                const std::size_t at = row * recordLength;
                if (run.before.empty()) { // a new row, perhaps in place of one taken back
                    history = {.mayBeMissing = true, .states = {}};
                } else if (history.states.empty()) {
                    history.mayBeMissing = run.first + row > known;
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
        const bool neverArrived = history.mayBeMissing && (byte == '\0' || (at == 0 && byte == endMark));
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

// Whether both differ in their deletion mark at most.
bool isSameRow(std::span<const char> one, std::span<const char> other) {
    return std::ranges::equal(one.subspan(1), other.subspan(1));
}

// Writes one record back if its bytes allow it.
void redoStored(TableFile& records, RecordNumber number, const History& history, NotRedone& rest) {
    const std::span<const char> wanted = history.states.back();
    const std::vector<char> stored = storedBytes(records, number);
    if (std::ranges::equal(stored, wanted)) {
        return;
    }
    if (isMixture(stored, history)) {
        records.overwrite(number, wanted);
    } else if (!history.mayBeMissing) {
        rest.isChanged = true;
    } else if (wanted.front() != deletedMark && !isSameRow(stored, wanted)) { // else nobody misses it
        rest.displaced.emplace_back(wanted.begin(), wanted.end());
    }
}

} // namespace

NotRedone redo(TableFile& records, const std::vector<JournalEntry>& entries, RecordNumber known) {
    const std::size_t length = records.schema().recordLength;
    const Histories histories = gather(entries, length, known);
    NotRedone rest;
    records.forgetSize();
    std::uint32_t count = records.recordCount();
    const std::uint64_t last = std::uint64_t{count} + histories.size() + largestGap / length;
    for (const auto& [number, history] : histories) {
        const std::span<const char> wanted = history.states.back();
        if (number <= count) {
            redoStored(records, number, history, rest);
        } else if (!history.mayBeMissing) {
            rest.isChanged = true; // the table has been cut
        } else if (number <= last && records.offsetOf(number) + length + 1 < maxFileSize) {
            records.overwrite(number, wanted);
            count = number;
        } else if (wanted.front() != deletedMark) {
            rest.displaced.emplace_back(wanted.begin(), wanted.end());
        }
    }
    if (count != records.announcedCount()) {
        records.setCount(count);
        records.cutTail(count);
    }
    records.forgetSize();
    return rest;
}

// Nobody was given the number of such a row, so that one after a gap has nothing to return to.
void redoUnfinished(TableFile& records, Journal& journal, const UpdateStamp& left, NewRows newRows) {
    std::optional<JournalEntry> last = left.inUpdate ? journal.lastEntry() : std::nullopt;
    if (!last || last->counter != left.counter) {
        return;
    }
    records.forgetSize();
    const RecordNumber next = records.recordCount() + 1;
    std::erase_if(last->runs, [&](const RecordRun& run) {
        return run.first > next || (newRows == NewRows::Leave && run.before.empty());
    });
    static_cast<void>(redo(records, {*std::move(last)}, UINT32_MAX));
}

void fillHoles(TableFile& records, RecordNumber known) {
    const std::uint32_t count = records.recordCount();
    std::vector<char> blank(records.schema().recordLength, ' ');
    blank.front() = deletedMark;
    for (std::uint64_t number = std::uint64_t{known} + 1; number <= count; ++number) {
        const auto record = static_cast<RecordNumber>(number);
        if (isHole(records.record(record).bytes)) {
            records.overwrite(record, blank);
        }
    }
}

std::vector<std::vector<char>> rowsMissingFrom(const TableFile& records, std::vector<std::vector<char>> rows,
                                               const Column& column) {
    const auto keyOf = [&](std::span<const char> row) {
        return std::string_view(row.data() + column.offset, column.width);
    };
    std::set<std::string, std::less<>> missing;
    for (const std::vector<char>& row : rows) {
        missing.emplace(keyOf(row));
    }
    const RecordNumber count = records.recordCount();
    for (RecordNumber number = 1; number <= count && !missing.empty(); ++number) {
        const std::span<const char> record = records.record(number).bytes;
        if (record.front() != deletedMark) {
            if (const auto found = missing.find(keyOf(record)); found != missing.end()) {
                missing.erase(found);
            }
        }
    }
    std::set<std::vector<char>> seen;
    std::erase_if(rows, [&](const std::vector<char>& row) {
        return !missing.contains(keyOf(row)) || !seen.insert(row).second;
    });
    return rows;
}

} // namespace dbase
