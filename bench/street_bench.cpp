// What a user of the street box waits for: a key that completes a street, and the addition of a street under
// a key of its own.

#include <cstdlib>

#include <QLineEdit>
#include <benchmark/benchmark.h>

#include "controller/BoxCompletion.h"
#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/TableDefinitions.h"
#include "services/Confamb.h"

#include "application.h"
#include "our_postal.h"
#include "sqlite_postal.h"
#include "stopwatch.h"

namespace bench {

namespace {

constexpr const char* province = "28";
constexpr const char* capital = "0";

// The controller of a host's form, on the municipality in which the user types.
TClassCodPostales& controller() {
    static TClassCodPostales made = [] {
        dbase::createTable(ourFolder(), ambrel::municipalityTable(), dbase::IfExists::Replace);
        dbase::Dataset municipalities("DB", "MUNICIPI");
        municipalities.open();
        municipalities.append();
        municipalities.field("COD_INE").setText("28079");
        municipalities.field("CODPOSTAL").setText("28001");
        municipalities.field("NOMBRE").setText("MADRID");
        municipalities.field("UNICO").setText("N");
        municipalities.field("CAPITAL").setText(capital);
        municipalities.field("COD_PROV").setText(province);
        municipalities.field("ENT_MENOR").setLogical(false);
        municipalities.post();
        return TClassCodPostales();
    }();
    return made;
}

// --- A key in the street box

// Half-typed names of streets of the municipality, unordered.
const std::vector<std::string>& typedNames() {
    static const std::vector<std::string> made = [] {
        std::vector<std::string> names;
        for (std::uint32_t i = 0; i < rowCount; ++i) {
            const PostalRow row = postalRow(i);
            if (row.provincia == province && row.capital == capital) {
                names.push_back(row.via.substr(0, row.via.size() / 2));
            }
        }
        return names;
    }();
    return made;
}

// Times only `complete`, the effect of a key: the text that the user typed is put into the box before.
template<typename Complete>
void typeKeys(benchmark::State& state, Complete&& complete) {
    ensureApplication();
    QLineEdit box; // never shown, so that nothing is painted
    std::vector<QString> typed;
    for (const std::string& name : typedNames()) {
        typed.push_back(QString::fromStdString(name));
    }
    std::size_t i = 0;
    for (auto _ : state) {
        box.setText(typed[i++ % typed.size()]);
        state.SetIterationTime(secondsOf([&] { complete(box); }));
    }
}

void keyOurs(benchmark::State& state) {
    TClassCodPostales& streets = controller();
    const QString type = QStringLiteral("CL");
    typeKeys(state, [&](QLineEdit& box) {
        std::uint16_t key = 'A';
        streets.KeyUpDireccionPostal(&box, key, Qt::NoModifier, type);
    });
}

// The nearest street in SQLite, with the columns that the completion needs.
class NearestInSqlite {
public:
    explicit NearestInSqlite(const Database& database)
        : select_(prepare(database.get(), "SELECT codigo1, via, codpostal FROM postal "
                                          "WHERE (provincia, capital, via, tipo_via) >= (?,?,?,?) "
                                          "ORDER BY provincia, capital, via, tipo_via LIMIT 1")) {
        bind(1, province_);
        bind(2, capital_);
        bind(4, type_);
    }

    std::string operator()(const std::string& typed, int& code) {
        bind(3, typed);
        std::string name;
        if (sqlite3_step(select_.get()) == SQLITE_ROW) {
            name = text(1);
            code = std::atoi(text(0));
            benchmark::DoNotOptimize(std::string(text(2)));
        }
        sqlite3_reset(select_.get());
        return name;
    }

private:
    void bind(int at, const std::string& value) {
        sqlite3_bind_text(select_.get(), at, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    const char* text(int column) {
        return reinterpret_cast<const char*>(sqlite3_column_text(select_.get(), column));
    }

    const std::string province_ = province, capital_ = capital, type_ = "CL";
    Statement select_;
};

// The same completion of the same box, with the street from SQLite.
void keySqlite(benchmark::State& state, const Database& database) {
    NearestInSqlite nearest(database);
    typeKeys(state, [&](QLineEdit& box) {
        const auto edited = ambrel::editedText(box);
        int code = 0;
        const std::string name = nearest(edited->text, code);
        const auto completed = ambrel::complete(*edited, name);
        ambrel::showCompletion(box, completed ? std::optional(ambrel::NamedCompletion{*completed, code})
                                              : std::nullopt);
    });
}

// The query alone: the handler's cost if filling boxes were free.
void querySqlite(benchmark::State& state) {
    const Database database = openSqlite(sqliteRollbackPath(), "FULL", "DELETE");
    NearestInSqlite nearest(database);
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string& typed = typedNames()[i++ % typedNames().size()];
        state.SetIterationTime(secondsOf([&] {
            int code = 0;
            benchmark::DoNotOptimize(nearest(typed, code));
        }));
    }
}

void keySqliteRollback(benchmark::State& state) {
    keySqlite(state, openSqlite(sqliteRollbackPath(), "FULL", "DELETE"));
}
void keySqliteWal(benchmark::State& state) { keySqlite(state, openSqlite(sqlitePath())); }

// --- A new street

std::string newName(std::uint32_t number) { return "CALLE NUEVA " + std::to_string(number * 2654435761U); }

void additionOurs(benchmark::State& state, bool waitsForDisk) {
    Config.AsegurarEnDisco = waitsForDisk;
    TClassCodPostales& streets = controller();
    TDMCodPostales& tables = *streets.DM;
    std::uint32_t number = 0;
    for (auto _ : state) {
        if (!streets.AnadirVia()) {
            state.SkipWithError("AnadirVia");
            break;
        }
        tables.tbPostalCAPITAL.setText(capital);
        tables.tbPostalTIPO_VIA.setText("CL");
        tables.tbPostalVIA.setText(newName(number++));
        tables.tbPostalCODPOSTAL.setText("28001");
        if (!streets.AceptarVia()) {
            state.SkipWithError("AceptarVia");
            break;
        }
    }
}

void additionSqlite(benchmark::State& state, const char* synchronous) {
    const Database database = openSqlite(sqlitePath(), synchronous);
    const Statement begin = prepare(database.get(), "BEGIN IMMEDIATE"),
                    highest = prepare(database.get(), "SELECT max(codigo1) FROM postal"),
                    insert = prepare(database.get(), insertSql), commit = prepare(database.get(), "COMMIT");
    const auto run = [&](const Statement& statement) {
        if (sqlite3_step(statement.get()) != SQLITE_DONE) {
            state.SkipWithError(sqlite3_errmsg(database.get()));
        }
        sqlite3_reset(statement.get());
    };
    PostalRow row = postalRow(0);
    row.provincia = province;
    row.capital = capital;
    row.tipoVia = "CL";
    row.codPostal = "28001";
    std::uint32_t number = 0;
    for (auto _ : state) {
        run(begin);
        sqlite3_step(highest.get());
        const int key =
            std::atoi(reinterpret_cast<const char*>(sqlite3_column_text(highest.get(), 0))); // 8 digits
        sqlite3_reset(highest.get());
        row.codigo1 = std::to_string(std::max(key + 1, 99'000'000));
        row.via = newName(number++);
        insertRow(insert.get(), row);
        run(commit);
    }
}

BENCHMARK(keyOurs)->Name("key/ours")->MinTime(2)->UseManualTime();
BENCHMARK(keySqliteRollback)->Name("key/sqlite")->MinTime(2)->UseManualTime();
BENCHMARK(keySqliteWal)->Name("key/sqlite_wal")->MinTime(2)->UseManualTime();
BENCHMARK(querySqlite)->Name("key/sqlite_query")->MinTime(2)->UseManualTime();
BENCHMARK_CAPTURE(additionOurs, unsynced, false)->Name("addition/ours")->Iterations(20'000);
BENCHMARK_CAPTURE(additionSqlite, unsynced, "OFF")->Name("addition/sqlite")->Iterations(20'000);
BENCHMARK_CAPTURE(additionOurs, synced, true)->Name("addition_full/ours")->Iterations(5'000);
BENCHMARK_CAPTURE(additionSqlite, synced, "FULL")->Name("addition_full/sqlite")->Iterations(5'000);

} // namespace

} // namespace bench
