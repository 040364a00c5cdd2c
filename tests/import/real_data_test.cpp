// Recorded answers and municipality files of real places. They are not part of the project: the environment
// variable AMBREL_REAL_DATA names a folder that has them, and without it these tests skip themselves.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "SimulatedDirectory.h"
#include "dbase/dbf/codepage.h"
#include "import/Document.h"
#include "import/Envelope.h"
#include "import/MunicipalityFile.h"
#include "import/ResponseReaders.h"
#include "import/Transport.h"
#include "support/Tables.h"
#include "tools/callejero/CsvRows.h"

namespace {

namespace fs = std::filesystem;
using ambrel::Reading;
using ambrel::test::ansi;

class RealData : public ::testing::Test {
protected:
    void SetUp() override {
        const char* const given = std::getenv("AMBREL_REAL_DATA");
        if (!given || !fs::is_directory(given)) {
            GTEST_SKIP() << "wants AMBREL_REAL_DATA, a folder with answers of the street service";
        }
        folder = given;
    }

    [[nodiscard]] fs::path cadastre() const { return folder / "catastro"; }

    static std::vector<callejero::CsvRow> rows(const fs::path& file) {
        return callejero::csvRows(loading::fileSource(file.string()), file.filename().string());
    }

    static std::string exchange(const std::string& operation, const std::string& request) {
        return ambrel::postSoap(ambrel::directoryUrl(), ambrel::soapAction(operation),
                                dbase::CodePage::windows1252().toUtf8(request));
    }

    fs::path folder;
};

TEST_F(RealData, ListsAreReadThroughTheService) {
    const SimulatedDirectory directory(callejero::folderDirectory(cadastre().string()));
    ambrel::DirectoryDocument document;
    document.load(exchange("ConsultaProvincia", ambrel::provincesRequest()));
    const ambrel::NameList provinces = ambrel::readProvinces(document);
    EXPECT_EQ(provinces.reading, Reading::Whole);
    EXPECT_EQ(provinces.names.size(), 48u);
    std::map<std::string, std::vector<std::string>> expected;
    for (const auto& row : rows(cadastre() / "municipios_catastro.csv")) {
        expected[row.at("provincia")].push_back(ansi(row.at("municipio")));
    }
    for (auto& [province, names] : expected) {
        document.load(exchange("ConsultaMunicipio", ambrel::municipalitiesRequest(ansi(province))));
        ambrel::NameList list = ambrel::readMunicipalities(document);
        EXPECT_EQ(list.reading, Reading::Whole) << province;
        std::ranges::sort(list.names);
        std::ranges::sort(names);
        EXPECT_EQ(list.names, names) << province;
    }
}

TEST_F(RealData, StreetsAreReadThroughTheServiceAsManyAsTheIndexSays) {
    const SimulatedDirectory directory(callejero::folderDirectory(cadastre().string()));
    std::map<std::string, std::vector<std::string>> names; // by municipality
    for (const auto& row : rows(cadastre() / "vias_catastro.csv")) {
        names[row.at("cod_ine")].push_back(ansi(row.at("tv") + " " + row.at("nv")));
    }
    for (const auto& row : rows(cadastre() / "vias/indice.csv")) {
        ambrel::DirectoryDocument document;
        document.load(exchange("ConsultaVia",
                               ambrel::streetsRequest(ansi(row.at("provincia")), ansi(row.at("municipio")))));
        const ambrel::StreetList list = ambrel::readStreets(document);
        EXPECT_EQ(list.reading, Reading::Whole) << row.at("municipio");
        EXPECT_EQ(list.count, std::stoi(row.at("cuca"))) << row.at("municipio");
        EXPECT_EQ(std::to_string(list.streets.size()), row.at("cuca")) << row.at("municipio");
        std::vector<std::string> read;
        for (const ambrel::ImportedStreet& street : list.streets) {
            read.push_back(street.type + " " + street.name);
        }
        std::vector<std::string>& listed = names[row.at("cod_ine")];
        std::ranges::sort(read);
        std::ranges::sort(listed);
        EXPECT_EQ(read, listed) << row.at("municipio");
    }
}

TEST_F(RealData, ErrorAnswersHaveNothing) {
    for (const fs::directory_entry& entry : fs::directory_iterator(cadastre() / "errores")) {
        ambrel::DirectoryDocument document;
        document.loadFile(entry.path().string());
        EXPECT_EQ(ambrel::readStreets(document).reading, Reading::Whole);
        EXPECT_FALSE(ambrel::readStreets(document).count);
        EXPECT_TRUE(ambrel::readMunicipalities(document).names.empty());
    }
}

TEST_F(RealData, RecordingsWithoutEnvelopeAreNoAnswers) {
    for (const fs::directory_entry& entry : fs::directory_iterator(cadastre() / "grabadas")) {
        ambrel::DirectoryDocument document;
        document.loadFile(entry.path().string());
        EXPECT_EQ(ambrel::readProvinces(document).reading, Reading::NoRoot) << entry.path();
    }
}

/// A bound of a range is absent, a number or the open end of its side.
void expectBounds(const ambrel::ImportedStreet& street, const std::string& line) {
    for (const int bound : {street.oddFirst, street.oddLast}) {
        EXPECT_TRUE(bound == 0 || bound % 2 == 1) << line;
    }
    for (const int bound : {street.evenFirst, street.evenLast}) {
        EXPECT_EQ(bound % 2, 0) << line;
    }
    EXPECT_LE(street.oddFirst, street.oddLast) << line;
    EXPECT_LE(street.evenFirst, street.evenLast) << line;
}

TEST_F(RealData, EveryLineOfTheMunicipalityFilesIsAStreetWithItsCode) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder / "callejero/dat")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string province = entry.path().filename().string().substr(0, 2);
        int lines = 0;
        for (std::string line; std::getline(file, line); ++lines) {
            const auto street = ambrel::readMunicipalityLine(line, [](const std::string& name) {
                EXPECT_FALSE(name.empty());
                return "XX";
            });
            const std::string shown = dbase::CodePage::windows1252().toUtf8(line);
            EXPECT_EQ(street.postalCode.substr(0, 2), province) << shown;
            EXPECT_EQ(street.postalCode.size(), 5u) << shown;
            EXPECT_FALSE(street.name.empty()) << shown;
            EXPECT_LE(street.name.size(), 45u) << shown;
            const std::size_t comma = line.rfind(", ");
            const bool namesType = comma != std::string::npos && std::islower(line[comma + 2]) != 0;
            EXPECT_EQ(street.type, namesType ? "XX" : "") << shown;
        }
        EXPECT_GT(lines, 0) << entry.path();
    }
}

/// The reader cuts at the first bracket, and so loses any text in brackets before the ranges.
TEST_F(RealData, RangesOfNamesWithoutBracketsAreReadRight) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder / "callejero/dat")) {
        std::ifstream file(entry.path(), std::ios::binary);
        for (std::string line; std::getline(file, line);) {
            const std::size_t bracket = line.find('(');
            const bool isPlain = bracket == std::string::npos || line.compare(bracket, 4, "(IMP") == 0 ||
                                 line.compare(bracket, 4, "(PAR") == 0;
            if (isPlain) {
                expectBounds(ambrel::readMunicipalityLine(line, [](const std::string&) { return ""; }),
                             dbase::CodePage::windows1252().toUtf8(line));
            }
        }
    }
}

} // namespace
