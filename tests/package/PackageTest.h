// Test fixture of the programs that link only the shared library of the package.
#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>
#include <string>

#include "package/AmbCodPostales.h"

namespace package_tests {

/// The five tables exist, empty, in a folder that database "DB" stands for. Message boxes are accepted and
/// recorded.
class PackageTest : public ::testing::Test {
protected:
    PackageTest();
    ~PackageTest() override;

    [[nodiscard]] std::string folder() const { return folder_.path().toStdString(); }

    QStringList shown; // texts of the boxes that came

private:
    QTemporaryDir folder_;
    ambrel::MessageShower before_;
};

} // namespace package_tests
