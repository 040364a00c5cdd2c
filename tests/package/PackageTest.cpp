// The five tables for tests of the shared library.
#include "PackageTest.h"

#include <QApplication>

namespace package_tests {

PackageTest::PackageTest() {
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions()) {
        dbase::createTable(folder(), definition);
    }
    dbase::setDatabaseFolder("DB", folder());
    before_ = ambrel::setMessageShower([this](const ambrel::MessageBox& box) {
        shown += box.text;
        return ambrel::MessageAnswer::Accept;
    });
}

PackageTest::~PackageTest() {
    ambrel::setMessageShower(before_);
    dbase::setDatabaseFolder("DB", {});
}

} // namespace package_tests

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
