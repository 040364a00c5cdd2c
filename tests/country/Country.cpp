// Makes and loads a country.
#include "country/Country.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/databases.h"
#include "support/LongForm.h"
#include "support/TemporaryFolder.h"
#include "tools/edition/OfficialEdition.h"

namespace country_tests {
namespace {

namespace fs = std::filesystem;

struct Made {
    TemporaryFolder temporary;
    fs::path folder;
    std::unique_ptr<OfficeLines> office;
    std::map<std::string, std::string> municipalities; // names in MUNICIPI
    std::map<std::string, std::string> storedNames;    // of shortened streets, by official key
    std::unique_ptr<Questions> questions;
};
std::unique_ptr<Made> made;

std::string output(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr);
    std::string text;
    char piece[4096];
    while (const std::size_t size = std::fread(piece, 1, sizeof piece, pipe)) {
        text.append(piece, size);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return text;
}

edition::Files write(const fs::path& folder) {
    const char* const realData = std::getenv("AMBREL_REAL_DATA");
    constexpr int smallCountry = 20'000, wholeCountry = 2'000'000;
    const int stretches = ambrel::test::longForm(smallCountry, wholeCountry);
    const auto places = stretches == smallCountry ? edition::inventedPlaces(208)
                        : realData != nullptr     ? edition::realPlaces(realData)
                                                  : edition::inventedPlaces(8000);
    return edition::writeEdition(folder, places, {.stretches = static_cast<std::uint64_t>(stretches)});
}

void makeTables() {
    const fs::path official = made->folder / "oficial", tables = made->folder / "tablas";
    if (fs::exists(tables)) {
        return;
    }
    fs::create_directories(official);
    const edition::Files files = write(official);
    std::cout << output(std::string(AMBCP_PATH) + " callejero cargar " + tables.string() + " --tramos " +
                        files.stretches + " --vias " + files.streets + " --seudovias " + files.pseudoStreets +
                        " --unidades " + files.units + " --municipios " + files.municipalities + " 2>&1");
}

void readMunicipalities() {
    dbase::Dataset rows("DB", "MUNICIPI");
    rows.open();
    dbase::forEachRow(rows, [&] {
        if (!rows.field("ENT_MENOR").logical()) {
            made->municipalities.try_emplace(rows.field("COD_INE").text(), rows.field("NOMBRE").text());
        }
    });
}

// Which of the office's streets a row is stands in PROCEDEN.
void readStoredNames() {
    dbase::Dataset origins("DB", "PROCEDEN"), streets("DB", "POSTAL", "CODIGO1");
    origins.open();
    streets.open();
    dbase::forEachRow(origins, [&] {
        const std::string key = origins.field("CODIGO1").text();
        if (origins.field("ABREVIADO").logical() &&
            streets.seek({{"CODIGO1", key}}, dbase::SeekMode::Exact)) {
            made->storedNames[origins.field("CLAVE").text().substr(0, 11)] = streets.field("VIA").text();
        }
    });
}

} // namespace

void Country::SetUpTestSuite() {
    made = std::make_unique<Made>();
    const char* const kept = std::getenv("AMBREL_COUNTRY");
    made->folder = kept != nullptr ? fs::path(kept) : fs::path(made->temporary.path());
    makeTables();
    dbase::setDatabaseFolder("DB", tables());
    readMunicipalities();
    readStoredNames();
    made->office = std::make_unique<OfficeLines>(made->folder / "oficial");
    made->questions = std::make_unique<Questions>(*made->office, [](const OfficeStreet& street) {
        return made->storedNames.at(street.place + (street.isPseudo ? 'P' : 'V') + street.key);
    });
}

void Country::TearDownTestSuite() { made.reset(); }

std::string Country::ambcp(const std::string& arguments) {
    return output(std::string(AMBCP_PATH) + ' ' + arguments);
}

std::string Country::tables() { return made->folder / "tablas"; }
const OfficeLines& Country::office() { return *made->office; }
const Questions& Country::questions() { return *made->questions; }

std::vector<Question> Country::sample(std::size_t share) {
    return made->questions->sample(static_cast<std::size_t>(ambrel::test::longForm(200, 2000)) / share,
                                   static_cast<std::size_t>(ambrel::test::longForm(10, 100)) / share);
}

bool Country::isNameUnique(const Question& question) {
    return std::ranges::count_if(made->municipalities, [&](const auto& one) {
               return one.first.starts_with(question.province) && one.second == municipality(question.place);
           }) == 1;
}

const std::string& Country::municipality(const std::string& ineCode) {
    return made->municipalities.at(ineCode);
}

void Country::expectRight(const Score& score) {
    std::cout << score.text();
    for (const std::string& one : score.wrong()) {
        ADD_FAILURE() << one;
    }
    EXPECT_GE(score.rightShare(), 0.99) << score.missed().size() << " left to a person, such as\n"
                                        << (score.missed().empty() ? "" : score.missed().front());
}

} // namespace country_tests
