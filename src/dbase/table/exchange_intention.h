// The written intention of an exchange: which files take which names, in a small text file beside the tables.
// See docs/formats.md.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/system/folders.h"

namespace dbase {

/// Recognises the contents of a file: its size, and the sum of the sums of its blocks. So some of them can be
/// taken out of it.
struct Fingerprint {
    static constexpr std::size_t blockBytes = 512;

    std::uint64_t size = 0, sum = 0;
    bool operator==(const Fingerprint&) const = default;
};
[[nodiscard]] Fingerprint fingerprintOf(const File& file);
/// The sum of some bytes of a file, up to the end of a block or of the file. `offset`: of a block.
[[nodiscard]] std::uint64_t sumOfBlocks(std::uint64_t offset, std::span<const char> bytes);

/// One table of an exchange. Names are those of files in the intention's folder.
struct IntendedTable {
    std::string table, index;
    std::optional<Fingerprint> recordsBefore; // none: there is no table yet
    Fingerprint recordsAfter;                 // or of its patch
    bool hadIndex = false;
    std::optional<std::uint64_t> indexAfter; // its size; none: the new table has no index
    /// Of a table that its patch changes where it is: the records before, without what is changed.
    std::optional<Fingerprint> rest = {};
};

struct Intention {
    std::uint64_t number = 0; // drawn at random
    std::vector<IntendedTable> tables;

    /// The sessions in the stamps of the indexes, by which they are recognised.
    [[nodiscard]] std::uint64_t oldSession() const { return number; }
    [[nodiscard]] std::uint64_t newSession() const { return number + 1; }
    [[nodiscard]] bool names(const std::string& tableFile) const;
};

[[nodiscard]] std::uint64_t newExchangeNumber();
/// Path of the intention in a folder.
[[nodiscard]] std::string intentionFileIn(const std::string& folder);
[[nodiscard]] std::string encodeIntention(const Intention& intention);
/// Nothing for bytes that are not a whole intention.
[[nodiscard]] std::optional<Intention> decodeIntention(std::string_view text);
/// The intention in a file; nothing if it was not written to its end.
[[nodiscard]] std::optional<Intention> readIntention(const File& file);

/// Whether everybody who may have written an intention may write the tables that it names.
[[nodiscard]] bool isTrusted(const File& intention, const Intention& content, const Folders& folders);

} // namespace dbase
