// The written intention of an exchange: which files take which names, in a small text file beside the tables.
// See docs/formats.md.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/system/folders.h"

namespace dbase {

/// Recognises the contents of a file.
struct Fingerprint {
    std::uint64_t size = 0, sum = 0;
    bool operator==(const Fingerprint&) const = default;
};
[[nodiscard]] Fingerprint fingerprintOf(const File& file);

/// One table of an exchange. Names are those of files in the intention's folder.
struct IntendedTable {
    std::string table, index;
    std::optional<Fingerprint> recordsBefore; // none: there is no table yet
    Fingerprint recordsAfter;
    bool hadIndex = false;
    std::optional<std::uint64_t> indexAfter; // its size; none: the new table has no index
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
