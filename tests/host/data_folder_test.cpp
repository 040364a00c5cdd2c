// The folder that the program works in, and the first start.
#include "host/DataFolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <stdexcept>

#include "data/PostalTables.h"
#include "data/TableDefinitions.h"
#include "dbase/system/databases.h"
#include "dbase/table/table_definition.h"

namespace {

/// The user's data is in a folder of the test; no database has a folder yet.
class DataFolderTest : public postal_tests::PostalTables {
protected:
    DataFolderTest() : before_(qgetenv("XDG_DATA_HOME")) {
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(user.path()));
        dbase::setDatabaseFolder("DB", {});
    }
    ~DataFolderTest() override { qputenv("XDG_DATA_HOME", before_); }

    static void createEmptyTables(const std::string& where) {
        for (const dbase::TableDefinition& definition : ambrel::tableDefinitions()) {
            dbase::createTable(where, definition);
        }
    }

    TemporaryFolder user;

private:
    QByteArray before_;
};

TEST_F(DataFolderTest, TheFirstStartCreatesTheUsersTables) {
    host::chooseFolder({}, createEmptyTables);
    EXPECT_EQ(dbase::databaseFolder("DB"), host::userDataFolder().toStdString());
    EXPECT_EQ(dbase::databaseFolder("AMBREL"), host::userDataFolder().toStdString());
    EXPECT_TRUE(dbase::findTableFile(dbase::databaseFolder("DB"), "CLIENTES"));
}

TEST_F(DataFolderTest, TheNextStartLeavesThemAlone) {
    host::chooseFolder({}, createEmptyTables);
    dbase::setDatabaseFolder("DB", {});
    host::chooseFolder({}, [](const std::string&) { FAIL() << "created again"; });
}

TEST_F(DataFolderTest, AFirstStartThatFailsLeavesNothingBehind) {
    EXPECT_THROW(host::chooseFolder({},
                                    [](const std::string& where) {
                                        createEmptyTables(where);
                                        throw std::runtime_error("no cabe");
                                    }),
                 std::runtime_error);
    const QDir parent(host::userDataFolder() + QStringLiteral("/.."));
    EXPECT_TRUE(!parent.exists() || parent.isEmpty());
}

TEST_F(DataFolderTest, AGivenFolderGetsNoSample) {
    host::chooseFolder(QString::fromStdString(folder.path()),
                       [](const std::string&) { FAIL() << "sample created"; });
    EXPECT_EQ(dbase::databaseFolder("DB"), folder.path());
    EXPECT_TRUE(dbase::findTableFile(folder.path(), "CLIENTES"));
}

TEST_F(DataFolderTest, TheGivenFolderGoesBeforeTheConfiguredOne) {
    dbase::setDatabaseFolder("DB", user.path());
    host::chooseFolder(QString::fromStdString(folder.path()), {});
    EXPECT_EQ(dbase::databaseFolder("DB"), folder.path());
}

} // namespace
