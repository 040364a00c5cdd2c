// What must work across the border of the shared library: this program links nothing else of the package.
#include <QDialog>
#include <memory>
#include <stdexcept>

#include <unistd.h>

#include "PackageTest.h"
#include "dialogs/common/DataGrid.h"

namespace {

class PackageBorderTest : public package_tests::PackageTest {};

TEST_F(PackageBorderTest, AFaultOfTheEngineIsCaughtByItsType) {
    dbase::Dataset table("DB", "NADA");
    try {
        table.open();
        FAIL() << "opened a table that is not there";
    } catch (const dbase::Error& error) {
        EXPECT_EQ(error.code(), dbase::ErrorCode::NotFound);
    }
}

TEST_F(PackageBorderTest, WhatAHostThrowsInAHandlerIsShown) {
    ambrel::runGuarded([] { throw std::runtime_error("fallo del anfitrión"); });
    EXPECT_EQ(shown, QStringList("fallo del anfitrión"));
}

TEST_F(PackageBorderTest, AHostEndsAHandlerSilently) {
    ambrel::runGuarded([] { throw ambrel::SilentAbort(); });
    EXPECT_EQ(shown, QStringList());
}

TEST_F(PackageBorderTest, WidgetsKeepTheirMetaobjects) {
    const std::unique_ptr<QWidget> widget = std::make_unique<ambrel::DataGrid>();
    EXPECT_STREQ(widget->metaObject()->className(), "ambrel::DataGrid");
    EXPECT_NE(qobject_cast<ambrel::DataGrid*>(widget.get()), nullptr);
    EXPECT_NE(dynamic_cast<ambrel::DataGrid*>(widget.get()), nullptr);
    EXPECT_EQ(qobject_cast<QDialog*>(widget.get()), nullptr);
}

TEST_F(PackageBorderTest, ATableCutUnderneathEndsInAFaultAndNotInACrash) {
    dbase::Dataset table("DB", "PROVIN");
    dbase::Field& name = table.bindCharacter("PROVINCIA", 21);
    table.open();
    for (int i = 0; i < 1000; ++i) {
        table.append();
        name.setText("PROVINCIA " + std::to_string(i));
        table.post();
    }
    ASSERT_EQ(truncate(dbase::findTableFile(folder(), "PROVIN")->c_str(), 600), 0);
    EXPECT_THROW(
        {
            table.first();
            while (table.next()) {
            }
        },
        dbase::Error);
}

} // namespace
