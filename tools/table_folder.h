// The folder of tables that a command works on.
#pragma once

#include <string>
#include <vector>

#include "dbase/dataset/dataset.h"

namespace ambcp {

/// Database name of the folder given on the command line.
inline constexpr const char* folderDatabase = "DB";

/// Makes folderDatabase stand for the folder and returns it without trailing slashes. Errors: Failure when
/// there is no such folder.
std::string useFolder(const std::string& folder);

/// The same for questions to MUNICIPI and POSTAL. Errors: also DamagedTable for a truncated one; a missing
/// one is reported by the question.
std::string usePostalTables(const std::string& folder);

/// Path of a table's file. Errors: Failure when it is not there.
[[nodiscard]] std::string requireTable(const std::string& folder, const std::string& table);

/// Paths of all tables in the folder, sorted. Errors: Failure when it cannot be read or has none.
[[nodiscard]] std::vector<std::string> tablesIn(const std::string& folder);

/// The named table, or all tables of the folder when the name is empty.
[[nodiscard]] std::vector<std::string> tablesNamed(const std::string& folder, const std::string& table);

/// The name of a table, as commands take it, from its path.
[[nodiscard]] std::string tableName(const std::string& tableFile);

/// Converts a text of the command line to the code page of an open table. Errors: Failure, naming the text by
/// `what`, for one that the code page cannot hold.
[[nodiscard]] std::string inTablePage(const dbase::Dataset& table, const std::string& text,
                                      const std::string& what);

/// Sets the active tag. Errors: Failure for a tag that the table lacks, listing those it has.
void useTag(dbase::Dataset& table, const std::string& tag);

} // namespace ambcp
