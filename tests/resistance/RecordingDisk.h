// A disk that logs everything done to the files of a table, and the contents it may have when the power fails
// somewhere in that log.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <vector>

#include "CachedFile.h"
#include "dbase/support/StoredTable.h"

namespace dbase::test {

enum class DiskFile { Records, Index, Journal };

struct DiskEvent {
    enum class Kind { Write, Resize, Sync, Create, Remove, Acknowledge };

    Kind kind;
    DiskFile file = DiskFile::Records;
    std::uint64_t offset = 0; // of a write; the size of a resize; the number of acknowledged steps
    Bytes bytes = {};
};

using DiskLog = std::vector<DiskEvent>;

/// The contents of the disk.
struct DiskImage {
    Bytes records, index;
    std::optional<Bytes> journal;

    [[nodiscard]] static DiskImage of(const MemoryTable& stored);
    [[nodiscard]] MemoryTable asTable() const;

    void apply(const DiskEvent& event);
    /// A write of which only some sectors of the file arrive: those for which `arrives` is true, counted from
    /// the first that it touches.
    void applyTorn(const DiskEvent& write, const std::vector<bool>& arrives);

private:
    [[nodiscard]] Bytes& contentOf(DiskFile file);
};

/// Number of sectors of its file that a write touches.
[[nodiscard]] std::size_t sectorsOf(const DiskEvent& write);

/// The table of an image, opened so that everything done to its files is logged.
[[nodiscard]] std::unique_ptr<Table> openRecorded(const MemoryTable& stored,
                                                  const std::shared_ptr<DiskLog>& log);

/// Adds a row as another program does: without journal, index, or waiting for the disk.
void appendRecorded(const MemoryTable& stored, std::span<const char> record,
                    const std::shared_ptr<DiskLog>& log);

/// Creates the two files of a table, so far empty, and logs it.
void createRecorded(const MemoryTable& stored, const TableDefinition& definition,
                    const std::shared_ptr<DiskLog>& log);

/// A disk with a cache: writes since the last sync of a file may have arrived or not, sector by sector, in
/// any order, and independently of the file's growth.
class CachingDisk {
public:
    explicit CachingDisk(DiskImage image);

    void apply(const DiskEvent& event);
    /// The contents left if the power fails now.
    [[nodiscard]] DiskImage survivor(std::mt19937& random) const;

private:
    [[nodiscard]] CachedFile& of(DiskFile file);

    CachedFile records_, index_;
    std::optional<CachedFile> journal_;
    bool isJournalRemoved_ = false; // the folder has not been synced yet
};

} // namespace dbase::test
