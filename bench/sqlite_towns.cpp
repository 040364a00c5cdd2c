// Loading the towns, and looking addresses up.
#include "sqlite_towns.h"

#include <algorithm>

#include "postal_rows.h"

namespace bench {

namespace {

void bind(const Statement& statement, int place, std::string_view text) {
    sqlite3_bind_text(statement.get(), place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string_view column(const Statement& statement, int place) {
    return {reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), place)),
            static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), place))};
}

bool next(const Statement& statement) {
    if (sqlite3_step(statement.get()) == SQLITE_ROW) {
        return true;
    }
    sqlite3_reset(statement.get());
    return false;
}

} // namespace

SqliteTowns::SqliteTowns(const TownDirectory& directory)
    : database_(openSqlite(workFolder + "/towns.sqlite")) {
    load(directory);
    byName_ = prepare(database_.get(), "SELECT DISTINCT cod_ine FROM municipi WHERE nombre=? AND cod_prov=?");
    codes_ = prepare(database_.get(), "SELECT codpostal FROM municipi WHERE cod_ine=?");
    stretches_ =
        prepare(database_.get(), "SELECT tipo_via, codpostal, cod_ine, impar_ini, impar_fin, par_ini, "
                                 "par_fin FROM postal WHERE provincia=? AND via=?");
    execute(database_.get(), "BEGIN");
}

SqliteTowns& SqliteTowns::large() {
    static SqliteTowns towns(TownDirectory::large());
    return towns;
}

void SqliteTowns::load(const TownDirectory& directory) {
    execute(database_.get(),
            "CREATE TABLE municipi(cod_ine TEXT, codpostal TEXT, nombre TEXT, cod_prov TEXT);"
            "CREATE TABLE postal(provincia TEXT, tipo_via TEXT, via TEXT, codpostal TEXT,"
            "cod_ine TEXT, impar_ini INT, impar_fin INT, par_ini INT, par_fin INT);"
            "BEGIN");
    const Statement town = prepare(database_.get(), "INSERT INTO municipi VALUES (?,?,?,?)");
    const Statement street = prepare(database_.get(), "INSERT INTO postal VALUES (?,?,?,?,?,1,9999,2,9998)");
    for (const SuggestTown& one : directory.towns) {
        const std::string province = one.ineCode.substr(0, 2);
        for (const std::string& code : one.postalCodes) {
            bind(town, 1, one.ineCode);
            bind(town, 2, code);
            bind(town, 3, one.name);
            bind(town, 4, province);
            static_cast<void>(next(town));
        }
        for (const SuggestStreet& each : one.streets) {
            bind(street, 1, province);
            bind(street, 2, each.type);
            bind(street, 3, each.name);
            bind(street, 4, each.postalCode);
            bind(street, 5, one.ineCode);
            static_cast<void>(next(street));
        }
    }
    execute(database_.get(), "COMMIT; CREATE INDEX municipi_nombre ON municipi(nombre, cod_prov);"
                             "CREATE INDEX municipi_ine ON municipi(cod_ine);"
                             "CREATE INDEX postal_via ON postal(provincia, via); ANALYZE");
}

std::vector<std::string> SqliteTowns::municipalities(std::string_view name, std::string_view province) {
    std::vector<std::string> found;
    bind(byName_, 1, name);
    bind(byName_, 2, province);
    while (next(byName_)) {
        found.emplace_back(column(byName_, 0));
    }
    return found;
}

SqliteAddress SqliteTowns::address(const std::string& ineCode, std::string_view type, std::string_view street,
                                   int number) {
    std::vector<std::string> own;
    bind(codes_, 1, ineCode);
    while (next(codes_)) {
        own.emplace_back(column(codes_, 0));
    }
    SqliteAddress found{ineCode, {}, {}, {}};
    bool hasOwn = false, isCertain = true;
    const std::string province = ineCode.substr(0, 2);
    bind(stretches_, 1, province);
    bind(stretches_, 2, street);
    while (next(stretches_)) {
        const std::string_view code = column(stretches_, 1), of = column(stretches_, 2);
        const bool saysSo = of == ineCode;
        if ((!saysSo && std::ranges::find(own, code) == own.end()) || (hasOwn && !saysSo) ||
            (!type.empty() && column(stretches_, 0) != type)) {
            continue;
        }
        const int first = number % 2 != 0 ? 3 : 5;
        if (number < sqlite3_column_int(stretches_.get(), first) ||
            number > sqlite3_column_int(stretches_.get(), first + 1)) {
            continue;
        }
        if (saysSo && !hasOwn) {
            hasOwn = isCertain = true;
            found.postalCode.clear();
        }
        isCertain = isCertain && (found.postalCode.empty() || found.postalCode == code);
        found.type = column(stretches_, 0);
        found.street = street;
        found.postalCode = code;
    }
    if (!isCertain) {
        found.postalCode.clear();
    }
    return found;
}

} // namespace bench
