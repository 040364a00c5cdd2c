// The lines of an undo file, as values and as text. docs/formats.md describes the format.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"

namespace loading {

enum class UndoKind {
    Change,
    Addition,
    Deletion,
    Unmade, // the last entry of this record was not carried out after all
};

/// A table of an undo file.
struct UndoTable {
    std::string path;
    dbase::Schema schema;         // columns, code page and record length; nothing else is known
    std::vector<std::size_t> key; // positions of the columns that identify a row; empty if none do
    /// Whether a row is put back only if all of it is as it was left, not only the columns that changed.
    bool isOfWholeRows = false;
    /// An earlier table, also of whole rows: one of its rows stays if a row of this one stays that has the
    /// values of its key. The columns of that key here are `tie`.
    std::optional<std::size_t> companionOf = {};
    std::vector<std::size_t> tie = {};
};

/// What was done to one row. Records are complete and live, whatever their first byte.
struct UndoEntry {
    UndoKind kind = UndoKind::Change;
    std::size_t table = 0;          // from 0, in the order of the file
    dbase::RecordNumber number = 0; // 0: not known when the line was written
    std::vector<char> before = {};  // empty for an addition
    std::vector<char> after = {};   // empty for a deletion
};

/// The beginning of an undo file's first line, whatever its version.
inline constexpr std::string_view undoSignature = "AMBREL DESHACER ";

/// Write lines, with their checksum and line end. Texts are UTF-8.
[[nodiscard]] std::string undoHeading(std::string_view date, std::string_view order);
[[nodiscard]] std::string undoLine(const UndoTable& table, std::size_t position);
[[nodiscard]] std::string undoLine(const UndoTable& table, const UndoEntry& entry);
[[nodiscard]] std::string undoEnd(std::uint64_t entries);

/// The values of a line, without its checksum; empty if the checksum is missing or another one. `line`:
/// without its line end.
[[nodiscard]] std::vector<std::string_view> undoValues(std::string_view line);

/// Read the values of a line; null for those of another kind of line, or values that make no sense.
[[nodiscard]] bool isUndoHeading(std::span<const std::string_view> values);
/// `earlier`: the tables of the file so far.
[[nodiscard]] std::optional<UndoTable> readUndoTable(std::span<const std::string_view> values,
                                                     std::span<const UndoTable> earlier);
/// Makes a table the companion of an earlier one; false if it lacks columns of that one's key.
[[nodiscard]] bool makeCompanion(UndoTable& table, std::span<const UndoTable> earlier,
                                 std::size_t companionOf);
/// Kind, table and number alone.
[[nodiscard]] std::optional<UndoEntry> readUndoHead(std::span<const std::string_view> values);
/// The number of entries before the end.
[[nodiscard]] std::optional<std::uint64_t> readUndoEnd(std::span<const std::string_view> values);
[[nodiscard]] std::optional<UndoEntry> readUndoEntry(std::span<const std::string_view> values,
                                                     const UndoTable& table);

/// The text of an escaped value, such as the order in the heading.
[[nodiscard]] std::optional<std::string> undoText(std::string_view value);

/// Whether two records agree in one column, or in all of them.
[[nodiscard]] bool agree(const dbase::Column& column, std::span<const char> one, std::span<const char> other);
[[nodiscard]] bool agree(std::span<const char> one, std::span<const char> other);

} // namespace loading
