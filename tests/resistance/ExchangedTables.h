// Three tables that are exchanged together, of one of which there is none at first. Each exchange has an
// author, who stands in every row.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "dbase/system/folders.h"
#include "dbase/table/table_definition.h"

namespace dbase {
class TableExchange;
}

namespace dbase::test {

inline constexpr std::array exchangedNames{"CALLES", "PUEBLOS", "ORIGEN"};
inline constexpr int noTable = -1;

/// The author of each table, or noTable.
using Authors = std::array<int, exchangedNames.size()>;
inline constexpr Authors authorsBefore{0, 0, noTable};

[[nodiscard]] std::vector<std::string> exchangedFiles(const std::string& folder);
[[nodiscard]] TableDefinition exchangedDefinition(const std::string& name);
/// Creates the first two by author 0.
void makeExchangedTables(const std::string& folder, Folders& folders);
/// Exchanges all three: the first two by revisions, of all rows in new files and of a few where they are, the
/// third one by a load.
void exchangeBy(int author, const std::string& folder, Folders& folders = diskFolders());
/// Creates their new files, and leaves the commit to the caller.
void fillExchange(TableExchange& exchange, int author);

/// Opens all three, first the one of this number, and keeps them open meanwhile. Fails the test for a table
/// with rows of several authors, or tags that do not have all rows. Errors: Error.
[[nodiscard]] Authors authorsIn(const std::string& folder, std::size_t first,
                                Folders& folders = diskFolders());

} // namespace dbase::test
