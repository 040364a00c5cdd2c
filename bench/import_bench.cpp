// What a user of the import waits for: loading an answer of Madrid's size into the list, and saving its
// streets into the directory.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/TableDefinitions.h"
#include "dbase/system/databases.h"
#include "import/Document.h"
#include "import/ResponseReaders.h"
#include "import/StreetGrid.h"
#include "import/StreetSaving.h"

#include "application.h"
#include "our_postal.h"
#include "sqlite_postal.h"
#include "stopwatch.h"

namespace bench {

namespace {

constexpr std::uint32_t streetsOfMadrid = 8'085;
constexpr int municipalitiesOfProvince = 200, fewMunicipalities = 20, streetsOfMunicipality = 50,
              commonNames = 100;

// --- An answer

std::string streetElement(std::uint32_t number) {
    const PostalRow row = postalRow(number);
    return "<calle><loine><cp>28</cp><cm>79</cm></loine><dir><cv>" + std::to_string(number) + "</cv><tv>" +
           row.tipoVia + "</tv><nv>" + row.via.substr(0, 25) + "</nv></dir></calle>";
}

const std::string& answer() {
    static const std::string text = [] {
        std::string made =
            R"(<?xml version="1.0" encoding="utf-8"?><soap:Envelope xmlns:soap=)"
            R"("http://schemas.xmlsoap.org/soap/envelope/"><soap:Body><Callejero><consulta_callejero>)"
            "<control><cuca>" +
            std::to_string(streetsOfMadrid) + "</cuca></control><callejero>";
        for (std::uint32_t i = 0; i < streetsOfMadrid; ++i) {
            made += streetElement(i);
        }
        return made + "</callejero></consulta_callejero></Callejero></soap:Body></soap:Envelope>";
    }();
    return text;
}

// Into the list that the user sees.
void parseOurs(benchmark::State& state) {
    ensureApplication();
    ambrel::StreetGrid grid;
    grid.resize(700, 300);
    grid.show();
    for (auto _ : state) {
        state.PauseTiming();
        grid.clearStreets();
        QCoreApplication::processEvents();
        state.ResumeTiming();
        ambrel::DirectoryDocument document;
        document.load(answer());
        grid.append(ambrel::readStreets(document).streets);
        if (grid.streets().size() != streetsOfMadrid) {
            state.SkipWithError("streets are missing");
        }
    }
}

// Parses the text, and reads each street's texts.
void parsePugixml(benchmark::State& state) {
    for (auto _ : state) {
        pugi::xml_document document;
        document.load_buffer(answer().data(), answer().size());
        std::size_t characters = 0;
        const pugi::xml_node list =
            document.first_child().first_child().first_child().first_child().child("callejero");
        for (const pugi::xml_node& street : list.children()) {
            const pugi::xml_node address = street.child("dir");
            characters += std::string_view(address.child_value("tv")).size() +
                          std::string_view(address.child_value("nv")).size();
        }
        benchmark::DoNotOptimize(characters);
    }
}

// --- Saving

// Makes "DB" stand for a folder of its own; its directory has all rows, or none.
class ImportFolder {
public:
    ImportFolder(const std::string& name, bool filled) : folder_(workFolder + "/" + name) {
        if (filled) {
            loadOurs(folder_);
        } else {
            std::filesystem::create_directories(folder_);
            dbase::createTable(folder_, ambrel::streetTable(), dbase::IfExists::Replace);
        }
        dbase::createTable(folder_, ambrel::municipalityTable(), dbase::IfExists::Replace);
        dbase::setDatabaseFolder("DB", folder_);
        controller_ = std::make_unique<TClassCodPostales>();
        controller_->DM->tbPostal.sync(); // the loading is not measured
    }
    ~ImportFolder() {
        controller_.reset();
        dbase::setDatabaseFolder("DB", ourFolder());
        std::filesystem::remove_all(folder_);
    }
    ImportFolder(const ImportFolder&) = delete;
    ImportFolder& operator=(const ImportFolder&) = delete;

    [[nodiscard]] TClassCodPostales& controller() { return *controller_; }

private:
    std::string folder_;
    std::unique_ptr<TClassCodPostales> controller_;
};

// A municipality's streets: most of their names already exist in the province, with other codes.
std::vector<ambrel::ImportedStreet> importedStreets() {
    std::vector<ambrel::ImportedStreet> streets;
    for (std::uint32_t i = 0; streets.size() < streetsOfMadrid; ++i) {
        const PostalRow row = postalRow(i);
        if (row.provincia == "28") {
            streets.push_back({.type = row.tipoVia, .name = row.via});
        }
    }
    return streets;
}

const ambrel::HostMunicipality municipality{.provinceCode = "28", .postalCode = "28999", .name = "MADRID"};

void saveOurs(benchmark::State& state) {
    ensureApplication();
    ImportFolder folder("import", true);
    const std::vector<ambrel::ImportedStreet> streets = importedStreets();
    for (auto _ : state) {
        ambrel::StreetSaving saving{folder.controller(), streets, municipality};
        state.counters["saved"] = saving.addNew().count;
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(streets.size()));
}

enum class Transactions { EachRow, AllRows };

// The same look-ups and insertion.
class SqliteSaving {
public:
    explicit SqliteSaving(sqlite3* database)
        : begin_(prepare(database, "BEGIN IMMEDIATE")),
          find_(prepare(database, "SELECT codpostal, tipo_via, impar_ini, impar_fin, par_ini, par_fin "
                                  "FROM postal WHERE provincia = ? AND via = ?")),
          taken_(prepare(database, "SELECT 1 FROM postal WHERE codigo1 = '99000000'")),
          highest_(prepare(database, "SELECT max(codigo1) FROM postal")),
          insert_(prepare(database, insertSql)), commit_(prepare(database, "COMMIT")) {}

    void begin() { step(begin_); }
    void commit() { step(commit_); }
    // True if the street was not there yet.
    bool save(PostalRow& row) {
        const bool isNew = !isStored(row);
        if (isNew) {
            row.codigo1 = freeKey();
            insertRow(insert_.get(), row);
        }
        return isNew;
    }

private:
    static void step(const Statement& statement) {
        sqlite3_step(statement.get());
        sqlite3_reset(statement.get());
    }
    static const char* text(const Statement& statement, int column) {
        return reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
    }
    bool isStored(const PostalRow& row) {
        sqlite3_bind_text(find_.get(), 1, row.provincia.c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_text(find_.get(), 2, row.via.c_str(), -1, SQLITE_STATIC);
        bool found = false;
        while (!found && sqlite3_step(find_.get()) == SQLITE_ROW) {
            found = text(find_, 0) == row.codPostal && text(find_, 1) == row.tipoVia;
        }
        sqlite3_reset(find_.get());
        return found;
    }
    std::string freeKey() {
        const bool isTaken = sqlite3_step(taken_.get()) == SQLITE_ROW;
        sqlite3_reset(taken_.get());
        if (!isTaken) {
            return "99000000";
        }
        sqlite3_step(highest_.get());
        const std::string key = std::to_string(std::atoi(text(highest_, 0)) + 1);
        sqlite3_reset(highest_.get());
        return key;
    }

    Statement begin_, find_, taken_, highest_, insert_, commit_;
};

void saveSqlite(benchmark::State& state, Transactions transactions) {
    const std::string path = workFolder + "/import.sqlite";
    loadSqlite(path);
    {
        const Database database = openSqlite(path);
        SqliteSaving saving(database.get());
        const std::vector<ambrel::ImportedStreet> streets = importedStreets();
        PostalRow row = postalRow(0);
        row.provincia = municipality.provinceCode;
        row.capital = "9";
        row.codPostal = municipality.postalCode;
        int saved = 0;
        for (auto _ : state) {
            for (const ambrel::ImportedStreet& street : streets) {
                if (transactions == Transactions::EachRow || &street == &streets.front()) {
                    saving.begin();
                }
                row.tipoVia = street.type;
                row.via = street.name;
                saved += saving.save(row) ? 1 : 0;
                if (transactions == Transactions::EachRow || &street == &streets.back()) {
                    saving.commit();
                }
            }
        }
        state.counters["saved"] = saved;
        state.SetItemsProcessed(static_cast<std::int64_t>(streets.size()));
    }
    std::filesystem::remove(path);
}

// A municipality's streets: every second name is shared by all municipalities.
std::vector<ambrel::ImportedStreet> streetsOf(int municipalityNumber) {
    std::vector<ambrel::ImportedStreet> streets;
    for (int i = 0; i < streetsOfMunicipality; ++i) {
        const int common = (municipalityNumber * 7 + i) % commonNames;
        streets.push_back(
            {.type = "CL",
             .name = i % 2 == 0
                         ? "COMUN " + std::to_string(common)
                         : "PROPIA " + std::to_string(municipalityNumber * streetsOfMunicipality + i)});
    }
    return streets;
}

// Saves municipalities of a province one after the other; reports the time of one street.
void saveProvince(benchmark::State& state, int municipalities) {
    ensureApplication();
    for (auto _ : state) {
        ImportFolder folder("provincia", false);
        const double seconds = secondsOf([&] {
            for (int i = 0; i < municipalities; ++i) {
                const std::vector<ambrel::ImportedStreet> streets = streetsOf(i);
                const ambrel::HostMunicipality place{.provinceCode = "28",
                                                     .postalCode = std::to_string(28'000 + i)};
                ambrel::StreetSaving saving{folder.controller(), streets, place};
                benchmark::DoNotOptimize(saving.addNew().count);
            }
        });
        state.SetIterationTime(seconds / (municipalities * streetsOfMunicipality));
    }
}

BENCHMARK(parseOurs)->Name("parse/ours")->MinTime(2)->Unit(benchmark::kMillisecond);
BENCHMARK(parsePugixml)->Name("parse/pugixml")->MinTime(2)->Unit(benchmark::kMillisecond);
BENCHMARK(saveOurs)->Name("save_streets/ours")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveSqlite, each, Transactions::EachRow)
    ->Name("save_streets/sqlite")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveSqlite, all, Transactions::AllRows)
    ->Name("save_streets/sqlite_together")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(saveProvince, few, fewMunicipalities)->Name("province/20")->Iterations(3)->UseManualTime();
BENCHMARK_CAPTURE(saveProvince, many, municipalitiesOfProvince)
    ->Name("province/200")
    ->Iterations(3)
    ->UseManualTime();

} // namespace

} // namespace bench
