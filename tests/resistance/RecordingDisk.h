// A disk that keeps a log of all that is done to the files of a table, and what may be found on it when the
// current fails somewhere in that log.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "dbase/support/StoredTable.h"

namespace dbase::test {

/// What a disk writes whole or not at all.
inline constexpr std::size_t sectorBytes = 512;

enum class DiskFile { Records, Index, Journal };

struct DiskEvent {
    enum class Kind { Write, Resize, Sync, Create, Remove, Acknowledge };

    Kind kind;
    DiskFile file = DiskFile::Records;
    std::uint64_t offset = 0; // of a write; the size of a resize; how many steps are acknowledged
    Bytes bytes = {};
};

using DiskLog = std::vector<DiskEvent>;

/// What lies on the disk.
struct DiskImage {
    Bytes records, index;
    std::optional<Bytes> journal;

    [[nodiscard]] static DiskImage of(const MemoryTable& stored);
    [[nodiscard]] MemoryTable asTable() const;

    void apply(const DiskEvent& event);
    /// A write of which only some sectors of the file arrive: those for which `arrives` says so, counted from
    /// the first that it touches.
    void applyTorn(const DiskEvent& write, const std::vector<bool>& arrives);

private:
    [[nodiscard]] Bytes& contentOf(DiskFile file);
};

/// How many sectors of its file a write touches.
[[nodiscard]] std::size_t sectorsOf(const DiskEvent& write);

/// The table of an image, opened so that everything done to its files is told to the log.
[[nodiscard]] std::unique_ptr<Table> openRecorded(const MemoryTable& stored,
                                                  const std::shared_ptr<DiskLog>& log);

/// Makes the two files of a table, empty so far, and tells the log.
void createRecorded(const MemoryTable& stored, const TableDefinition& definition,
                    const std::shared_ptr<DiskLog>& log);

/// A disk that has a cache: what was written since the last sync of a file may have arrived or not, sector by
/// sector, in any order; nor need its growth and its bytes arrive together.
class CachingDisk {
public:
    explicit CachingDisk(DiskImage image);

    void apply(const DiskEvent& event);
    /// What is left when the current fails now.
    [[nodiscard]] DiskImage survivor(std::mt19937& random) const;

private:
    struct Cached {
        Bytes onDisk;
        std::vector<DiskEvent> pending;

        [[nodiscard]] Bytes survivor(std::mt19937& random) const;
    };
    [[nodiscard]] Cached& of(DiskFile file);

    Cached records_, index_;
    std::optional<Cached> journal_;
    bool isJournalRemoved_ = false; // the folder is not on the disk yet
};

} // namespace dbase::test
