// The journal of a table: what each change is about to do, written before the records are touched, so that a
// record torn by a power cut, or one that never reached the disk, can be written again.
//
// A header block names the boot of the machine during which the journal was written. Kept entries follow one
// another; a loose one is overwritten by the next. A journal holds only one of the two kinds: when redone
// after a crash of the machine, kept entries must know every state in which the disk may hold a record.
// Nothing here takes locks: changes are made by the holder of the exclusive structure lock. For the bytes see
// docs/formats.md.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dbase/journal/journal_place.h"
#include "dbase/journal/record_change.h"

namespace dbase {

struct JournalEntry {
    std::uint64_t counter = 0; // the index's while the change is being made; 0 without an index
    std::vector<RecordRun> runs;
};

/// Maximum bytes of records, before and after together, in one change.
inline constexpr std::size_t largestChange = std::size_t{32} << 20;

class Journal {
public:
    Journal(std::unique_ptr<JournalPlace> place, const Schema& schema);

    /// Whether a journal exists that was not begun during this boot of the machine.
    [[nodiscard]] bool isOfAnotherStart();
    /// Whether a journal exists at all.
    [[nodiscard]] bool exists();

    /// See JournalPlace.
    [[nodiscard]] std::string objectionToWriting() { return place_->objectionToWriting(); }

    /// Joins the journal of the programs now at work, or begins one on the disk and returns true.
    bool begin();
    /// Writes an entry. A kept one is on the disk on return, and stays until restart().
    void add(const JournalEntry& entry, bool isKept);
    /// Takes back the entry that add() wrote last, as far as the medium allows.
    void withdraw() noexcept;
    /// Whether this entry, kept or loose, requires a restart() first.
    [[nodiscard]] bool mustRestartFor(const JournalEntry& entry, bool isKept);
    /// Whether a change since the last restart did not wait for the disk.
    [[nodiscard]] bool hasLooseEntry();
    /// Forgets all entries; their changes must be on the disk.
    void restart();
    /// Removes the file; the table must be on the disk.
    void remove();

    /// The kept entries, oldest first.
    [[nodiscard]] std::vector<JournalEntry> keptEntries();
    /// The entry written last, kept or loose.
    [[nodiscard]] std::optional<JournalEntry> lastEntry();

private:
    [[nodiscard]] bool join();
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    /// Reads bytes; false if the file ends before them.
    [[nodiscard]] bool look(std::uint64_t offset, std::span<char> bytes) const;
    [[nodiscard]] bool readHeader();
    void writeHeader();
    void catchUp();
    [[nodiscard]] std::vector<char> encode(const JournalEntry& entry, bool isKept) const;
    /// The bytes of a valid entry at an offset; empty if there is none.
    [[nodiscard]] std::vector<char> readAt(std::uint64_t offset, std::uint64_t sequence) const;
    [[nodiscard]] JournalEntry decode(std::span<const char> bytes) const;

    std::unique_ptr<JournalPlace> place_;
    std::unique_ptr<File> file_; // null until needed
    std::uint16_t recordLength_, headerLength_;
    std::string startIdentity_;           // of the boot named in the file
    mutable std::uint64_t knownSize_ = 0; // only grows while any program is at work
    std::uint64_t generation_ = 0;
    std::uint64_t tail_ = 0;     // offset after the kept entries
    std::uint64_t sequence_ = 0; // number of the next kept entry
    std::uint64_t lastKept_ = 0; // offset; 0: none
    std::uint64_t written_ = 0;  // offset of the entry that withdraw() takes back; 0: none
    bool isSuspect_ = false;     // a sync failed: the contents of the disk are unknown
};

} // namespace dbase
