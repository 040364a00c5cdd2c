// Loads and opens the directory in SQLite.
#include "sqlite_postal.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace bench {

void execute(sqlite3* database, const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(std::string(sql) + ": " + sqlite3_errmsg(database));
    }
}

Statement prepare(sqlite3* database, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(std::string(sql) + ": " + sqlite3_errmsg(database));
    }
    return Statement(statement);
}

Database openSqlite(const std::string& path, const char* synchronous, const char* journal) {
    sqlite3* database = nullptr;
    if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) {
        throw std::runtime_error("sqlite3_open: " + path);
    }
    Database owner(database);
    execute(database, (std::string("PRAGMA journal_mode=") + journal).c_str());
    execute(database, "PRAGMA cache_size=-262144"); // 256 MiB: everything it touches stays warm
    execute(database, (std::string("PRAGMA synchronous=") + synchronous).c_str());
    return owner;
}

void insertRow(sqlite3_stmt* insert, const PostalRow& row) {
    const auto text = [&](int i, const std::string& value) {
        sqlite3_bind_text(insert, i, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    };
    text(1, row.codigo1);
    text(2, row.provincia);
    text(3, row.capital);
    text(4, row.tipoVia);
    text(5, row.via);
    sqlite3_bind_int(insert, 6, row.imparIni);
    sqlite3_bind_int(insert, 7, row.imparFin);
    sqlite3_bind_int(insert, 8, row.parIni);
    sqlite3_bind_int(insert, 9, row.parFin);
    text(10, row.codPostal);
    text(11, row.municipi);
    text(12, row.codIne);
    if (sqlite3_step(insert) != SQLITE_DONE) {
        throw std::runtime_error("insert");
    }
    sqlite3_reset(insert);
}

void loadSqlite(const std::string& path) {
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::remove((path + suffix).c_str());
    }
    const Database database = openSqlite(path);
    execute(database.get(),
            "CREATE TABLE postal(codigo1 TEXT, provincia TEXT, capital TEXT, tipo_via TEXT, via TEXT,"
            "impar_ini INT, impar_fin INT, par_ini INT, par_fin INT, codpostal TEXT, municipi TEXT,"
            "cod_ine TEXT)");
    execute(database.get(), "BEGIN");
    const Statement insert = prepare(database.get(), insertSql);
    for (std::uint32_t i = 0; i < rowCount; ++i) {
        insertRow(insert.get(), postalRow(i));
    }
    execute(database.get(), indexSql);
    execute(database.get(), "COMMIT");
}

const std::string& sqliteRollbackPath() {
    static const std::string path = [] {
        std::string made = workFolder + "/postal-rollback.sqlite";
        std::filesystem::copy_file(sqlitePath(), made);
        return made;
    }();
    return path;
}

const std::string& sqlitePath() {
    static const std::string path = [] {
        std::string made = workFolder + "/postal.sqlite";
        loadSqlite(made);
        execute(openSqlite(made).get(), "ANALYZE; PRAGMA wal_checkpoint(TRUNCATE)");
        return made;
    }();
    return path;
}

} // namespace bench
