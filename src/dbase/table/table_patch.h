// The changes to a table's two files in a file beside them; see docs/formats.md.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "dbase/system/file.h"
#include "dbase/system/overlay_file.h"
#include "dbase/table/exchange_intention.h"

namespace dbase {

/// May be applied any number of times, over what a cut has left of an earlier time.
class TablePatch {
public:
    /// Writes the changes of both overlays, neither of which was copied, to an empty file.
    static void write(File& to, const OverlayFile& records, const OverlayFile& index);

    /// The patch in a file, which must outlive it; nothing if that holds none.
    [[nodiscard]] static std::optional<TablePatch> in(const File& file);

    /// What the records that it is for are recognised by even while it is applied: the blocks that it leaves
    /// alone. `before`: the sum of all.
    [[nodiscard]] Fingerprint restOf(const Fingerprint& before) const;
    /// The same of records over which it may have been applied in part. Nothing if one of the other blocks is
    /// neither as it was nor as it will be: somebody else has changed it. `present`: the sum of all.
    [[nodiscard]] std::optional<Fingerprint> restAmid(const File& records, const Fingerprint& present) const;

    /// Takes room for both files to grow.
    void reserve(File& records, File& index) const;
    /// What is changed is on the disk on return; a thread may do it for each of the files.
    void applyToRecords(File& records) const;
    /// The index then has the stamp that belongs to its contents, marked as half changed, with this session.
    void applyToIndex(File& index, std::uint64_t session) const;

private:
    explicit TablePatch(const File& file) : file_(&file) {}
    [[nodiscard]] bool read();

    using Numbers = std::span<const OverlayFile::BlockNumber>;

    template<typename Change>
    void apply(File& target, Numbers numbers, std::uint64_t size, const Change& change) const;
    [[nodiscard]] Numbers recordBlocks() const { return std::span(numbers_).first(recordCount_); }
    [[nodiscard]] Numbers indexBlocks() const { return std::span(numbers_).subspan(recordCount_); }
    [[nodiscard]] std::uint64_t placeOf(std::size_t block) const;
    [[nodiscard]] bool isAsItWas(std::size_t block, std::span<const char> present) const;
    [[nodiscard]] bool isAsItWillBe(std::size_t block, std::span<const char> present) const;

    const File* file_;
    std::uint64_t recordsBefore_ = 0, recordsAfter_ = 0, indexAfter_ = 0; // sizes
    std::size_t recordCount_ = 0;                                         // of the records' blocks
    std::vector<OverlayFile::BlockNumber> numbers_; // of the records' blocks, then of the index's
    std::vector<std::uint64_t> sumsBefore_;         // of the records' blocks
};

} // namespace dbase
