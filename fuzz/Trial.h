// What the fuzz targets share: requirements on the code, files that hold bytes, the use of a table.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/journal/journal_place.h"
#include "dbase/table/table_definition.h"

namespace trial {

using Bytes = std::vector<char>;

/// Ends the program if false, which counts as a finding.
void require(bool holds);

/// A file in memory, with a path for code that opens files by name. Overwritten by each put().
class NamedBytes {
public:
    NamedBytes();
    ~NamedBytes();
    NamedBytes(const NamedBytes&) = delete;
    NamedBytes& operator=(const NamedBytes&) = delete;

    void put(std::string_view bytes) const;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    int descriptor_;
    std::string path_;
};

/// The bytes of a table and its index; an empty index means none.
struct TableBytes {
    Bytes records, index;
};

/// A sound table with keys of 100 bytes and of numbers, whose rows were added one by one.
[[nodiscard]] TableBytes soundTable(unsigned rows);
/// The same with tags of every kind: with a condition, unique, of days, of several columns, collated.
[[nodiscard]] TableBytes tableOfAllTags(unsigned rows);

/// The records of a new table, of which there are none.
[[nodiscard]] Bytes emptyTable(const dbase::TableDefinition& definition);

/// A journal kept in memory; null while there is none.
[[nodiscard]] std::unique_ptr<dbase::JournalPlace> placeOf(std::optional<Bytes>& journal);

/// Opens a table, walks every tag, seeks, changes where allowed, and walks again. A refusal is a valid
/// answer.
void useTable(const TableBytes& bytes, bool writable, std::optional<Bytes> journal = {});

} // namespace trial
