// The directory in SQLite: the same columns, an index for each of our tags, write-ahead logging.
#pragma once

#include <memory>
#include <string>

#include <sqlite3.h>

#include "postal_rows.h"

namespace bench {

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// The path of the loaded database, created at the first call.
[[nodiscard]] const std::string& sqlitePath();
/// The same rows in a database of SQLite's default kind, with a rollback journal.
[[nodiscard]] const std::string& sqliteRollbackPath();
/// Loads all rows in one transaction and then creates the three indexes, which is SQLite's fastest way.
void loadSqlite(const std::string& path);

[[nodiscard]] Database openSqlite(const std::string& path, const char* synchronous = "OFF",
                                  const char* journal = "WAL");
void execute(sqlite3* database, const char* sql);
[[nodiscard]] Statement prepare(sqlite3* database, const char* sql);
void insertRow(sqlite3_stmt* insert, const PostalRow& row);
inline constexpr const char* insertSql = "INSERT INTO postal VALUES (?,?,?,?,?,?,?,?,?,?,?,?)";
inline constexpr const char* indexSql = "CREATE INDEX via_tag ON postal(provincia,capital,via,tipo_via);"
                                        "CREATE INDEX nombrevia_tag ON postal(provincia,via);"
                                        "CREATE INDEX codigo1_tag ON postal(codigo1);";

} // namespace bench
