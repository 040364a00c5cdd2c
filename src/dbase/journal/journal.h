// The journal of a table: what each change is about to do, written before the records are touched, so that a
// record torn by a power cut, or one that never reached the disk, is written again.
//
// A header block names the start of the machine during which the journal was written. Kept entries follow one
// another; a loose one is overwritten by the next. A journal holds the one kind or the other: redone after a
// stop of the machine, kept entries must know every state in which the disk may hold a record. Nothing here
// takes locks: changes are made by the holder of the exclusive structure lock. See docs/formats.md for the
// bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dbase/journal/journal_place.h"
#include "dbase/journal/record_change.h"

namespace dbase {

struct JournalEntry {
    std::uint64_t counter = 0; // of the index while the change is being made; 0 without an index
    std::vector<RecordRun> runs;
};

/// Bytes of records that one change may hold before and after together.
inline constexpr std::size_t largestChange = std::size_t{32} << 20;

class Journal {
public:
    Journal(std::unique_ptr<JournalPlace> place, const Schema& schema);

    /// Whether there is one that no program of this start of the machine has begun.
    [[nodiscard]] bool isOfAnotherStart();
    /// Whether there is one at all.
    [[nodiscard]] bool exists();

    /// Joins the journal of the programs that are at work, or begins one on the disk: true then.
    bool begin();
    /// Writes an entry. One that is kept is on the disk at the return, and stays until restart().
    void add(const JournalEntry& entry, bool isKept);
    /// Takes the entry back that add() wrote last, as far as the medium lets it.
    void withdraw() noexcept;
    /// Whether restart() has to come before this entry, kept or not.
    [[nodiscard]] bool mustRestartFor(const JournalEntry& entry, bool isKept);
    /// Whether records were changed since the last restart by somebody who did not wait for the disk.
    [[nodiscard]] bool hasLooseEntry();
    /// Forgets all entries; what they did must be on the disk.
    void restart();
    /// Removes the file; the table must be on the disk.
    void remove();

    /// The kept entries, oldest first.
    [[nodiscard]] std::vector<JournalEntry> keptEntries();
    /// The entry that was written last, kept or not.
    [[nodiscard]] std::optional<JournalEntry> lastEntry();

private:
    [[nodiscard]] bool join();
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    /// Reads bytes, false where the file ends before.
    [[nodiscard]] bool look(std::uint64_t offset, std::span<char> bytes) const;
    [[nodiscard]] bool readHeader();
    void writeHeader();
    void catchUp();
    [[nodiscard]] std::vector<char> encode(const JournalEntry& entry, bool isKept) const;
    /// The bytes of a sound entry at an offset; empty when there is none.
    [[nodiscard]] std::vector<char> readAt(std::uint64_t offset, std::uint64_t sequence) const;
    [[nodiscard]] JournalEntry decode(std::span<const char> bytes) const;

    std::unique_ptr<JournalPlace> place_;
    std::unique_ptr<File> file_; // null until somebody needs it
    std::uint16_t recordLength_, headerLength_;
    std::string startIdentity_;           // of the machine, as the file says
    mutable std::uint64_t knownSize_ = 0; // it only grows while somebody is at work
    std::uint64_t generation_ = 0;
    std::uint64_t tail_ = 0;     // offset behind the kept entries
    std::uint64_t sequence_ = 0; // number of the next kept entry
    std::uint64_t lastKept_ = 0; // offset; 0: none
    std::uint64_t written_ = 0;  // offset of the entry that withdraw() takes back; 0: none
    bool isSuspect_ = false;     // a sync failed: what the disk holds is not known
};

} // namespace dbase
