// The directory in LMDB: one database, the VIA key to the whole row.
#pragma once

#include <string>

#include <lmdb.h>

#include "postal_rows.h"

namespace bench {

class LmdbPostal {
public:
    /// Loads all rows in one transaction at the first use.
    LmdbPostal();
    ~LmdbPostal();
    LmdbPostal(const LmdbPostal&) = delete;
    LmdbPostal& operator=(const LmdbPostal&) = delete;

    /// Ends the read transaction and begins another, which sees everything committed since.
    void renew();
    /// First row at or after the key, in the transaction that renew() has begun; returns its bytes, empty
    /// past the end. The bytes are valid until the next call.
    [[nodiscard]] std::string_view seek(const std::string& key);

private:
    void load();

    MDB_env* environment_ = nullptr;
    MDB_dbi database_ = 0;
    MDB_txn* reader_ = nullptr;
    MDB_cursor* cursor_ = nullptr;
};

/// PROVINCIA + CAPITAL + VIA + TIPO_VIA, padded like our tag's key.
[[nodiscard]] std::string viaKey(const std::string& provincia, const std::string& capital,
                                 const std::string& via, const std::string& tipoVia);

} // namespace bench
