// What a user waits for with the streets of the whole country loaded, against tables of one municipality.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include <QCoreApplication>
#include <QLineEdit>
#include <benchmark/benchmark.h>

#include "controller/ClasCodPostales.h"
#include "controller/ProvinceName.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "dialogs/BuscarDireccionPostal.h"
#include "form/AddressBoxes.h"
#include "services/Confamb.h"
#include "suggest/Suggestions.h"
#include "tools/edition/OfficialEdition.h"

#include "application.h"
#include "child_run.h"
#include "our_postal.h"
#include "postal_rows.h"
#include "stopwatch.h"

namespace bench {

namespace {

using edition::Place;

std::vector<Place> allPlaces() {
    const char* const realData = std::getenv("AMBREL_REAL_DATA");
    return realData != nullptr ? edition::realPlaces(realData) : edition::inventedPlaces(8000);
}

edition::Options wholeCountry() { return {.stretches = std::uint64_t{rowCount} / 3 * 4}; }

std::string utf8(const std::string& ansi) { return dbase::CodePage::windows1252().toUtf8(ansi); }

/// The municipality in whose streets the user types: one of several codes in the middle of the country.
struct Town {
    Place place;
    std::vector<std::string> streets;
    std::uint64_t stretches = 0;
};

const Town& town() {
    static const Town made = [] {
        const std::vector<Place> places = allPlaces();
        const auto chosen =
            std::find_if(places.begin() + static_cast<std::ptrdiff_t>(places.size() / 2), places.end(),
                         [](const Place& place) { return place.postalCodes.size() >= 3; });
        Town one{.place = *chosen, .streets = {}};
        edition::forEachStreet(places, wholeCountry(), [&](const edition::Street& street) {
            if (street.place->code == one.place.code) {
                one.stretches += street.sides.size();
                if (!street.isPseudo && street.isListed && !street.sides.empty() &&
                    street.name.size() <= 45) {
                    one.streets.push_back(utf8(street.name));
                }
            }
        });
        return one;
    }();
    return made;
}

std::string load(const std::string& name, const std::vector<Place>& places, const edition::Options& options) {
    const std::string files = workFolder + '/' + name + "-oficial", tables = workFolder + '/' + name;
    std::filesystem::create_directories(files);
    const edition::Files edition = edition::writeEdition(files, places, options);
    runAmbcp({"callejero", "cargar", tables, "--tramos", edition.stretches, "--vias", edition.streets,
              "--seudovias", edition.pseudoStreets, "--unidades", edition.units, "--municipios",
              edition.municipalities, "--sin-deshacer"});
    std::filesystem::remove_all(files);
    return tables;
}

enum class Size { Town, Country };

const std::string& tablesOf(Size size) {
    if (size == Size::Town) {
        static const std::string folder = load("municipio", {town().place}, {.stretches = town().stretches});
        return folder;
    }
    static const std::string folder = load("pais", allPlaces(), wholeCountry());
    return folder;
}

class InUse {
public:
    explicit InUse(Size size) { dbase::setDatabaseFolder("DB", tablesOf(size)); }
    ~InUse() { dbase::setDatabaseFolder("DB", ourFolder()); }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;
};

std::string townProvince() { return std::to_string(100 + town().place.code / 1000).substr(1); }

/// A host's boxes that hold the town.
struct TownBoxes {
    TownBoxes() {
        boxes.municipality = &municipality;
        boxes.province = &province;
        boxes.street = &street;
        address = std::make_unique<ambrel::AddressBoxes>(boxes);
        address->setSuggestions(nullptr);
        province.setText(QString::fromStdString(utf8(ambrel::provinceName(townProvince(), "DB"))));
        municipality.setText(QString::fromStdString(utf8(town().place.name)));
        address->takeStored();
    }
    QLineEdit municipality, province, street;
    ambrel::AddressBoxes::Boxes boxes;
    std::unique_ptr<ambrel::AddressBoxes> address;
};

/// The last but one letter of each name, with all before it already in the box.
void typeKeys(benchmark::State& state, QLineEdit& box, const std::vector<std::string>& names) {
    std::size_t number = 0;
    for (auto _ : state) {
        const QString name = QString::fromStdString(names[number++ % names.size()]);
        const qsizetype typed = std::max(qsizetype{1}, name.size() - 2);
        box.setText(name.left(typed));
        state.SetIterationTime(secondsOf([&] { typeLetter(box, name[typed]); }));
    }
}

void streetKey(benchmark::State& state, Size size) {
    ensureApplication();
    const InUse tables(size);
    TownBoxes boxes;
    typeKeys(state, boxes.street, town().streets);
}

void municipalityKey(benchmark::State& state, Size size) {
    ensureApplication();
    const InUse tables(size);
    TownBoxes boxes;
    typeKeys(state, boxes.municipality, {utf8(town().place.name)});
}

void openList(benchmark::State& state, Size size) {
    ensureApplication();
    const InUse tables(size);
    const std::string province = ambrel::provinceName(townProvince(), "DB");
    Config.setProvince(town().place.code / 1000, province, province);
    TClassCodPostales controller;
    for (auto _ : state) {
        std::optional<TFBuscarDireccionPostal> list;
        state.SetIterationTime(secondsOf([&] {
            list.emplace(nullptr, controller, true);
            list->show();
            QCoreApplication::processEvents();
        }));
    }
}

// A slip in a street of the town, whose province has been read before.
void suggestStreet(benchmark::State& state, Size size) {
    const InUse tables(size);
    ambrel::Suggestions suggestions("DB");
    const std::string ineCode = std::to_string(100000 + town().place.code).substr(1);
    std::vector<double> times;
    std::size_t number = 0;
    const auto ask = [&](std::string name) {
        name.erase(name.size() / 2, 1);
        benchmark::DoNotOptimize(suggestions.streets({.text = name, .ineCode = ineCode}));
    };
    ask(town().streets.front());
    for (auto _ : state) {
        const std::string& name = town().streets[number++ % town().streets.size()];
        times.push_back(secondsOf([&] { ask(name); }));
        state.SetIterationTime(times.back());
    }
    std::ranges::sort(times);
    state.counters["p50_ms"] = 1000 * times[times.size() / 2];
    state.counters["p99_ms"] = 1000 * times[times.size() * 99 / 100];
}

BENCHMARK_CAPTURE(streetKey, town, Size::Town)
    ->Name("country_street_key/town")
    ->Iterations(3000)
    ->UseManualTime();
BENCHMARK_CAPTURE(streetKey, country, Size::Country)
    ->Name("country_street_key/country")
    ->Iterations(3000)
    ->UseManualTime();
BENCHMARK_CAPTURE(municipalityKey, town, Size::Town)
    ->Name("country_municipality_key/town")
    ->Iterations(3000)
    ->UseManualTime();
BENCHMARK_CAPTURE(municipalityKey, country, Size::Country)
    ->Name("country_municipality_key/country")
    ->Iterations(3000)
    ->UseManualTime();
BENCHMARK_CAPTURE(openList, town, Size::Town)->Name("country_list/town")->Iterations(100)->UseManualTime();
BENCHMARK_CAPTURE(openList, country, Size::Country)
    ->Name("country_list/country")
    ->Iterations(100)
    ->UseManualTime();
BENCHMARK_CAPTURE(suggestStreet, town, Size::Town)
    ->Name("country_suggest/town")
    ->Iterations(1000)
    ->UseManualTime();
BENCHMARK_CAPTURE(suggestStreet, country, Size::Country)
    ->Name("country_suggest/country")
    ->Iterations(1000)
    ->UseManualTime();

} // namespace

} // namespace bench
