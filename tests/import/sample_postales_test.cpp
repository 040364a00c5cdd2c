// The sample's folder POSTALES: each of its files can be imported into the sample's tables.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "import/Document.h"
#include "import/MunicipalityFile.h"
#include "import/ResponseReaders.h"
#include "import/StreetTypeNames.h"
#include "sample/Sample.h"
#include "services/Rnumcad.h"
#include "services/Ruttb.h"
#include "support/Tables.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using ambrel::test::ansi;

class SamplePostales : public ::testing::Test {
protected:
    SamplePostales() {
        ambrel::createSample(folder.path());
        dbase::setDatabaseFolder("DB", folder.path());
    }
    ~SamplePostales() override { dbase::setDatabaseFolder("DB", {}); }

    /// All values of a column of a table, in rows where another one has a given value.
    static std::set<std::string> values(const std::string& table, const std::string& column,
                                        const std::string& where, const std::string& value) {
        const auto rows = CreaTabla("DB", table, "", false, openNow);
        std::set<std::string> result;
        rows->first();
        do {
            if (rows->field(where).text() == value) {
                result.insert(rows->field(column).text());
            }
        } while (rows->next());
        return result;
    }

    TemporaryFolder folder;
};

TEST_F(SamplePostales, LinesOfMunicipalityFilesHaveAKnownTypeAndACodeOfTheirMunicipality) {
    ambrel::StreetTypeNames types("DB");
    int files = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder / "POSTALES")) {
        if (entry.path().extension() != ".dat") {
            continue;
        }
        ++files;
        std::string name = entry.path().stem().string().substr(3);
        for (char& c : name) {
            c = c == '_' ? '/' : c;
        }
        const std::set<std::string> codes = values("MUNICIPI.DBF", "CODPOSTAL", "NOMBRE", ansi(name));
        std::set<std::string> seen;
        std::ifstream file(entry.path(), std::ios::binary);
        for (std::string line; std::getline(file, line);) {
            const ambrel::ImportedStreet street = ambrel::readMunicipalityLine(
                line, [&types](const std::string& type) { return types.ExtraeTipoVia(type); });
            EXPECT_NE(street.type, "") << dbase::CodePage::windows1252().toUtf8(line);
            EXPECT_TRUE(codes.contains(street.postalCode)) << dbase::CodePage::windows1252().toUtf8(line);
            EXPECT_FALSE(street.name.empty()) << line;
            seen.insert(street.postalCode);
        }
        EXPECT_GT(seen.size(), 1u) << name;
    }
    EXPECT_EQ(files, 3);
}

TEST_F(SamplePostales, SavedAnswersAreOfMunicipalitiesWithASingleCode) {
    int files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder / "POSTALES")) {
        if (entry.path().extension() != ".xml") {
            continue;
        }
        ++files;
        const std::string name = entry.path().stem().string();
        EXPECT_EQ(values("MUNICIPI.DBF", "CODPOSTAL", "NOMBRE", ansi(name)).size(), 1u) << name;
        ambrel::DirectoryDocument document;
        document.loadFile(entry.path().string());
        const ambrel::StreetList list = ambrel::readStreets(document);
        EXPECT_EQ(list.reading, ambrel::Reading::Whole) << name;
        EXPECT_EQ(list.count, static_cast<int>(list.streets.size())) << name;
        EXPECT_GE(list.streets.size(), 10u) << name;
    }
    EXPECT_EQ(files, 3);
}

} // namespace
