// Loads and searches the directory in LMDB.
#include "lmdb_postal.h"

#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "data/TableDefinitions.h"
#include "dbase/dbf/table_header.h"

#include "our_postal.h"

namespace bench {

namespace {

void require(int code) {
    if (code != MDB_SUCCESS) {
        throw std::runtime_error(mdb_strerror(code));
    }
}

void appendPadded(std::string& key, const std::string& text, std::size_t width) {
    key += text;
    key.append(width - text.size(), ' ');
}

} // namespace

std::string viaKey(const std::string& provincia, const std::string& capital, const std::string& via,
                   const std::string& tipoVia) {
    std::string key;
    key.reserve(51);
    appendPadded(key, provincia, 2);
    appendPadded(key, capital, 1);
    appendPadded(key, via, 45);
    appendPadded(key, tipoVia, 3);
    return key;
}

LmdbPostal::LmdbPostal() {
    const std::string folder = workFolder + "/lmdb";
    const bool isNew = std::filesystem::create_directories(folder);
    require(mdb_env_create(&environment_));
    require(mdb_env_set_mapsize(environment_, std::size_t{8} << 30));
    require(mdb_env_open(environment_, folder.c_str(), MDB_NOSYNC, 0644));
    if (isNew) {
        load();
    }
    require(mdb_txn_begin(environment_, nullptr, MDB_RDONLY, &reader_));
    require(mdb_dbi_open(reader_, nullptr, 0, &database_));
    require(mdb_cursor_open(reader_, database_, &cursor_));
    mdb_txn_reset(reader_);
}

LmdbPostal::~LmdbPostal() {
    mdb_cursor_close(cursor_);
    mdb_txn_abort(reader_);
    mdb_env_close(environment_);
}

void LmdbPostal::load() {
    dbase::Schema schema;
    schema.columns = ambrel::streetTable().columns;
    dbase::completeLayout(schema, {});
    std::string record(schema.recordLength, ' ');
    MDB_txn* writer = nullptr;
    require(mdb_txn_begin(environment_, nullptr, 0, &writer));
    require(mdb_dbi_open(writer, nullptr, MDB_CREATE, &database_));
    for (std::uint32_t i = 0; i < rowCount; ++i) {
        const PostalRow row = postalRow(i);
        std::string key = viaKey(row.provincia, row.capital, row.via, row.tipoVia) + row.codigo1;
        encodeRow(row, schema, record);
        MDB_val keyValue{key.size(), key.data()}, rowValue{record.size(), record.data()};
        require(mdb_put(writer, database_, &keyValue, &rowValue, 0));
    }
    require(mdb_txn_commit(writer));
}

void LmdbPostal::renew() {
    mdb_txn_reset(reader_);
    require(mdb_txn_renew(reader_));
    require(mdb_cursor_renew(reader_, cursor_));
}

std::string_view LmdbPostal::seek(const std::string& key) {
    MDB_val found{key.size(), const_cast<char*>(key.data())}, row{};
    if (mdb_cursor_get(cursor_, &found, &row, MDB_SET_RANGE) != MDB_SUCCESS) {
        return {};
    }
    return {static_cast<const char*>(row.mv_data), row.mv_size};
}

} // namespace bench
