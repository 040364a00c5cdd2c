// What the fuzz targets share: demands on the code, files that hold bytes, a table tried out.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbase/journal/journal_place.h"

namespace trial {

using Bytes = std::vector<char>;

/// Ends the program, which counts as a finding.
void require(bool holds);

/// A file that lives in memory, with a path for code that opens files by name. Overwritten by each put().
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

/// The bytes of a table and its index, which may be empty for none.
struct TableBytes {
    Bytes records, index;
};

/// A sound table of 100-byte keys and of numbers, with so many rows that were added one by one.
[[nodiscard]] TableBytes soundTable(unsigned rows);

/// A journal that lies in memory; null while there is none.
[[nodiscard]] std::unique_ptr<dbase::JournalPlace> placeOf(std::optional<Bytes>& journal);

/// Opens a table, walks by every tag, seeks, changes where it may, and walks again. A refusal is an answer.
void useTable(const TableBytes& bytes, bool writable, std::optional<Bytes> journal = {});

} // namespace trial
