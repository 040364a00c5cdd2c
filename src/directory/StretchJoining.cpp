// Joins and opens the stretches of a street, side by side.
#include "directory/StretchJoining.h"

#include <algorithm>
#include <tuple>

namespace ambrel::directory {
namespace {

constexpr std::uint16_t lastOdd = 9999, lastEven = 9998;

/// Numbers of one side with one code.
struct Run {
    std::uint32_t postalCode;
    std::uint16_t first, last;
    std::uint32_t line;
    RangeOpening firstOpened = RangeOpening::None, lastOpened = RangeOpening::None;
};
using Runs = std::vector<Run>;

bool precedes(const ObservedStretch& a, const ObservedStretch& b) {
    return std::tie(a.first, a.last, a.postalCode, a.line) < std::tie(b.first, b.last, b.postalCode, b.line);
}

/// `stretches`: in the order of their numbers.
void collectRuns(std::span<const ObservedStretch> stretches, Numbering side, Runs& runs) {
    runs.clear();
    for (const ObservedStretch& one : stretches) {
        if (one.numbering != side) {
            continue;
        }
        if (!runs.empty() && runs.back().postalCode == one.postalCode) {
            runs.back().last = std::max(runs.back().last, one.last);
            runs.back().line = std::min(runs.back().line, one.line);
        } else {
            runs.push_back(
                {.postalCode = one.postalCode, .first = one.first, .last = one.last, .line = one.line});
        }
    }
}

void openEnds(Runs& runs, Numbering side) {
    const std::uint16_t first = side == Numbering::Odd ? 1 : 2,
                        last = side == Numbering::Odd ? lastOdd : lastEven;
    Run& front = runs.front();
    if (front.first != first) {
        front.first = first;
        front.firstOpened = RangeOpening::Ends;
    }
    Run& back = *std::ranges::max_element(runs, {}, &Run::last);
    if (back.last != last) {
        back.last = last;
        back.lastOpened = RangeOpening::Ends;
    }
}

/// Half of the numbers between two runs goes to each; the odd one out to the first.
void closeGaps(Runs& runs) {
    std::size_t furthest = 0; // the run that reaches furthest so far
    for (std::size_t i = 1; i < runs.size(); ++i) {
        Run& before = runs[furthest];
        Run& after = runs[i];
        const int missing = (after.first - before.last) / 2 - 1;
        if (missing > 0) {
            const int toFirst = (missing + 1) / 2;
            before.last = static_cast<std::uint16_t>(before.last + 2 * toFirst);
            before.lastOpened = RangeOpening::Gaps;
            if (after.first != before.last + 2) {
                after.first = static_cast<std::uint16_t>(before.last + 2);
                after.firstOpened = RangeOpening::Gaps;
            }
        }
        furthest = after.last > before.last ? i : furthest;
    }
}

void open(Runs& runs, Numbering side, RangeOpening opening) {
    if (runs.empty() || opening == RangeOpening::None) {
        return;
    }
    if (opening == RangeOpening::Gaps) {
        closeGaps(runs);
    }
    openEnds(runs, side);
}

/// Puts the runs of a side into rows, each beside the other side's of the same place among those of its code.
void place(const Runs& runs, Numbering side, std::vector<JoinedStretch>& rows) {
    const std::size_t at = side == Numbering::Odd ? 0 : 2;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const Run& run = runs[i];
        const auto ordinal = static_cast<std::uint16_t>(
            std::count_if(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(i),
                          [&](const Run& other) { return other.postalCode == run.postalCode; }));
        auto row = std::ranges::find_if(rows, [&](const JoinedStretch& other) {
            return other.postalCode == run.postalCode && other.ordinal == ordinal;
        });
        if (row == rows.end()) {
            rows.push_back({.postalCode = run.postalCode, .ordinal = ordinal, .line = run.line});
            row = rows.end() - 1;
        }
        row->bounds[at] = run.first;
        row->bounds[at + 1] = run.last;
        row->opened[at] = run.firstOpened;
        row->opened[at + 1] = run.lastOpened;
        row->line = std::min(row->line, run.line);
    }
}

bool hasCode(const std::vector<JoinedStretch>& rows, std::uint32_t postalCode) {
    return std::ranges::any_of(rows, [&](const JoinedStretch& row) { return row.postalCode == postalCode; });
}

/// Adds the stretches without numbers whose code has no row yet: open in a street that has no numbers at all.
void placeUnnumbered(std::span<const ObservedStretch> stretches, std::vector<JoinedStretch>& rows) {
    const bool isOpen = rows.empty();
    for (const ObservedStretch& one : stretches) {
        if (one.numbering == Numbering::None && !hasCode(rows, one.postalCode)) {
            rows.push_back({.postalCode = one.postalCode, .line = one.line});
            if (isOpen) {
                rows.back().bounds = {1, lastOdd, 2, lastEven};
            }
        }
    }
}

/// The only row of a street with numbers of one code, which has all numbers of both sides.
void openWholly(JoinedStretch& row) {
    constexpr std::array<std::uint16_t, 4> whole = {1, lastOdd, 2, lastEven};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (row.bounds[i] != whole[i]) {
            row.bounds[i] = whole[i];
            row.opened[i] = RangeOpening::Ends;
        }
    }
}

} // namespace

void joinStretches(std::span<ObservedStretch> stretches, RangeOpening opening,
                   std::vector<JoinedStretch>& rows) {
    std::ranges::sort(stretches, precedes);
    rows.clear();
    Runs runs;
    runs.reserve(stretches.size());
    for (const Numbering side : {Numbering::Odd, Numbering::Even}) {
        collectRuns(stretches, side, runs);
        open(runs, side, opening);
        place(runs, side, rows);
    }
    if (opening != RangeOpening::None && rows.size() == 1) {
        openWholly(rows.front());
    }
    placeUnnumbered(stretches, rows);
    std::ranges::sort(rows, {},
                      [](const JoinedStretch& row) { return std::pair(row.postalCode, row.ordinal); });
}

} // namespace ambrel::directory
