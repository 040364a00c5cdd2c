// The journal of a table: what each change is about to do, written before the records are touched, so that a
// record torn by a power cut, or one that never reached the disk, can be written again.
//
// A header block names the boot of the machine during which the journal was written, and the table to which
// it belongs. Kept entries follow one another; a loose one is overwritten by the next. A journal holds only
// one of the two kinds: when redone after a crash of the machine, kept entries must know every state in which
// the disk may hold a record. Nothing here takes locks: changes are made by the holder of the exclusive
// structure lock. For the bytes see docs/formats.md.
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

/// The table of a journal, as it was when the journal began.
struct JournalOrigin {
    std::uint64_t inode = 0;  // of the .DBF; 0 where file systems keep no lasting numbers
    RecordNumber records = 0; // all of them on the disk
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
    /// Whether it holds changes of other files than those now beside it: a backup was put back. `session`:
    /// that of the index's stamp; none without an index.
    [[nodiscard]] bool isOfOtherFiles(const JournalOrigin& now, std::optional<std::uint64_t> session);
    /// The records that were on the disk when it began, so that none of them can be missing; nothing if the
    /// journal does not say.
    [[nodiscard]] std::optional<RecordNumber> recordsAtBegin();

    /// See JournalPlace.
    [[nodiscard]] std::string objectionToWriting() { return place_->objectionToWriting(); }

    /// Joins the journal of the programs now at work; false if there is none. Until remove(), the caller
    /// keeps others from removing it.
    [[nodiscard]] bool join();
    /// Begins one on the disk, in place of any that is there.
    void begin(const JournalOrigin& origin);
    [[nodiscard]] bool isJoined() const { return isJoined_; }
    /// A random number drawn by begin(), which the index's stamp repeats; 0 in a journal of an earlier
    /// version.
    [[nodiscard]] std::uint64_t session() const { return session_; }
    /// Writes an entry. A kept one is on the disk on return, and stays until restart().
    void add(const JournalEntry& entry, bool isKept);
    /// Takes back the entry that add() wrote last, as far as the medium allows.
    void withdraw() noexcept;
    /// Whether this entry, kept or loose, requires a restart() first.
    [[nodiscard]] bool mustRestartFor(const JournalEntry& entry, bool isKept);
    /// Whether a change since the last restart did not wait for the disk.
    [[nodiscard]] bool hasLooseEntry();
    /// Forgets all entries; their changes must be on the disk.
    void restart(const JournalOrigin& origin);
    /// Removes the file; the table must be on the disk.
    void remove();
    /// Renames it, so that nobody redoes it. Returns its new path.
    std::string setAside();

    /// The kept entries, oldest first.
    [[nodiscard]] std::vector<JournalEntry> keptEntries();
    /// The entry written last, kept or loose.
    [[nodiscard]] std::optional<JournalEntry> lastEntry();

private:
    [[nodiscard]] bool open();
    void close();
    [[nodiscard]] bool reaches(std::uint64_t end) const;
    /// Reads bytes; false if the file ends before them.
    [[nodiscard]] bool look(std::uint64_t offset, std::span<char> bytes) const;
    [[nodiscard]] bool readHeader();
    void writeHeader(const JournalOrigin& origin, std::uint64_t session);
    void catchUp();
    [[nodiscard]] std::vector<char> encode(const JournalEntry& entry, bool isKept) const;
    /// The bytes of a valid entry at an offset; empty if there is none.
    [[nodiscard]] std::vector<char> readAt(std::uint64_t offset, std::uint64_t sequence) const;
    [[nodiscard]] JournalEntry decode(std::span<const char> bytes) const;

    std::unique_ptr<JournalPlace> place_;
    std::unique_ptr<File> file_; // null until needed
    std::uint16_t recordLength_, headerLength_;
    std::string startIdentity_;  // of the boot named in the file
    JournalOrigin origin_;       // as the file has it
    std::uint64_t ownInode_ = 0; // of the journal itself, as recorded in it
    std::uint64_t session_ = 0;
    bool isJoined_ = false;
    mutable std::uint64_t knownSize_ = 0; // only grows while any program is at work
    std::uint64_t generation_ = 0;
    std::uint64_t tail_ = 0;     // offset after the kept entries
    std::uint64_t sequence_ = 0; // number of the next kept entry
    std::uint64_t lastKept_ = 0; // offset; 0: none
    std::uint64_t written_ = 0;  // offset of the entry that withdraw() takes back; 0: none
    bool isSuspect_ = false;     // a sync failed: the contents of the disk are unknown
};

} // namespace dbase
