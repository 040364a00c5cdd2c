// What has to work across the border of the shared library: this program links nothing of the package but it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QTemporaryDir>
#include <stdexcept>

#include <unistd.h>

#include "dialogs/common/DataGrid.h"
#include "package/AmbCodPostales.h"

namespace {

constexpr const char* database = "FRONTERA";

class PackageBorderTest : public ::testing::Test {
protected:
    PackageBorderTest() {
        for (const dbase::TableDefinition& definition : ambrel::tableDefinitions())
            dbase::createTable(folder_.path().toStdString(), definition);
        dbase::setDatabaseFolder(database, folder_.path().toStdString());
        shower_ = ambrel::setMessageShower([this](const ambrel::MessageBox& box) {
            shown_ += box.text;
            return ambrel::MessageAnswer::Accept;
        });
    }
    ~PackageBorderTest() override {
        ambrel::setMessageShower(shower_);
        dbase::setDatabaseFolder(database, {});
    }

    QTemporaryDir folder_;
    QStringList shown_;

private:
    ambrel::MessageShower shower_;
};

TEST_F(PackageBorderTest, AFaultOfTheEngineIsCaughtByItsType) {
    dbase::Dataset table(database, "NADA");
    try {
        table.open();
        FAIL() << "opened a table that is not there";
    } catch (const dbase::Error& error) {
        EXPECT_EQ(error.code(), dbase::ErrorCode::NotFound);
    }
}

TEST_F(PackageBorderTest, WhatAHostThrowsInAHandlerIsShown) {
    ambrel::runGuarded([] { throw std::runtime_error("fallo del anfitrión"); });
    EXPECT_EQ(shown_, QStringList("fallo del anfitrión"));
}

TEST_F(PackageBorderTest, AHostEndsAHandlerSilently) {
    ambrel::runGuarded([] { throw ambrel::SilentAbort(); });
    EXPECT_EQ(shown_, QStringList());
}

TEST_F(PackageBorderTest, WidgetsKeepTheirMetaobjects) {
    const std::unique_ptr<QWidget> widget = std::make_unique<ambrel::DataGrid>();
    EXPECT_STREQ(widget->metaObject()->className(), "ambrel::DataGrid");
    EXPECT_NE(qobject_cast<ambrel::DataGrid*>(widget.get()), nullptr);
    EXPECT_NE(dynamic_cast<ambrel::DataGrid*>(widget.get()), nullptr);
    EXPECT_EQ(qobject_cast<QDialog*>(widget.get()), nullptr);
}

TEST_F(PackageBorderTest, ATableCutUnderneathEndsInAFaultAndNotInACrash) {
    dbase::Dataset table(database, "PROVIN");
    dbase::Field& name = table.bindCharacter("PROVINCIA", 21);
    table.open();
    for (int i = 0; i < 1000; ++i) {
        table.append();
        name.setText("PROVINCIA " + std::to_string(i));
        table.post();
    }
    ASSERT_EQ(truncate(dbase::findTableFile(folder_.path().toStdString(), "PROVIN")->c_str(), 600), 0);
    EXPECT_THROW(
        {
            table.first();
            while (table.next()) {
            }
        },
        dbase::Error);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
