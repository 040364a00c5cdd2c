// Database names and table files: aliases, letter case, names that lead nowhere, tables replaced while open.
#include <gtest/gtest.h>

#include <filesystem>

#include "dbase/system/databases.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table.h"
#include "dbase/table/towns_fixture.h"
#include "dbase/table/workstation.h"

namespace dbase {
namespace {

namespace fs = std::filesystem;

class DatabasesTest : public TownsTest {
protected:
    void rename(const char* from, const char* to) { fs::rename(folder / from, folder / to); }

    static bool opens(const char* database, const char* table) {
        Dataset dataset(database, table, "CODE");
        dataset.open();
        return walk(dataset).size() == 8;
    }
};

TEST_F(DatabasesTest, BareNameAndNameWithExtensionAreOneFile) {
    Dataset bare("DB", "TOWNS"), whole("DB", "TOWNS.DBF"), mixed("db", "Towns.dbf");
    bare.open();
    whole.open();
    mixed.open();
    EXPECT_EQ(&bare.openTable(), &whole.openTable());
    EXPECT_EQ(&bare.openTable(), &mixed.openTable());
}

TEST_F(DatabasesTest, FilesAreFoundWhateverTheirCase) {
    rename("TOWNS.DBF", "Towns.dbf");
    rename("TOWNS.MDX", "tOWNS.mdx");
    EXPECT_TRUE(opens("DB", "TOWNS"));
    EXPECT_TRUE(opens("DB", "towns.DBF"));
    EXPECT_EQ(findTableFile(folder.path(), "TOWNS"), folder / "Towns.dbf");
    EXPECT_EQ(findIndexFile(folder / "Towns.dbf"), folder / "tOWNS.mdx");
}

TEST_F(DatabasesTest, ExactNameGoesBeforeOtherCases) {
    fs::copy(folder / "TOWNS.DBF", folder / "towns.dbf");
    EXPECT_EQ(findTableFile(folder.path(), "TOWNS"), folder / "TOWNS.DBF");
    EXPECT_EQ(findTableFile(folder.path(), "towns.dbf"), folder / "towns.dbf");
    EXPECT_EQ(findTableFile(folder.path(), "Towns"), folder / "TOWNS.DBF") << "else the first in byte order";
    fs::remove(folder / "towns.dbf");
}

TEST_F(DatabasesTest, AmongOtherCasesTheSameFileIsFoundEachTime) {
    for (const char* name : {"zonas.dbf", "Zonas.dbf", "zoNas.DBF", "ZONAs.dbf", "zonaS.dBf"}) {
        static_cast<void>(folder.write(name, ""));
    }
    leaveUnchecked();
    EXPECT_EQ(findTableFile(folder.path(), "ZONAS"), folder / "ZONAs.dbf") << "the first in byte order";
}

TEST_F(DatabasesTest, AnIndexIsLookedForWhereItsTableIs) {
    EXPECT_EQ(findIndexFile(folder / "towns.dbf"), folder / "TOWNS.MDX");
    EXPECT_EQ(findIndexFile("/AMBREL-NO.DBF"), std::nullopt) << "in the root";
    EXPECT_EQ(findIndexFile("AMBREL-NO.DBF"), std::nullopt) << "in the folder of the process";
}

TEST_F(DatabasesTest, MissingTableNamesFolderAndTable) {
    Dataset missing("DB", "STREETS");
    const Error error = errorOf([&] { missing.open(); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_NE(std::string(error.what()).find(folder / "STREETS"), std::string::npos);
    EXPECT_FALSE(missing.isOpen());
}

TEST_F(DatabasesTest, FolderInThePlaceOfATableIsNoTable) {
    fs::create_directory(folder / "PLACE.DBF");
    EXPECT_EQ(findTableFile(folder.path(), "PLACE"), std::nullopt);
    fs::remove(folder / "PLACE.DBF");
}

TEST_F(DatabasesTest, NamesNeverLeadOutOfTheirFolder) {
    fs::create_directory(folder / "inner");
    setDatabaseFolder("INNER", folder / "inner");
    for (const std::string& name :
         {std::string("../TOWNS"), std::string("../TOWNS.DBF"), folder / "TOWNS.DBF", std::string(),
          std::string("."), std::string(".."), std::string("TOWNS\0X", 7)}) {
        EXPECT_EQ(findTableFile(folder / "inner", name), std::nullopt) << name;
        Dataset dataset("INNER", name);
        EXPECT_EQ(codeOf([&] { dataset.open(); }), ErrorCode::NotFound) << name;
    }
    fs::rename(folder / "TOWNS.DBF", folder / ".DBF");
    EXPECT_EQ(findTableFile(folder.path(), ""), std::nullopt);
    fs::rename(folder / ".DBF", folder / "TOWNS.DBF");
    setDatabaseFolder("INNER", {});
}

TEST_F(DatabasesTest, AliasesIgnoreCaseAndTrailingSeparators) {
    setDatabaseFolder("Ambrel", folder.path() + "//");
    EXPECT_EQ(databaseFolder("AMBREL"), folder.path());
    EXPECT_TRUE(opens("ambrel", "TOWNS"));
    setDatabaseFolder("AMBREL", {});
    EXPECT_EQ(codeOf([] { static_cast<void>(databaseFolder("Ambrel")); }), ErrorCode::NotFound);
}

TEST_F(DatabasesTest, UnknownDatabaseIsNamed) {
    Dataset stray("NOWHERE", "TOWNS");
    const Error error = errorOf([&] { stray.open(); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_NE(std::string(error.what()).find("NOWHERE"), std::string::npos);
}

TEST_F(DatabasesTest, FolderThatIsNotThereIsNamed) {
    setDatabaseFolder("GONE", folder / "gone");
    Dataset gone("GONE", "TOWNS");
    const Error error = errorOf([&] { gone.open(); });
    EXPECT_EQ(error.code(), ErrorCode::NotFound);
    EXPECT_NE(std::string(error.what()).find(folder / "gone"), std::string::npos);
    setDatabaseFolder("GONE", {});
}

// --- Tables and their open files

TEST_F(DatabasesTest, TableIsClosedWithItsLastCursorAndOpensAgain) {
    {
        Dataset first("DB", "TOWNS"), second("DB", "TOWNS");
        first.open();
        second.open();
        first.close();
        EXPECT_EQ(second.field("NAME").text(), "MADRID");
    }
    EXPECT_NO_THROW(dbase::createTable(folder.path(), layout(), IfExists::Replace));
    Dataset again("DB", "TOWNS");
    again.open();
    EXPECT_TRUE(again.isEmpty()) << "the new file, not the old one";
}

TEST_F(DatabasesTest, ReplacingAnOpenTableIsRefusedAndChangesNothing) {
    Dataset table("DB", "TOWNS", "CODE");
    table.open();
    const Error error = errorOf([&] { dbase::createTable(folder.path(), layout(), IfExists::Replace); });
    EXPECT_EQ(error.code(), ErrorCode::LockTimeout);
    EXPECT_NE(std::string(error.what()).find("TOWNS.DBF"), std::string::npos);
    EXPECT_EQ(codeOf([&] { BulkLoader loader(folder / "TOWNS.DBF", BulkLoader::Mode::Replace); }),
              ErrorCode::LockTimeout);
    EXPECT_EQ(walk(table).size(), 8u);
}

TEST_F(DatabasesTest, ReplacingATableThatAnotherProcessHasOpenIsRefused) {
    Workstation away({[&] { other.open(); }, [&] { other.close(); }});
    ASSERT_EQ(away.step(), "");
    const auto replace = [&] { dbase::createTable(folder.path(), layout(), IfExists::Replace); };
    EXPECT_EQ(codeOf(replace), ErrorCode::LockTimeout);
    ASSERT_EQ(away.step(), "");
    EXPECT_EQ(codeOf(replace), std::nullopt);
}

TEST_F(DatabasesTest, CreatingOverAnExistingTableIsRefusedInAnyCase) {
    rename("TOWNS.DBF", "Towns.dbf");
    rename("TOWNS.MDX", "Towns.mdx");
    EXPECT_EQ(codeOf([&] { dbase::createTable(folder.path(), layout()); }), ErrorCode::Exists);
    EXPECT_TRUE(opens("DB", "TOWNS"));
}

TEST_F(DatabasesTest, OneTableUnderTwoPathsIsOneTable) {
    fs::create_directory_symlink(folder.path(), folder / "link");
    setDatabaseFolder("LINK", folder / "link");
    Dataset direct("DB", "TOWNS", "CODE"), linked("LINK", "TOWNS", "CODE");
    direct.open();
    linked.open();
    EXPECT_EQ(&direct.openTable(), &linked.openTable());
    direct.edit();
    EXPECT_EQ(codeOf([&] { linked.edit(); }), ErrorCode::LockRefused);
    setDatabaseFolder("LINK", {});
    fs::remove(folder / "link");
}

} // namespace
} // namespace dbase
