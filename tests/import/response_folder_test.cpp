// The folder in which answers are kept.
#include "import/ResponseFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "dbase/system/databases.h"
#include "import/Document.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

class ResponseFolder : public ::testing::Test {
protected:
    ResponseFolder() {
        dbase::setDatabaseFolder("DB", folder.path());
        answer.load("<a/>");
    }
    ~ResponseFolder() override { dbase::setDatabaseFolder("DB", {}); }

    bool file(const std::string& province, const std::string& municipality) {
        return ambrel::fileAnswer(answer, "DB", province, municipality);
    }

    TemporaryFolder folder;
    ambrel::DirectoryDocument answer;
};

TEST_F(ResponseFolder, IsBelowTheTables) { EXPECT_EQ(ambrel::postalesFolder("DB"), folder / "POSTALES"); }

TEST_F(ResponseFolder, KeepsAnAnswerUnderProvinceAndMunicipality) {
    EXPECT_TRUE(file("A CORUÑA", "NEGREIRA"));
    EXPECT_TRUE(fs::is_regular_file(folder / "POSTALES/A CORUÑA/NEGREIRA.xml"));
}

TEST_F(ResponseFolder, WritesSlashesAsBrackets) {
    EXPECT_TRUE(file("P", "A/B\\C"));
    EXPECT_TRUE(fs::is_regular_file(folder / "POSTALES/P/A()B)(C.xml"));
    EXPECT_EQ(ambrel::municipalityOfFile(folder / "POSTALES/P/A()B)(C.xml"), "A/B\\C");
}

TEST_F(ResponseFolder, ReplacesAnEarlierAnswer) {
    fs::create_directories(folder / "POSTALES/P");
    const std::string path = folder.write("POSTALES/P/X.xml", "vieja");
    EXPECT_TRUE(file("P", "X"));
    EXPECT_NE(fs::file_size(path), 5u);
}

TEST_F(ResponseFolder, ThatCannotBeMadeKeepsNothingAndSaysNothing) {
    folder.write("POSTALES", "un fichero");
    EXPECT_FALSE(file("P", "X"));
    EXPECT_TRUE(fs::is_regular_file(folder / "POSTALES"));
}

TEST_F(ResponseFolder, LeavesAnOldFileThatCannotBeRemoved) {
    fs::create_directories(folder / "POSTALES/P/X.xml/dentro");
    EXPECT_FALSE(file("P", "X"));
    EXPECT_TRUE(fs::is_directory(folder / "POSTALES/P/X.xml/dentro"));
}

TEST_F(ResponseFolder, TakesNoNameThatLeadsOut) {
    for (const char* const province : {"", ".", "..", "../fuera", "a/b", "a\\b"}) {
        EXPECT_FALSE(file(province, "X")) << province;
    }
    EXPECT_FALSE(file("P", std::string("a\0b", 3)));
    EXPECT_FALSE(fs::exists(folder / "fuera"));
    EXPECT_TRUE(file("P", "../fuera")); // the slash becomes brackets
    EXPECT_TRUE(fs::exists(folder / "POSTALES/P/..()fuera.xml"));
}

TEST_F(ResponseFolder, CutsTheMunicipalityOfAFileAtItsFirstDot) {
    EXPECT_EQ(ambrel::municipalityOfFile("POSTALES/P/CRUILLES - ST SAD..xml"), "CRUILLES - ST SAD");
    EXPECT_EQ(ambrel::municipalityOfFile("POSTALES/P/.xml"), "");
}

} // namespace
